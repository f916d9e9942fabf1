// Filings that something goes wrong in.

#include "filing_run.h"
#include "outlook/inspector_window.h"

namespace {

using namespace standin;
using Texts = std::vector<std::wstring>;

class FilingFaults : public ::testing::Test {
 protected:
  const run::Registered registered_;
};

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
    EXPECT_TRUE(n != 0 || outcome.sent == 1);
    EXPECT_TRUE(outcome.sent == 0 || outcome.files.size() == 1);
    EXPECT_EQ(outcome.reports.size(), 1 - outcome.sent);
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

}  // namespace
