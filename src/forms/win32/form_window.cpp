#include "forms/win32/form_window.h"

#include <algorithm>
#include <cwchar>
#include <utility>

#include "forms/win32/dpi.h"
#include "forms/win32/form_size.h"
#include "forms/win32/guard.h"
#include "shared/error.h"

namespace postrove::forms {
namespace {

constexpr UINT kDpiChanged = 0x02E0;  // WM_DPICHANGED, for headers that do not have it
constexpr int kFirstId = 100;         // above IDOK and its like, which mean something to Windows
constexpr int kListTwips = 3600;
constexpr int kTipTwips = 4500;
constexpr int kLendableTwips = 600;

// As in Visual Basic a form hears of its activation when it is shown and when another form is left
// for it, not after a message box or another program: the focus is then where it was.
bool IsForm(HWND window) {
  wchar_t name[64] = {};
  GetClassNameW(window, name, 64);
  return std::wcscmp(name, FormWindow::kClassName) == 0;
}

}  // namespace

FormWindow::FormWindow(Form& form, const Surroundings& surroundings)
    : form_(&form), surroundings_(surroundings), owner_(kClassName) {
  form.Attach(this);
}

FormWindow::~FormWindow() {
  if (form_) form_->Detach();
  End();
  if (window_) DestroyWindow(window_);
}

void FormWindow::Show() {
  const DpiAwareScope dpi;
  const VisualStyles::Scope styles(surroundings_.styles);
  style_ = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
  if (form_->Resizable()) style_ |= WS_THICKFRAME;
  // With this frame the caption has no icon, which would be that of no program.
  exStyle_ = WS_EX_CONTROLPARENT | WS_EX_DLGMODALFRAME;
  const HWND owner = ModalOwner::Choose();
  RECT ownerPlace = {};
  if (owner) GetWindowRect(owner, &ownerPlace);
  // Made where it will be shown, to have that monitor's scaling.
  CreateWindowExW(exStyle_, kClassName, form_->Caption().c_str(), style_, ownerPlace.left,
                  ownerPlace.top, 0, 0, owner, nullptr, surroundings_.module, this);
  if (!window_) {
    throw Error(HRESULT_FROM_WIN32(GetLastError()), form_->Name(),
                L"The window of the form could not be made");
  }
  CreateControls();
  tips_.Create(window_, surroundings_.module);
  for (const auto& control : controls_) tips_.Set(control->Window(), control->Model()->ToolTip());
  SetDpi(WindowDpi(window_));
  PlaceWindow();
  Layout();
  SendMessageW(window_, WM_CHANGEUISTATE, MAKEWPARAM(UIS_INITIALIZE, 0), 0);
  owner_.Disable(window_);
  ShowDefaultButton();
  // The form hears of its activation before any control has the focus, also when another program is
  // in front.
  activationPending_ = true;
  PostMessageW(window_, kFormActivated, 0, 0);
  ShowWindow(window_, SW_SHOW);
  RestoreFocus();
}

void FormWindow::CreateControls() {
  const WindowParts parts = {surroundings_.module, surroundings_.richEditClass};
  const Control* before = nullptr;
  for (const auto& model : form_->Controls()) {
    const bool options = model->Kind() == ControlKind::OptionButton;
    const bool optionsBefore = before && before->Kind() == ControlKind::OptionButton;
    const bool group = options != optionsBefore || (options && before->Name() != model->Name());
    before = model.get();
    controls_.push_back(std::make_unique<ControlWindow>(*model));
    controls_.back()->Create(window_, kFirstId + static_cast<int>(controls_.size()), group, parts);
  }
}

// The size of the window around a client area in twips, which is at least as designed.
SIZE FormWindow::SizeAround(SIZE twips) const {
  const SIZE client = {fonts_->Pixels(std::max<int>(twips.cx, form_->Width())),
                       fonts_->Pixels(std::max<int>(twips.cy, form_->Height()))};
  const RECT frame = FrameAround(client, style_, exStyle_, dpi_);
  return {frame.right - frame.left, frame.bottom - frame.top};
}

// As large as the user left it, centred on the owner, and within the work area of its monitor.
void FormWindow::PlaceWindow() {
  const HWND owner = GetWindow(window_, GW_OWNER);
  const RECT work = WorkArea(owner ? owner : window_);
  RECT around = work;
  if (owner && IsWindowVisible(owner) && !IsIconic(owner)) GetWindowRect(owner, &around);
  SIZE size = SizeAround(form_->Resizable() ? RememberedSize(form_->Name()) : SIZE());
  size.cx = std::min(size.cx, work.right - work.left);
  size.cy = std::min(size.cy, work.bottom - work.top);
  const auto place = [](LONG low, LONG high, LONG extent, LONG from, LONG to) {
    return std::max(from, std::min((low + high - extent) / 2, to - extent));
  };
  SetWindowPos(window_, nullptr, place(around.left, around.right, size.cx, work.left, work.right),
               place(around.top, around.bottom, size.cy, work.top, work.bottom), size.cx, size.cy,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void FormWindow::SetDpi(unsigned dpi) {
  dpi_ = dpi;
  // The old fonts go when no window uses them any more.
  const auto old = std::exchange(fonts_, std::make_unique<Fonts>(dpi));
  for (const auto& control : controls_) control->SetFont(*fonts_);
  tips_.SetFont(fonts_->Get(0, false, false), fonts_->Pixels(kTipTwips));
}

void FormWindow::Layout() {
  if (!form_ || !fonts_) return;
  RECT client;
  GetClientRect(window_, &client);
  const int extraWidth =
      std::max(0, static_cast<int>(client.right) - fonts_->Pixels(form_->Width()));
  // On a low screen the hints give some of their room.
  const int extraHeight =
      std::max(-fonts_->Pixels(kLendableTwips),
               static_cast<int>(client.bottom) - fonts_->Pixels(form_->Height()));
  for (const auto& control : controls_) LayOut(*control, extraWidth, extraHeight);
}

void FormWindow::LayOut(ControlWindow& control, int extraWidth, int extraHeight) {
  const Control& model = *control.Model();
  const Box& box = model.Place();
  // Edges, not sizes, are rounded: what is aligned in the design stays so.
  RECT place = {fonts_->Pixels(box.left), fonts_->Pixels(box.top),
                fonts_->Pixels(box.left + box.width), fonts_->Pixels(box.top + box.height)};
  if (model.anchors & kRight) {
    place.right += extraWidth;
    if (!(model.anchors & kLeft)) place.left += extraWidth;
  }
  if (model.anchors & kBottom) {
    place.bottom += extraHeight;
    if (!(model.anchors & kTop)) place.top += extraHeight;
  }
  control.MoveTo(place, fonts_->Pixels(kListTwips));
}

void FormWindow::Run() {
  while (form_ && window_) {
    MSG message;
    const BOOL got = GetMessageW(&message, nullptr, 0, 0);
    if (got == 0) PostQuitMessage(static_cast<int>(message.wParam));
    if (got <= 0) break;
    if (IsKeyOfDialog(message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  if (!form_) return;
  Guarded([this] {
    const HostDpiScope host;
    form_->Unload();
  });
  // Without a window a refusal to unload cannot hold.
  if (form_) std::exchange(form_, nullptr)->Detach();
  for (const auto& control : controls_) control->LetGo();
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

ControlWindow* FormWindow::WindowOf(const Control& control) const {
  for (const auto& window : controls_) {
    if (window->Model() == &control) return window.get();
  }
  return nullptr;
}

ControlWindow* FormWindow::Containing(HWND window) const {
  for (const auto& control : controls_) {
    if (control->Has(window)) return control.get();
  }
  return nullptr;
}

ControlWindow* FormWindow::ButtonFor(bool Control::*role) const {
  for (const auto& control : controls_) {
    if (control->Model() && control->Model()->*role) return control.get();
  }
  return nullptr;
}

void FormWindow::ControlChanged(Control& control, Property property) {
  const DpiAwareScope dpi;
  ControlWindow* const window = WindowOf(control);
  if (!window || !window_) return;
  window->Apply(property);
  if (property == Property::ToolTip) tips_.Set(window->Window(), control.ToolTip());
  if (property != Property::Place) return;
  Layout();
  // Controls that move over each other one by one leave pieces of their old pictures behind.
  RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void FormWindow::CaptionChanged() {
  if (window_) SetWindowTextW(window_, form_->Caption().c_str());
}

void FormWindow::Unloaded() {
  KeepSize();
  form_ = nullptr;
  told_ = nullptr;
  for (const auto& control : controls_) control->LetGo();
  End();
}

// What another program or a small monitor made of the window is not what the user chose.
void FormWindow::KeepSize() {
  if (!window_ || !std::exchange(sized_, false)) return;
  const DpiAwareScope dpi;
  RECT client;
  GetClientRect(window_, &client);
  RememberSize(form_->Name(), {fonts_->Twips(client.right), fonts_->Twips(client.bottom)});
}

// The window is only hidden: one of its procedures may be running. It is destroyed when the loop is
// left, which the empty message makes sure of.
void FormWindow::End() {
  if (!window_) return;
  owner_.Release(window_);
  ShowWindow(window_, SW_HIDE);
  PostMessageW(window_, WM_NULL, 0, 0);
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

void FormWindow::Command(HWND control, UINT code) {
  for (const auto& window : controls_) {
    if (window->Window() != control) continue;
    // An option button has marked itself already: its click counts in any case.
    if (code == BN_CLICKED && !SettleOn(*window) && window->IsButton()) return;
    return window->Command(code);
  }
}

HBRUSH FormWindow::Colors(HWND child, HDC dc) const {
  ControlWindow* const control = Containing(child);
  return control ? control->Colors(dc) : nullptr;
}

LRESULT CALLBACK FormWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) {
    const auto* const create = reinterpret_cast<const CREATESTRUCTW*>(lParam);
    auto* const self = static_cast<FormWindow*>(create->lpCreateParams);
    self->window_ = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
  }
  auto* const self = reinterpret_cast<FormWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (!self) return DefWindowProcW(window, message, wParam, lParam);
  if (message == WM_NCDESTROY) {
    SetWindowLongPtrW(window, GWLP_USERDATA, 0);
    self->window_ = nullptr;
    // Destroyed by others, the loop must notice it.
    PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
    return DefWindowProcW(window, message, wParam, lParam);
  }
  return self->HandleGuarded(message, wParam, lParam);
}

LRESULT FormWindow::HandleGuarded(UINT message, WPARAM wParam, LPARAM lParam) {
  LRESULT result = 0;
  Guarded([&] { result = Handle(message, wParam, lParam); });
  return result;
}

LRESULT FormWindow::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  const HWND window = window_;
  switch (message) {
    case WM_COMMAND:
      Command(reinterpret_cast<HWND>(lParam), HIWORD(wParam));
      return 0;
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLORBTN:
      if (const HBRUSH brush =
              Colors(reinterpret_cast<HWND>(lParam), reinterpret_cast<HDC>(wParam))) {
        return reinterpret_cast<LRESULT>(brush);
      }
      break;
    case WM_CLOSE:
      Close();
      return 0;
    case WM_DESTROY:
      owner_.Release(window);
      break;
    case WM_SIZE:
      if (wParam != SIZE_MINIMIZED) Layout();
      return 0;
    case WM_SIZING:
      sized_ = true;
      break;
    case WM_GETMINMAXINFO:
      if (form_ && fonts_) {
        const SIZE size = SizeAround({});
        const RECT work = WorkArea(window);
        reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {
            std::min(size.cx, work.right - work.left), std::min(size.cy, work.bottom - work.top)};
      }
      return 0;
    case kDpiChanged: {
      SetDpi(HIWORD(wParam));
      const RECT& place = *reinterpret_cast<const RECT*>(lParam);
      SetWindowPos(window, nullptr, place.left, place.top, place.right - place.left,
                   place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
      Layout();
      return 0;
    }
    case WM_ACTIVATE:
      if (LOWORD(wParam) == WA_INACTIVE) {
        if (IsChild(window, GetFocus())) lastFocus_ = GetFocus();
      } else if (IsForm(reinterpret_cast<HWND>(lParam)) &&
                 !std::exchange(activationPending_, true)) {
        PostMessageW(window, kFormActivated, 0, 0);
      }
      break;
    case WM_SETFOCUS:
      RestoreFocus();
      return 0;
    case WM_SETCURSOR:
      if (!surroundings_.waiting) break;
      SetCursor(LoadCursorW(nullptr, IDC_WAIT));
      return TRUE;
    case WM_NEXTDLGCTL:
      if (!LOWORD(lParam)) {
        MoveFocus(wParam != 0);
      } else if (ControlWindow* const control = Containing(reinterpret_cast<HWND>(wParam))) {
        control->Focus(true);
      }
      return 0;
    case DM_GETDEFID:
      if (ControlWindow* const button = ButtonFor(&Control::isDefault)) {
        return MAKELONG(GetDlgCtrlID(button->Window()), DC_HASDEFID);
      }
      return 0;
    case kFormActivated:
      activationPending_ = false;
      if (form_) {
        const HostDpiScope host;
        form_->UserActivated();
      }
      SettleFocus();
      return 0;
    case kFocusMoved:
      SettleFocus();
      return 0;
    case kEnterPressed:
      PressEnter();
      return 0;
    case kListMoved:
      if (ControlWindow* const combo = Containing(reinterpret_cast<HWND>(lParam))) {
        combo->ListMoved();
      }
      return 0;
    default:
      break;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace postrove::forms
