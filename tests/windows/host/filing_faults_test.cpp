// Filings that something goes wrong in, and messages that are hard to file.

#include <array>

#include "filing_run.h"
#include "outlook/inspector_window.h"

namespace {

using namespace standin;
using Texts = std::vector<std::wstring>;

class FilingFaults : public ::testing::Test {
 protected:
  const run::Registered registered_;
};

TEST_F(FilingFaults, AHostThatRefusesAMemberIsReportedAndNothingIsSent) {
  const struct {
    const wchar_t* member;
    HRESULT failure;
  } cases[] = {
      {L"MailItem.Subject", E_ACCESSDENIED},     {L"MailItem.HTMLBody", E_ACCESSDENIED},
      {L"MailItem.SaveAs", E_ACCESSDENIED},      {L"MailItem.SaveAs", STG_E_MEDIUMFULL},
      {L"MailItem.Send", E_ACCESSDENIED},        {L"MailItem.Recipients", E_ACCESSDENIED},
      {L"MailItem.Attachments", E_ACCESSDENIED},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(postrove::text::ToUtf8(one.member));
    const run::Folder folder;
    run::Filing given;
    given.composing = true;
    given.failingMember = one.member;
    given.failure = one.failure;
    const run::Outcome outcome = run::File(given, folder);
    EXPECT_EQ(outcome.sent, 0u);
    ASSERT_EQ(outcome.reports.size(), 1u);
    EXPECT_TRUE(outcome.reports[0].starts_with(L"Message: Postrove | "));
    EXPECT_EQ(outcome.files.size(), one.member == std::wstring(L"MailItem.Send") ? 1u : 0u);
    EXPECT_EQ(outcome.held, "");
  }
}

// Each call of a filing fails once: no crash, nothing sent unfiled, nothing kept, and it is told.
TEST_F(FilingFaults, EachCallInTurn) {
  std::size_t calls = 0;
  for (std::size_t n = 0; n == 0 || n <= calls; ++n) {
    SCOPED_TRACE(::testing::Message() << "call " << n);
    const run::Folder folder;
    run::Filing given;
    given.composing = true;
    given.failingCall = n;
    const run::Outcome outcome = run::File(given, folder);
    if (n == 0) calls = outcome.callCount;
    EXPECT_EQ(outcome.sent, n == 0 ? 1u : 0u);
    EXPECT_TRUE(outcome.sent == 0 || outcome.files.size() == 1);
    EXPECT_EQ(outcome.reports.size(), n == 0 ? 0u : 1u);
    EXPECT_EQ(outcome.held, "");
  }
  EXPECT_GT(calls, 15u);
}

// Done in the host's thread while the dialog's question is open.
void CloseWindow(Host&, Inspector&) {
  SendMessageW(FindWindowW(kInspectorWindowClass, nullptr), WM_CLOSE, 0, 0);
}

TEST_F(FilingFaults, TheWindowIsClosedUnderTheDialog) {
  for (const bool composing : {false, true}) {
    const run::Folder folder;
    run::Filing given;
    given.composing = composing;
    given.folder = folder.Path() + L"missing";
    given.onReport = CloseWindow;
    const run::Outcome outcome = run::File(given, folder);
    ASSERT_EQ(outcome.reports.size(), 2u);  // the question and what became of it
    EXPECT_NE(outcome.reports[1].find(L"The message is no longer open."), std::wstring::npos);
    EXPECT_TRUE(outcome.saved.empty());
    EXPECT_EQ(outcome.sent, 0u);
    EXPECT_EQ(outcome.held, "");
    RemoveDirectoryW((folder.Path() + L"missing").c_str());
  }
}

TEST_F(FilingFaults, AnotherWindowsButtonUnderTheDialog) {
  const run::Folder folder;
  Host host;
  host.LoadAddIns();
  Inspector& first = host.Open(run::Mail(L"First"));
  Inspector& second = host.Open(run::Mail(L"Second"), false);
  run::Reports reports;
  {
    UserScript script;
    script.project = L"Harbour Bridge: 2231";
    script.folder = folder.Path() + L"missing";
    script.report = [&](const std::wstring& line) {
      reports.Add(line);
      // The window of the message that is open in front of the other.
      const std::wstring caption = second.Caption();
      const HWND window = FindWindowW(kInspectorWindowClass, caption.c_str());
      const HWND button = FindWindowExW(window, nullptr, L"BUTTON", L"Pos&trove");
      SendMessageW(window, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(button), BN_CLICKED),
                   reinterpret_cast<LPARAM>(button));
    };
    const ScriptedUser user(std::move(script));
    EXPECT_TRUE(host.Click(first));
  }
  EXPECT_EQ(reports.Lines().size(), 1u);
  EXPECT_EQ(host.SavedFiles(), Texts{folder.Path() + L"missing\\First.msg"});
  EXPECT_TRUE(host.SentMessages().empty());
  host.Quit();
  EXPECT_EQ(run::Held(host), "");
  DeleteFileW((folder.Path() + L"missing\\First.msg").c_str());
  RemoveDirectoryW((folder.Path() + L"missing").c_str());
}

