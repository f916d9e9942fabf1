#include <utility>

#include "forms/win32/dpi.h"
#include "forms/win32/form_window.h"
#include "forms/win32/guard.h"

// Where the focus of a dialog is, and what its keys do.
namespace postrove::forms {

// The second half of a double press was meant for what opened the dialog: nobody can have read the
// question that it would answer.
bool FormWindow::IsSecondPress(const MSG& message) const {
  const bool enter = byEnter_ && message.message == WM_KEYDOWN && message.wParam == VK_RETURN;
  const bool click =
      aboveForm_ && (message.message == WM_LBUTTONDOWN || message.message == WM_LBUTTONDBLCLK);
  if (!(enter || click) || !IsChild(window_, message.hwnd)) return false;
  return static_cast<LONG>(message.time - shown_) < static_cast<LONG>(GetDoubleClickTime());
}

bool FormWindow::IsKeyOfDialog(MSG& message) {
  if (message.hwnd != window_ && !IsChild(window_, message.hwnd)) {
    return IsDialogMessageW(window_, &message);
  }
  // To Windows' dialogs a letter that the control with the focus has no use for is an access key,
  // also without Alt: it would press a button.
  if (message.message == WM_CHAR) return false;
  if (message.message != WM_KEYDOWN) return IsDialogMessageW(window_, &message);
  // What the key before did to the focus is told before this one counts.
  Guarded([this] { SettleFocus(); });
  void (FormWindow::*press)() = nullptr;
  if (message.wParam == VK_RETURN) press = &FormWindow::PressEnter;
  if (message.wParam == VK_ESCAPE) press = &FormWindow::PressEscape;
  if (message.wParam == VK_F1) press = &FormWindow::PressHelp;
  if (!press) return IsDialogMessageW(window_, &message);
  // A key still held down from a message box before must not answer this dialog too.
  constexpr LPARAM kRepeated = 1 << 30;
  if (!(message.lParam & kRepeated)) Guarded([&] { (this->*press)(); });
  return true;
}

void FormWindow::MoveFocus(bool back) {
  ControlWindow* const from = Focused();
  // A combo box's text field has the focus, the combo box the place in the order.
  const HWND next = GetNextDlgTabItem(window_, from ? from->Window() : nullptr, back);
  if (ControlWindow* const to = Containing(next)) to->Focus(true);
}

void FormWindow::RestoreFocus() {
  ControlWindow* const last = Containing(lastFocus_);
  if (last && last->CanFocus()) return last->Focus(false);
  for (const auto& control : controls_) {
    if (control->CanFocus()) return control->Focus(true);
  }
}

// Tells the model where the focus is now. It is done after the focus has moved, as Visual Basic
// does it: a handler may then open windows and move the focus itself. Leaving the dialog for
// another window is no loss of focus.
void FormWindow::SettleFocus() {
  ControlWindow* const now = Focused();
  if (!form_ || !now || now == told_) return;
  ControlWindow* const before = std::exchange(told_, nullptr);
  ShowDefaultButton();
  const HostDpiScope host;
  if (before && before->Model()) before->Model()->UserLeft();
  if (!form_ || Focused() != now || told_) return;
  told_ = now;
  now->Model()->UserEntered();
}

// The same before a click on a control counts. False when a handler took the focus away from it: as
// in Visual Basic the click is then lost.
bool FormWindow::SettleOn(const ControlWindow& control) {
  SettleFocus();
  const ControlWindow* const now = Focused();
  return !now || now == &control;
}

void FormWindow::ShowDefaultButton() {
  ControlWindow* const focused = Focused();
  ControlWindow* const button =
      focused && focused->IsButton() ? focused : ButtonFor(&Control::isDefault);
  for (const auto& control : controls_) control->ShowDefault(control.get() == button);
}

// The control with the focus gets the key first. A button that is pressed by Enter takes the focus,
// so that the field before hears of its loss and can take over its text.
void FormWindow::PressEnter() {
  ControlWindow* const focused = Focused();
  const bool listDown = focused && focused->ListIsDown();
  if (listDown) focused->CloseListBy(VK_RETURN);
  if (focused && focused->Pressed(VK_RETURN)) return;
  if (!form_ || listDown) return;
  ControlWindow* const button = focused && (focused->IsButton() || focused->IsLink())
                                    ? focused
                                    : ButtonFor(&Control::isDefault);
  if (!button || !button->CanFocus()) return;
  button->Focus(false);
  if (SettleOn(*button)) button->Click();
}

// The field keeps the focus: what was typed into it is not taken over.
void FormWindow::PressEscape() {
  ControlWindow* const focused = Focused();
  if (focused && focused->ListIsDown()) return focused->CloseListBy(VK_ESCAPE);
  const HostDpiScope host;
  if (form_) form_->UserEscaped();
}

void FormWindow::PressHelp() {
  const HostDpiScope host;
  if (form_) form_->UserAskedForHelp();
}

void FormWindow::Close() {
  // Not from under a dialog of its own, which whoever ends the program does not see.
  if (!form_ || !IsWindowEnabled(window_)) return;
  ControlWindow* const cancel = ButtonFor(&Control::isCancel);
  // A button that is the default one as well takes what was typed, as with Enter.
  if (cancel && cancel->Model()->isDefault && cancel->CanFocus()) {
    cancel->Focus(false);
    if (!SettleOn(*cancel) || !form_) return;
  }
  const HostDpiScope host;
  form_->UserClosed();
}

}  // namespace postrove::forms
