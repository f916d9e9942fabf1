// The save dialog as its user meets it: the controller's own, in real windows, by keyboard.
#include <memory>
#include <string>
#include <vector>

#include "dialog_user.h"
#include "forms/frmPostrove.h"
#include "forms/win32/WinFormHost.h"
#include "gtest/gtest.h"
#include "memory/Product.h"
#include "outlook/office/ids.h"

namespace postrove::forms {
namespace {

using testing::Dialog;
using testing::DialogUser;
using testing::OwnerWindow;
using testing::WaitFor;

class SaveDialog : public ::testing::Test {
 protected:
  SaveDialog() {
    product.host = CreateWinFormHost(GetModuleHandleW(nullptr));
    product.database->SetHandler([this](const postrove::testing::RanStatement&) { return rows; });
    product.Start();
    mail = product.outlook.Open(true);
    mail->item->properties[L"Subject"] = L"Minutes";
    product.outlook.RaiseNew(mail);
  }

  // Clicks the button of the mail window and lets the user work until the steps end the dialog or
  // end themselves.
  void Use(const std::function<void(Dialog&)>& steps) {
    const DialogUser user([&] {
      Dialog dialog(L"Postrove");
      dialog.WaitForFocus(form.cboPostrove);
      steps(dialog);
      if (IsWindow(dialog.Window())) dialog.Close();
    });
    product.outlook.Click(mail);
  }

  // Waits until the box shows the text, of which the end from `caret` on is selected.
  void WaitForText(const Dialog& dialog, const Control& box, const std::wstring& text, int caret) {
    WaitFor(std::string(text.begin(), text.end()), [&] {
      DWORD start = 0;
      DWORD end = 0;
      SendMessageW(dialog.Edit(box), EM_GETSEL, reinterpret_cast<WPARAM>(&start),
                   reinterpret_cast<LPARAM>(&end));
      return dialog.TextOf(box) == text && start == static_cast<DWORD>(caret) && end == text.size();
    });
  }

  OwnerWindow owner;
  const frmPostrove form{{}};  // stands for the dialog's own where only the design counts
  Rows rows{{L"1", L"Alpha", L"", true, std::int64_t{1}},
            {L"2", L"Alpine Road", L"P:\\Alpine\\", true, std::int64_t{2}},
            {L"3", L"ALPHA", L"", true, std::int64_t{3}},
            {L"1", L"Alpha", L"", true, std::int64_t{4}},
            {L"", L"Bridge: North", L"P:\\Bridge\\", true, std::int64_t{5}},
            {L"6", L"", L"P:\\Nameless\\", true, std::int64_t{6}},
            {L"7", std::wstring(1000, L'x'), L"", true, std::int64_t{7}}};
  postrove::testing::Product product;
  std::shared_ptr<postrove::testing::FakeOutlook::Inspector> mail;
};

TEST_F(SaveDialog, CompletesTheProjectFromWhatIsTyped) {
  Use([&](Dialog& dialog) {
    const Control& box = form.cboPostrove;
    const auto listDown = [&] {
      return SendMessageW(dialog.Item(box), CB_GETDROPPEDSTATE, 0, 0) != 0;
    };
    dialog.Type(box, L"al");
    WaitForText(dialog, box, L"Alpha: 1", 2);
    EXPECT_TRUE(listDown());
    dialog.Type(box, L"pi");
    WaitForText(dialog, box, L"Alpine Road: 2", 4);
    EXPECT_EQ(dialog.TextOf(form.txtSaveFolder), L"P:\\Alpine\\Corr_Out\\");
    dialog.Type(box, L"\b");
    WaitForText(dialog, box, L"Alpha: 1", 3);
    dialog.Press(box, VK_DOWN);
    WaitForText(dialog, box, L"Alpine Road: 2", 0);
    // A key that fits no item replaces the selected rest, or here all.
    dialog.Type(box, L"q");
    WaitForText(dialog, box, L"q", 1);
    dialog.Press(box, VK_ESCAPE);
    WaitFor("the closed list", [&] { return !listDown(); });
    EXPECT_EQ(dialog.TextOf(box), L"q");
    dialog.Type(box, L"\bbr");
    WaitForText(dialog, box, L"Bridge: North", 2);
    dialog.Press(box, VK_RETURN);
    WaitFor("the next field", [&] { return dialog.Focus() != dialog.Edit(box); });
    EXPECT_EQ(dialog.TextOf(box), L"Bridge: North");
    EXPECT_EQ(dialog.TextOf(form.txtSaveFolder), L"P:\\Bridge\\Corr_Out\\");
    PostMessageW(dialog.Focus(), WM_KEYDOWN, VK_ESCAPE, 1);
    dialog.WaitForEnd();
  });
}

TEST_F(SaveDialog, MarksAnEmptiedFieldAndTakesNoLineBreaks) {
  const auto ground = [](const Dialog& dialog, HWND edit) {
    const HDC dc = GetDC(edit);
    SendMessageW(dialog.Window(), WM_CTLCOLOREDIT, reinterpret_cast<WPARAM>(dc),
                 reinterpret_cast<LPARAM>(edit));
    const COLORREF color = GetBkColor(dc);
    ReleaseDC(edit, dc);
    return color;
  };
  ASSERT_TRUE(OpenClipboard(nullptr));
  EmptyClipboard();
  const wchar_t lines[] = L"one\r\ntwo";
  const HGLOBAL copied = GlobalAlloc(GMEM_MOVEABLE, sizeof lines);
  std::copy_n(lines, std::size(lines), static_cast<wchar_t*>(GlobalLock(copied)));
  GlobalUnlock(copied);
  SetClipboardData(CF_UNICODETEXT, copied);
  CloseClipboard();
  Use([&](Dialog& dialog) {
    for (const Control* box : {&form.txtSaveFolder, &form.txtSaveAsName, &form.cboPostrove}) {
      const HWND edit = dialog.Edit(*box);
      SendMessageW(edit, EM_SETSEL, 0, -1);
      dialog.Type(*box, L"\b");
      WaitForText(dialog, *box, L"", 0);
      const bool required = box != &form.cboPostrove;
      EXPECT_EQ(ground(dialog, edit) == RGB(255, 255, 0), required);
      SendMessageW(edit, WM_PASTE, 0, 0);
      EXPECT_EQ(dialog.TextOf(*box).substr(0, 3), L"one");
      EXPECT_EQ(dialog.TextOf(*box).find_first_of(L"\r\n"), std::wstring::npos);
      EXPECT_NE(ground(dialog, edit), RGB(255, 255, 0));
      SendMessageW(edit, EM_SETSEL, 0, -1);
    }
  });
}

}  // namespace
}  // namespace postrove::forms
