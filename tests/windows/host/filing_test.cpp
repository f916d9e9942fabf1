// Whole filings through the real dialog in the stand-in Outlook: what is asked and said, what is
// written and sent, how often Outlook is asked, and what becomes of failures.

#include <functional>
#include <map>
#include <optional>

#include "outlook/inspector_window.h"
#include "product_run.h"

namespace {

using namespace standin;
using Texts = std::vector<std::wstring>;

constexpr wchar_t kFile[] = L"Minutes- 12 May.msg";

struct Given {
  int version = 11;
  bool composing = false;
  Editor editor = Editor::kHtml;
  MessageData message = run::Mail(L"Minutes: 12 May");
  std::wstring project = L"Harbour Bridge: 2231";
  std::wstring subfolder = {};            // below the test's folder
  std::optional<std::wstring> name = {};  // else the one proposed
  std::multimap<std::wstring, std::wstring> answers = {};
  std::size_t failingCall = 0;
  std::function<void()> onReport = {};  // for each line of the user's, on the user's thread
};

struct Outcome {
  Texts saved;    // every file that the host wrote; the test's folder is "*\"
  Texts reports;  // of the user
  std::size_t sent = 0;
  std::size_t bodies = 0, texts = 0;  // written into the message
  std::size_t calls = 0;              // all that can be made to fail, up to the sending
  std::string held;                   // references of the add-in after the end, by name
};

// Opens the message in a new host, clicks the add-in's button, lets the user act, quits.
Outcome File(const Given& given, const run::Folder& folder) {
  Options options;
  options.version = given.version;
  Host host(options);
  host.LoadAddIns();
  Inspector& inspector = host.Open(given.message, !given.composing, ItemKind::kMail, given.editor);
  const std::size_t before = host.CallCount();
  if (given.failingCall != 0) host.FailCall(given.failingCall, E_FAIL);
  const auto placed = [&folder](const std::wstring& text) {
    return postrove::text::Replace(text, folder.Path(), L"*\\");
  };
  Outcome outcome;
  {
    UserScript script;
    script.project = given.project;
    script.folder = folder.Path() + given.subfolder;
    script.name = given.name;
    for (const auto& [title, answer] : given.answers) {
      script.answers.insert({title, postrove::text::Replace(answer, L"*\\", folder.Path())});
    }
    script.report = [&](const std::wstring& line) {
      outcome.reports.push_back(placed(line));
      if (given.onReport) given.onReport();
    };
    const ScriptedUser user(std::move(script));
    EXPECT_TRUE(host.Click(inspector));
  }
  const std::vector<std::wstring>& all = host.Calls();
  for (std::size_t i = before; i < all.size() && all[i] != L"MailItem.Send"; ++i) {
    ++outcome.calls;
    outcome.bodies += all[i].starts_with(L"MailItem.HTMLBody=");
    outcome.texts += all[i].starts_with(L"MailItem.Body=");
  }
  for (const std::wstring& file : host.SavedFiles()) outcome.saved.push_back(placed(file));
  outcome.sent = host.SentMessages().size();
  host.Quit();
  outcome.held = run::Held(host);
  EXPECT_TRUE(host.Core().EventFailures().empty());
  return outcome;
}

class Filing : public ::testing::Test {
 protected:
  const run::Registered registered_;
};

TEST_F(Filing, EveryVersionAndEditor) {
  for (const int version : {9, 10, 11, 12, 14, 15, 16}) {
    for (const Editor editor : {Editor::kText, Editor::kHtml, Editor::kRichText, Editor::kWord}) {
      for (const bool composing : {false, true}) {
        SCOPED_TRACE(::testing::Message() << "version " << version << ", editor "
                                          << static_cast<int>(editor) << ", new " << composing);
        const run::Folder folder;
        Given given;
        given.version = version;
        given.editor = editor;
        given.composing = composing;
        given.message = run::Mail(L"Minutes: 12 May", editor != Editor::kText);
        const Outcome outcome = File(given, folder);
        EXPECT_EQ(folder.Files(), Texts{kFile});
        EXPECT_GT(ReadWholeFile(folder / kFile).size(), 1000u);
        EXPECT_EQ(outcome.sent, composing ? 1u : 0u);
        EXPECT_EQ(outcome.reports, Texts{});
        EXPECT_EQ(outcome.held, "");
        EXPECT_LT(outcome.calls, 45u) << "each can wait for a server";
        const bool text = (editor == Editor::kText || editor == Editor::kRichText) && version < 12;
        EXPECT_EQ(outcome.texts, text ? 1u : 0u);
        EXPECT_EQ(outcome.bodies, text ? 0u : 1u);
      }
    }
  }
}

TEST_F(Filing, QuestionsAndRefusals) {
  const struct {
    const char* what;
    Given given;
    std::wstring report;  // begins with that
    Texts saved;
  } situations[] = {
      {"overwritten",
       {.answers = {{L"existing file name", L"OK"}}},
       L"Message: Existing File Name | The file  / \"*\\Minutes- 12 May.msg\" /  already exists.",
       {L"*\\Minutes- 12 May.msg"}},
      {"another folder is made",
       {.subfolder = L"missing\\", .answers = {{L"folder not found", L"OK:*\\other"}}},
       L"Message: Folder Not Found | The folder  / \"*\\missing\\\" /  does not exist.",
       {L"*\\other\\Minutes- 12 May.msg"}},
      {"a temporary project and a typed name",
       {.project = L"Hall: 99", .name = L"Typed"},
       L"Message: Project Not Found | Project name \"Hall\" was not found in the Database .",
       {L"*\\Typed(att).msg"}},
      {"no recipients",
       {},
       L"Message: Cannot Save | This E-mail has no recipients. It was not saved.",
       {}},
  };
  for (const auto& one : situations) {
    SCOPED_TRACE(one.what);
    const run::Folder folder;
    folder.Write(kFile, "old");
    Given given = one.given;
    if (given.name) given.message.attachments = {{L"a.txt", L"text/plain", L"", "a"}};
    if (one.saved.empty()) given.message.recipients.clear();
    const Outcome outcome = File(given, folder);
    ASSERT_EQ(outcome.reports.size(), 1u);
    EXPECT_EQ(outcome.reports[0].substr(0, one.report.size()), one.report);
    EXPECT_EQ(outcome.saved, one.saved);
    EXPECT_EQ(ReadWholeFile(folder / kFile) == "old",
              one.saved != Texts{std::wstring(L"*\\") + kFile});
    EXPECT_EQ(outcome.held, "");
  }
}

// Each call of a filing fails once: no crash, nothing sent unfiled, nothing kept, and it is told.
TEST_F(Filing, EachCallFailsInTurn) {
  std::size_t calls = 0;
  for (std::size_t n = 0; n == 0 || n <= calls; ++n) {
    SCOPED_TRACE(::testing::Message() << "call " << n);
    const run::Folder folder;
    const Outcome outcome = File({.composing = true, .failingCall = n}, folder);
    if (n == 0) calls = outcome.calls;
    EXPECT_TRUE(n != 0 || outcome.sent == 1);
    EXPECT_TRUE(outcome.sent == 0 || folder.Files().size() == 1);
    EXPECT_EQ(outcome.reports.size(), 1 - outcome.sent);
    EXPECT_EQ(outcome.held, "");
  }
  EXPECT_GT(calls, 15u);
}

// In the host's thread, while the dialog's question is open.
TEST_F(Filing, TheWindowIsClosedUnderTheDialog) {
  for (const bool composing : {false, true}) {
    const run::Folder folder;
    const Outcome outcome = File(
        {.composing = composing,
         .subfolder = L"missing",
         .onReport =
             [] { SendMessageW(FindWindowW(kInspectorWindowClass, nullptr), WM_CLOSE, 0, 0); }},
        folder);
    ASSERT_EQ(outcome.reports.size(), 2u);  // the question and what became of it
    EXPECT_NE(outcome.reports[1].find(L"The message is no longer open."), std::wstring::npos);
    EXPECT_TRUE(outcome.saved.empty());
    EXPECT_EQ(outcome.sent, 0u);
    EXPECT_EQ(outcome.held, "");
  }
}

}  // namespace
