// Whole filings: what is asked and said, what is written and sent, and what is called for it.

#include <algorithm>

#include "filing_run.h"

namespace {

using namespace standin;
using Texts = std::vector<std::wstring>;

class Filing : public ::testing::Test {
 protected:
  const run::Registered registered_;
};

constexpr wchar_t kFile[] = L"Minutes- 12 May.msg";

TEST_F(Filing, EveryVersionAndEditor) {
  for (const int version : {9, 10, 11, 12, 14, 15, 16}) {
    for (const Editor editor : {Editor::kText, Editor::kHtml, Editor::kRichText, Editor::kWord}) {
      for (const bool composing : {false, true}) {
        SCOPED_TRACE(::testing::Message() << "version " << version << ", editor "
                                          << static_cast<int>(editor) << ", new " << composing);
        const run::Folder folder;
        run::Filing given;
        given.version = version;
        given.editor = editor;
        given.composing = composing;
        given.message = run::Mail(L"Minutes: 12 May", editor != Editor::kText);
        const run::Outcome outcome = run::File(given, folder);
        EXPECT_EQ(outcome.files, Texts{kFile});
        EXPECT_EQ(outcome.sent, composing ? 1u : 0u);
        EXPECT_EQ(outcome.reports, Texts{});
        EXPECT_EQ(outcome.held, "");
        const bool text = (editor == Editor::kText || editor == Editor::kRichText) && version < 12;
        EXPECT_EQ(std::count(outcome.calls.begin(), outcome.calls.end(),
                             text ? L"MailItem.Body=" : L"MailItem.HTMLBody="),
                  1);
      }
    }
  }
}

enum Mode { kOwn, kShared };
enum Content { kUsual, kAttachments, kNoRecipients, kNoSubject };

struct Situation {
  const char* what;
  Content content = kUsual;
  std::wstring project = L"Harbour Bridge: 2231";
  bool exists = false;                                // a file of the name
  std::wstring subfolder;                             // that is not there
  std::multimap<std::wstring, std::wstring> answers;  // "*\" is the test's folder
  Texts reports;        // of an unknown project and of no recipients: below
  std::wstring writes;  // below the test's folder; empty: nothing
};

constexpr wchar_t kExists[] =
    L"Message: Existing File Name | The file  / \"*\\Minutes- 12 May.msg\" /  already exists.";
constexpr wchar_t kMissing[] =
    L"Message: Folder Not Found | The folder  / \"*\\missing\\\" /  does not exist.";
constexpr wchar_t kUnknown[] =
    L"Message: Project Not Found | Project name \"Hall\" was not found in the Database .  /  / You "
    L"may: /    -Click 'Yes' to add it to the Postrove database or /    -Click 'No' to use it as a "
    L"temporary Project for this Email. /  / Do you want to add \"Hall\" to the database?";
constexpr wchar_t kUnknownToQuillion[] =
    L"Message: Project Not Found | \"99-Hall\" is not an existing project.  /  / It will be added "
    L"to the Project List as a temporary Project for this Email.  / To make it a permanent "
    L"Project, "
    L"Add the Project in Quillion.";

const Situation kSituations[] = {
    {"known project", kUsual, L"Harbour Bridge: 2231", false, L"", {}, {}, kFile},
    {"unknown project", kUsual, L"Hall: 99", false, L"", {}, {kUnknown}, kFile},
    {"the file exists: overwritten",
     kUsual,
     L"Harbour Bridge: 2231",
     true,
     L"",
     {{L"existing file name", L"OK"}},
     {kExists},
     kFile},
    {"another folder is made",
     kUsual,
     L"Harbour Bridge: 2231",
     false,
     L"missing\\",
     {{L"folder not found", L"OK:*\\other"}},
     {kMissing},
     L"other\\Minutes- 12 May.msg"},
    {"no recipients", kNoRecipients, L"Harbour Bridge: 2231", false, L"", {}, {}, L""},
    {"attachments",
     kAttachments,
     L"Harbour Bridge: 2231",
     false,
     L"",
     {},
     {},
     L"Minutes- 12 May(att).msg"},
    {"no subject", kNoSubject, L"Harbour Bridge: 2231", false, L"", {}, {}, L"Typed.msg"},
};

Texts ExpectedReports(const Situation& one, Mode mode, bool composing) {
  if (mode == kShared && one.reports == Texts{kUnknown}) return {kUnknownToQuillion};
  if (one.content != kNoRecipients) return one.reports;
  if (!composing) {
    return {L"Message: Cannot Save | This E-mail has no recipients. It was not saved."};
  }
  return {
      L"Message: Postrove | There must be at least one name in the To, Cc, or Bcc box. /  / Try "
      L"again. If the message comes back, restart Outlook; if that does not help, pass this text "
      L"on to whoever looks after Postrove for you. /  / Procedure: clsPostrove.SaveAndSendMail() "
      L"/ Error number: 0x80004005 / Source: Send"};
}

Texts ExpectedCalls(const Situation& one, bool composing, Editor editor) {
  Texts calls{L"Application.ActiveInspector", L"Inspector.CurrentItem", L"MailItem.Class",
              L"MailItem.Sent", L"MailItem.Subject"};
  const auto add = [&calls](const Texts& more) {
    calls.insert(calls.end(), more.begin(), more.end());
  };
  add({L"MailItem.Recipients", L"Recipients.Count"});
  if (one.content != kNoRecipients) {
    add({L"MailItem.Subject"});
    if (one.content == kNoSubject) add({L"MailItem.Subject=2231-Harbour Bridge=>Typed"});
    add({L"MailItem.Attachments", L"Attachments.Count", L"Application.Version"});
    if (one.content == kAttachments) {
      add({L"Attachments.Count", L"Attachments.Item(1)", L"Attachment.FileName",
           L"Attachment.DisplayName"});
    }
    const std::wstring body = editor == Editor::kText ? L"MailItem.Body" : L"MailItem.HTMLBody";
    add({L"MailItem.Body", L"MailItem.SenderName", L"MailItem.SentOnBehalfOfName", L"MailItem.To",
         L"MailItem.CC", L"MailItem.BCC", L"Inspector.EditorType", body, body + L"=",
         L"MailItem.SaveAs(*\\" + one.writes + L",3)"});
  }
  if (composing) add({L"MailItem.Send"});
  return calls;
}

std::string Bytes(const std::wstring& path) {
  return GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES ? "" : ReadWholeFile(path);
}

void Check(const Situation& one, Mode mode, bool composing, Editor editor) {
  const run::Folder folder;
  if (one.exists) folder.Write(kFile, "old");
  run::Filing given;
  given.composing = composing;
  given.editor = editor;
  given.message =
      run::Mail(one.content == kNoSubject ? L"" : L"Minutes: 12 May", editor != Editor::kText);
  if (one.content == kNoSubject) given.name = L"Typed";
  if (one.content == kNoRecipients) given.message.recipients.clear();
  if (one.content == kAttachments)
    given.message.attachments = {{L"a.txt", L"text/plain", L"", "a"}};
  given.project = one.project;
  given.folder = folder.Path() + one.subfolder;
  for (const auto& [title, answer] : one.answers) {
    given.answers.insert({title, postrove::text::Replace(answer, L"*\\", folder.Path())});
  }
  const run::Outcome outcome = run::File(given, folder);
  EXPECT_EQ(outcome.reports, ExpectedReports(one, mode, composing));
  EXPECT_EQ(outcome.calls, ExpectedCalls(one, composing, editor));
  const bool writes = !one.writes.empty();
  EXPECT_EQ(outcome.saved, writes ? Texts{folder.Path() + one.writes} : Texts{});
  EXPECT_EQ(outcome.sent, composing && writes ? 1u : 0u);
  EXPECT_EQ(outcome.held, "");
  EXPECT_TRUE(!writes || Bytes(folder.Path() + one.writes).size() > 1000);
  EXPECT_TRUE(!one.exists || one.writes == kFile || Bytes(folder.Path() + kFile) == "old");
  EXPECT_EQ(outcome.files.size(), (one.exists ? 1u : 0u) +
                                      (writes && one.subfolder.empty() && one.writes != kFile) +
                                      (one.writes == kFile && !one.exists));
  for (const wchar_t* made : {L"missing", L"other"}) {
    DeleteFileW((folder.Path() + made + L"\\" + kFile).c_str());
    const bool wasThere = RemoveDirectoryW((folder.Path() + made).c_str()) != 0;
    EXPECT_EQ(wasThere, one.writes.starts_with(made));
  }
}

// Each situation with its own or Quillion's projects, received and new, the editors in turn.
TEST_F(Filing, EverySituation) {
  std::size_t editor = 0;
  for (const Mode mode : {kOwn, kShared}) {
    std::optional<run::QuillionInstalled> quillion;
    if (mode == kShared) quillion.emplace();
    for (const Situation& one : kSituations) {
      for (const bool composing : {false, true}) {
        const Editor kEditors[] = {Editor::kText, Editor::kHtml, Editor::kWord};
        const Editor used = kEditors[editor++ % 3];
        SCOPED_TRACE(::testing::Message() << one.what << ", shared " << mode << ", new "
                                          << composing << ", editor " << static_cast<int>(used));
        Check(one, mode, composing, used);
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
  script.project = L"Harbour Bridge: 2231";
  script.folder = folder.Path();
  script.report = [](const std::wstring&) {};
  const ScriptedUser user(std::move(script));
  EXPECT_TRUE(host.Click(reply));
  EXPECT_FALSE(reply.IsOpen());
  EXPECT_TRUE(host.Click(received));
  EXPECT_EQ(folder.Files(), (Texts{L"Answer.msg", L"Question.msg"}));
  EXPECT_EQ(host.SentMessages().size(), 1u);
  host.Quit();
  EXPECT_EQ(run::Held(host), "");
}

}  // namespace
