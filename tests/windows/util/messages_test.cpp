#include <gtest/gtest.h>
#include <objbase.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "shared/text.h"
#include "shared/win32/WinSharedUtil.h"
#include "threads.h"

namespace postrove {
namespace {

struct Dialog {
  HWND owner = nullptr;
  bool topmost = false;
  bool hasYes = false;
  std::wstring text;
};

// The dialog with a title, or any without one, once it stands on the screen. The program ends when
// none comes, since the thread that should show it may be waiting for something else for ever.
HWND WaitForDialog(const wchar_t* title) {
  constexpr ULONGLONG kMilliseconds = 60000;
  const ULONGLONG start = GetTickCount64();
  for (;;) {
    const HWND dialog = FindWindowW(L"#32770", title);
    if (dialog && IsWindowVisible(dialog)) return dialog;
    if (GetTickCount64() - start > kMilliseconds) {
      std::fprintf(stderr, "no dialog \"%ls\" within a minute\n", title);
      std::_Exit(1);
    }
    SwitchToThread();
  }
}

// A user that presses one button of the next dialog with the title, and what that dialog was.
class ScriptedUser {
 public:
  // With a second button he presses that one in whatever dialog comes next.
  ScriptedUser(const wchar_t* title, int button, int next = 0)
      : thread_([this, title, button, next] {
          const HWND dialog = WaitForDialog(title);
          seen_.owner = GetWindow(dialog, GW_OWNER);
          seen_.topmost = (GetWindowLongPtrW(dialog, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
          seen_.hasYes = GetDlgItem(dialog, IDYES) != nullptr;
          wchar_t text[500] = L"";
          GetDlgItemTextW(dialog, 0xFFFF, text, ARRAYSIZE(text));
          seen_.text = text;
          Press(dialog, button);
          if (next) Press(WaitForDialog(nullptr), next);
        }) {}
  Dialog Seen() {
    thread_.Join();
    return seen_;
  }

 private:
  // A press too early is lost, so it is repeated until the dialog is gone.
  static void Press(HWND dialog, int button) {
    while (IsWindow(dialog)) {
      SendMessageTimeoutW(dialog, WM_COMMAND, static_cast<WPARAM>(button), 0, SMTO_ABORTIFHUNG, 100,
                          nullptr);
    }
  }

  Dialog seen_;
  standin::Thread thread_;
};

class Messages : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
    window_ = CreateWindowExW(WS_EX_TOPMOST, L"STATIC", L"owner", WS_POPUP | WS_VISIBLE, 0, 0, 200,
                              100, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
    ASSERT_TRUE(window_);
    SetActiveWindow(window_);
  }
  void TearDown() override {
    DestroyWindow(window_);
    CoUninitialize();
  }

  const std::shared_ptr<clsSharedUtil> utility_ = CreateWinSharedUtil();
  HWND window_ = nullptr;
};

TEST_F(Messages, StandAboveTheTopmostActiveWindow) {
  const struct {
    MessageButtons buttons;
    int pressed;
    MessageAnswer answer;
  } kTable[] = {
      {MessageButtons::Ok, IDOK, MessageAnswer::Ok},
      {MessageButtons::YesNo, IDYES, MessageAnswer::Yes},
      {MessageButtons::YesNo, IDNO, MessageAnswer::No},
  };
  for (const auto& [buttons, pressed, answer] : kTable) {
    ScriptedUser user(L"Cannot Save", pressed);
    EXPECT_EQ(utility_->ShowMessage(L"Text", L"Cannot Save", buttons, MessageIcon::Question),
              answer);
    const Dialog seen = user.Seen();
    EXPECT_EQ(seen.owner, window_);
    EXPECT_TRUE(seen.topmost);
    EXPECT_EQ(seen.hasYes, buttons == MessageButtons::YesNo);
  }
}

TEST_F(Messages, CancelledFolderPickerGivesNothing) {
  ScriptedUser user(L"Select a folder", IDCANCEL);
  EXPECT_EQ(utility_->BrowseForFolder(L"Select a folder"), L"");
  EXPECT_EQ(user.Seen().owner, window_);
  const std::wstring prompt = L"\"Postrove.mdb\" was not found.\r\nSelect the folder.\r\nOr ask.";
  for (const int picker : {0, IDCANCEL}) {  // cancelled before it, and in it
    ScriptedUser reader(L"Postrove", picker ? IDOK : IDCANCEL, picker);
    EXPECT_EQ(utility_->BrowseForFolder(prompt), L"");
    EXPECT_EQ(reader.Seen().text, prompt) << "a line of the prompt is missing";
  }
}

}  // namespace
}  // namespace postrove
