// Whole filings through the real dialog: the scripted user works on its windows.

#include <algorithm>

#include "product_run.h"

namespace {

using namespace standin;

struct Outcome {
  std::vector<std::wstring> files;
  std::vector<std::wstring> reports;
  std::vector<std::wstring> calls;  // members of the message and what the add-in asked of it
  std::size_t sent = 0;
  std::string held;
  std::size_t callCount = 0;
};

struct Case {
  int version = 11;
  bool composing = false;
  Editor editor = Editor::kHtml;
  MessageData message = run::Mail(L"Minutes: 12 May");
  std::map<std::wstring, std::wstring> answers;
  std::wstring subfolder;
  std::size_t failingCall = 0;
  std::wstring failingMember;
};

Outcome File(const Case& given, const run::Folder& folder) {
  Options options;
  options.version = given.version;
  Host host(options);
  host.LoadAddIns();
  Inspector& inspector = host.Open(given.message, !given.composing, ItemKind::kMail, given.editor);
  const std::size_t before = host.Calls().size();
  const std::size_t countBefore = host.CallCount();
  if (given.failingCall != 0) host.FailCall(given.failingCall, E_FAIL);
  if (!given.failingMember.empty()) host.FailMember(given.failingMember, E_ACCESSDENIED);

  run::Reports reports;
  {
    UserScript script;
    script.project = L"Mill Street: 2231";
    script.folder = folder.Path() + given.subfolder;
    script.answers = given.answers;
    script.report = [&reports](const std::wstring& line) { reports.Add(line); };
    const ScriptedUser user(std::move(script));
    EXPECT_TRUE(host.Click(inspector));
  }
  Outcome outcome;
  const auto calls = host.Calls();
  for (std::size_t i = before; i < calls.size(); ++i) {
    if (calls[i].starts_with(L"MailItem.")) outcome.calls.push_back(calls[i]);
  }
  // Up to the sending: what follows it is the closing of the window.
  const auto& all = host.AllCalls();
  const auto sending =
      std::find_if(all.begin() + static_cast<std::ptrdiff_t>(countBefore), all.end(),
                   [](const Runtime::Call& call) { return call.text == L"MailItem.Send"; });
  const auto end = sending == all.end() ? sending : sending + 1;
  outcome.callCount = static_cast<std::size_t>(end - all.begin()) - countBefore;
  outcome.files = folder.Files();
  outcome.reports = reports.Lines();
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

// The members used of the message, without the texts written.
std::vector<std::wstring> Members(const Outcome& outcome) {
  std::vector<std::wstring> members;
  for (const std::wstring& call : outcome.calls) {
    members.push_back(call.substr(9, call.find_first_of(L"(=") - 9) +
                      (call.find(L'=') < call.find(L'(') ? L"=" : L""));
  }
  return members;
}

TEST_F(Filing, ReceivedAndNewInEveryVersionAndEditor) {
  for (const int version : {9, 10, 11, 12, 14, 15, 16}) {
    for (const Editor editor : {Editor::kText, Editor::kHtml, Editor::kWord}) {
      for (const bool composing : {false, true}) {
        SCOPED_TRACE(::testing::Message() << "version " << version << ", editor "
                                          << static_cast<int>(editor) << ", new " << composing);
        const run::Folder folder;
        Case given;
        given.version = version;
        given.editor = editor;
        given.composing = composing;
        given.message = run::Mail(L"Minutes: 12 May", editor != Editor::kText);
        const Outcome outcome = File(given, folder);
        EXPECT_EQ(outcome.files, std::vector<std::wstring>{L"Minutes- 12 May.msg"});
        EXPECT_EQ(outcome.sent, composing ? 1u : 0u);
        EXPECT_TRUE(outcome.reports.empty()) << outcome.reports.size();
        EXPECT_EQ(outcome.held, "");

        const bool text = editor == Editor::kText && version < 12;
        const std::wstring body = text ? L"Body" : L"HTMLBody";
        std::vector<std::wstring> expected{L"Class",   L"Sent",        L"Subject",
                                           L"Subject", L"Attachments", L"Recipients",
                                           body,       body + L"=",    L"SaveAs"};
        if (composing) {
          // While it is sent its window closes; other windows' buttons are looked after then.
          expected.insert(expected.end(), {L"Send", L"GetInspector"});
        }
        EXPECT_EQ(Members(outcome), expected);
      }
    }
  }
}

// A reply is sent, its window closes, and the button of the mail that was answered still works.
TEST_F(Filing, TheOlderWindowsButtonAfterTheNewerOneWasSent) {
  const run::Folder folder;
  Options options;
  options.version = 11;
  Host host(options);
  host.LoadAddIns();
  Inspector& received = host.Open(run::Mail(L"Question"));
  Inspector& reply = host.Open(run::Mail(L"Answer"), false);
  UserScript script;
  script.project = L"Mill Street: 2231";
  script.folder = folder.Path();
  script.report = [](const std::wstring&) {};
  const ScriptedUser user(std::move(script));
  EXPECT_TRUE(host.Click(reply));
  EXPECT_FALSE(reply.IsOpen());
  EXPECT_TRUE(host.Click(received));
  EXPECT_EQ(folder.Files(), (std::vector<std::wstring>{L"Answer.msg", L"Question.msg"}));
  EXPECT_EQ(host.SentMessages().size(), 1u);
  host.Quit();
  EXPECT_EQ(run::Held(host), "");
}

TEST_F(Filing, QuestionsAndRefusals) {
  const run::Folder folder;
  Case given;
  given.answers = {{L"folder not found", L"Cancel"}};
  given.subfolder = L"missing";
  Outcome outcome = File(given, folder);
  EXPECT_TRUE(outcome.files.empty());
  ASSERT_EQ(outcome.reports.size(), 1u);
  EXPECT_NE(outcome.reports[0].find(L"Message: Folder Not Found | The folder"), std::wstring::npos);
  EXPECT_EQ(GetFileAttributesW((folder.Path() + L"missing").c_str()), INVALID_FILE_ATTRIBUTES);

  given.subfolder.clear();
  outcome = File(given, folder);
  EXPECT_EQ(outcome.files.size(), 1u);
  const std::wstring path = folder.Path() + L"Minutes- 12 May.msg";
  const std::string first = ReadWholeFile(path);

  given.message.html = L"<html><body>Another</body></html>";
  outcome = File(given, folder);  // the default answer to the existing file is Cancel
  ASSERT_EQ(outcome.reports.size(), 1u);
  EXPECT_NE(outcome.reports[0].find(L"Message: Existing File Name"), std::wstring::npos);
  EXPECT_EQ(ReadWholeFile(path), first);

  given.answers = {{L"existing file name", L"OK"}};
  outcome = File(given, folder);
  EXPECT_EQ(outcome.files.size(), 1u);
  EXPECT_NE(ReadWholeFile(path), first);

  given.composing = true;
  given.message.recipients.clear();
  outcome = File(given, folder);
  EXPECT_EQ(outcome.sent, 0u);
  ASSERT_FALSE(outcome.reports.empty());
  EXPECT_NE(outcome.reports.back().find(L"Message: Postrove | "), std::wstring::npos);
  EXPECT_EQ(outcome.held, "");
}

TEST_F(Filing, AHostThatRefusesAMemberIsReportedAndNothingIsSent) {
  for (const wchar_t* member :
       {L"MailItem.Subject", L"MailItem.HTMLBody", L"MailItem.SaveAs", L"MailItem.Send",
        L"MailItem.Recipients", L"MailItem.Attachments"}) {
    SCOPED_TRACE(postrove::text::ToUtf8(member));
    const run::Folder folder;
    Case given;
    given.composing = true;
    given.failingMember = member;
    const Outcome outcome = File(given, folder);
    EXPECT_EQ(outcome.sent, 0u);
    ASSERT_EQ(outcome.reports.size(), 1u);
    EXPECT_NE(outcome.reports[0].find(L"Message: Postrove | "), std::wstring::npos);
    EXPECT_EQ(outcome.files.size(), member == std::wstring(L"MailItem.Send") ? 1u : 0u);
    EXPECT_EQ(outcome.held, "");
  }
}

// Each call of a filing fails once: no crash, nothing sent unfiled, nothing kept, and it is told.
TEST_F(Filing, EachCallInTurn) {
  std::size_t calls = 0;
  for (std::size_t n = 0; n == 0 || n <= calls; ++n) {
    SCOPED_TRACE(::testing::Message() << "call " << n);
    const run::Folder folder;
    Case given;
    given.composing = true;
    given.failingCall = n;
    const Outcome outcome = File(given, folder);
    if (n == 0) calls = outcome.callCount;
    EXPECT_EQ(outcome.sent, n == 0 ? 1u : 0u);
    EXPECT_TRUE(outcome.sent == 0 || outcome.files.size() == 1);
    EXPECT_EQ(outcome.reports.size(), n == 0 ? 0u : 1u);
    EXPECT_EQ(outcome.held, "");
  }
  EXPECT_GT(calls, 15u);
}

}  // namespace
