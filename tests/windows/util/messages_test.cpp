#include <gtest/gtest.h>
#include <objbase.h>
#include <windows.h>

#include <memory>
#include <string>

#include "outlook/dialog_windows.h"
#include "shared/win32/WinSharedUtil.h"
#include "user.h"

namespace postrove {
namespace {

using standin::DialogInFront;
using standin::WaitFor;

// A press too early is lost, so it is repeated until the dialog is gone.
void Answer(HWND dialog, int button) {
  WaitFor("the end of the dialog", [&] {
    SendMessageTimeoutW(dialog, WM_COMMAND, static_cast<WPARAM>(button), 0, SMTO_ABORTIFHUNG, 100,
                        nullptr);
    return !IsWindow(dialog);
  });
}

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
    const User user([&, pressed = pressed, buttons = buttons] {
      const HWND box = DialogInFront(L"Cannot Save").Window();
      EXPECT_EQ(GetWindow(box, GW_OWNER), window_);
      EXPECT_TRUE(GetWindowLongPtrW(box, GWL_EXSTYLE) & WS_EX_TOPMOST);
      EXPECT_EQ(GetDlgItem(box, IDYES) != nullptr, buttons == MessageButtons::YesNo);
      Answer(box, pressed);
    });
    EXPECT_EQ(utility_->ShowMessage(L"Text", L"Cannot Save", buttons, MessageIcon::Question),
              answer);
  }
}

TEST_F(Messages, CancelledFolderPickerGivesNothing) {
  {
    const User user([&] {
      const HWND picker = DialogInFront(L"Select a folder").Window();
      EXPECT_EQ(GetWindow(picker, GW_OWNER), window_);
      Answer(picker, IDCANCEL);
    });
    EXPECT_EQ(utility_->BrowseForFolder(L"Select a folder"), L"");
  }
  const std::wstring prompt = L"\"Postrove.mdb\" was not found.\r\nSelect the folder.\r\nOr ask.";
  for (const bool goesOn : {false, true}) {  // cancelled before the picker, and in it
    const User user([&, goesOn] {
      const HWND box = DialogInFront(L"Postrove").Window();
      EXPECT_EQ(standin::TextOf(GetDlgItem(box, 0xFFFF)), prompt) << "a line is missing";
      Answer(box, goesOn ? IDOK : IDCANCEL);
      if (!goesOn) return;
      HWND picker = nullptr;
      WaitFor("the picker", [&] { return (picker = standin::TopDialog()) && picker != window_; });
      Answer(picker, IDCANCEL);
    });
    EXPECT_EQ(utility_->BrowseForFolder(prompt), L"");
  }
}

}  // namespace
}  // namespace postrove