TEST_F(FilingFaults, BadInputIsCleanedOrRefusedAndNothingGoesElsewhere) {
  const std::wstring tooLong(300, L'd');
  const struct {
    std::wstring subject, folder;  // below the test's folder
    std::wstring writes;           // empty: refused with a message
  } cases[] = {
      {L"..\\..\\x", L"", L"-..-x.msg"},
      {L"C:\\x", L"", L"C--x.msg"},
      {L"\\\\server\\share\\x", L"", L"--server-share-x.msg"},
      {L"NUL", L"", L"_NUL.msg"},
      {L"\x202Egsm.exe", L"", L"gsm.exe.msg"},
      {L"a\r\nBcc: b", L"", L"a Bcc- b.msg"},
      {std::wstring(10000, L's'), L"", L""},  // cut to what the path leaves room for
      {L"x", L"a<b", L""},
      {L"x", L"a file\\", L""},
      {L"x", tooLong, L""},
  };
  for (const bool composing : {false, true}) {
    for (const auto& one : cases) {
      SCOPED_TRACE(
          postrove::text::ToUtf8(one.subject.substr(0, 20) + L" | " + one.folder.substr(0, 20)));
      const run::Folder folder;
      folder.Write(L"a file", "old");
      run::Filing given;
      given.composing = composing;
      given.message = run::Mail(one.subject);
      given.folder = folder.Path() + one.folder;
      const run::Outcome outcome = run::File(given, folder);
      const bool cut = one.subject.size() > 1000;
      const bool refused = one.writes.empty() && !cut;
      EXPECT_EQ(outcome.sent, composing && !refused ? 1u : 0u);
      ASSERT_EQ(outcome.saved.size(), refused ? 0u : 1u);
      // The question about the folder, and why it cannot be.
      EXPECT_EQ(outcome.reports.size(), refused ? 2u : 0u);
      EXPECT_EQ(ReadWholeFile(folder.Path() + L"a file"), "old");
      if (refused) continue;
      EXPECT_TRUE(outcome.saved[0].starts_with(folder.Path()));
      if (cut) {
        EXPECT_EQ(outcome.saved[0], folder.Path() + std::wstring(200, L's') + L".msg");
      } else {
        EXPECT_EQ(outcome.saved[0], folder.Path() + one.writes);
      }
      EXPECT_EQ(outcome.files.size(), 2u);
    }
  }
}

TEST_F(FilingFaults, AMessageOfFiftyMegabytesInTwoHundredAttachments) {
  constexpr std::size_t kCount = 200;
  constexpr std::size_t kSize = 256 * 1024;
  const run::Folder folder;
  run::Filing given;
  for (std::size_t i = 0; i < kCount; ++i) {
    given.message.attachments.push_back({L"part " + std::to_wstring(i) + L".bin",
                                         L"application/octet-stream", L"",
                                         std::string(kSize, static_cast<char>(i))});
  }
  const run::Outcome outcome = run::File(given, folder);
  ASSERT_EQ(outcome.files, Texts{L"Minutes- 12 May(att).msg"});
  EXPECT_EQ(outcome.reports, Texts{});
  const std::string bytes = ReadWholeFile(folder.Path() + outcome.files[0]);
  // Each attachment is of one byte of its own; the file keeps them in blocks.
  std::array<std::size_t, 256> counts{};
  for (const char byte : bytes) ++counts[static_cast<unsigned char>(byte)];
  for (std::size_t i = 0; i < kCount; ++i) EXPECT_GE(counts[i], kSize) << "attachment " << i;
}

}  // namespace
