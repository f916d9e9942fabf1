#include "forms/win32/form_window.h"

#include <commctrl.h>

#include <algorithm>
#include <cwchar>
#include <utility>

#include "forms/win32/dpi.h"
#include "forms/win32/guard.h"
#include "shared/error.h"

namespace postrove::forms {
namespace {

constexpr UINT kDpiChanged = 0x02E0;  // WM_DPICHANGED, for headers that do not have it
constexpr int kFirstId = 100;         // above IDOK and its like, which mean something to Windows

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
  // Made where it will be shown, to have that monitor's scaling and work area.
  CreateWindowExW(exStyle_, kClassName, form_->Caption().c_str(), style_,
                  (ownerPlace.left + ownerPlace.right) / 2,
                  (ownerPlace.top + ownerPlace.bottom) / 2, 0, 0, owner, nullptr,
                  surroundings_.module, this);
  if (!window_) {
    throw Error(HRESULT_FROM_WIN32(GetLastError()), form_->Name(),
                L"The window of the form could not be made");
  }
  CreateControls();
  tips_.Create(window_, surroundings_.module);
  for (const auto& control : controls_) {
    tips_.Add(control->Window());
    if (control->Field() != control->Window()) tips_.Add(control->Field());
  }
  accessibility_.BeDialog(window_);
  accessibility_.Describe(window_, MessageText());
  SetDpi(WindowDpi(window_));
  PlaceWindow();
  Arrange();
  SendMessageW(window_, WM_CHANGEUISTATE, MAKEWPARAM(UIS_INITIALIZE, 0), 0);
  owner_.Disable(window_);
  ShowDefaultButton();
  // The form hears of its activation before any control has the focus, also when another program is
  // in front.
  activationPending_ = true;
  PostMessageW(window_, kFormActivated, 0, 0);
  ShowWindow(window_, SW_SHOW);
  RestoreFocus();
  byEnter_ = GetKeyState(VK_RETURN) < 0;
  aboveForm_ = IsForm(owner);
  shown_ = GetTickCount();
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

void FormWindow::Run() {
  while (form_ && window_) {
    MSG message;
    const BOOL got = GetMessageW(&message, nullptr, 0, 0);
    if (got == 0) PostQuitMessage(static_cast<int>(message.wParam));
    if (got <= 0) break;
    if (IsSecondPress(message) || IsKeyOfDialog(message)) continue;
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
  if (property == Property::Place) return Rearrange();
  if (property != Property::Text) return;
  if (control.Kind() == ControlKind::RichTextBox) {
    if (ControlWindow* const focused = Focused()) {
      accessibility_.Describe(focused->Field(), control.Text());
    }
  }
  if (!window->HasCaption()) return;
  // It may have taken another one's key.
  for (const auto& other : controls_) {
    if (other->HasCaption()) other->Apply(Property::Text);
  }
  Rearrange();
}

// What the form has to say to its user when it is opened.
std::wstring FormWindow::MessageText() const {
  std::wstring text;
  for (const auto& control : form_->Controls()) {
    const bool message = control->Kind() == ControlKind::TextBox && control->multiLine;
    if (message || control->Kind() == ControlKind::RichTextBox) text += control->Text();
  }
  return text;
}

void FormWindow::FollowColors() {
  for (const auto& control : controls_) control->FollowColors();
  RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
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

// The window is only hidden: one of its procedures may be running. It is destroyed when the loop is
// left, which the empty message makes sure of.
void FormWindow::End() {
  if (!window_) return;
  owner_.Release(window_);
  accessibility_.Forget();
  ShowWindow(window_, SW_HIDE);
  PostMessageW(window_, WM_NULL, 0, 0);
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
    case WM_SYSCOLORCHANGE:
    case WM_THEMECHANGED:
      FollowColors();
      return 0;
    case WM_NOTIFY:
      if (const auto question = reinterpret_cast<NMHDR*>(lParam);
          question->code == TTN_GETDISPINFOW && fonts_) {
        const ControlWindow* const control = Containing(reinterpret_cast<HWND>(question->idFrom));
        tips_.Answer(question, control ? control->Tip(*fonts_) : std::wstring());
      }
      return 0;
    case WM_SIZE:
      if (wParam != SIZE_MINIMIZED) Arrange();
      return 0;
    case WM_SIZING:
      sized_ = true;
      break;
    case WM_GETMINMAXINFO:
      if (form_ && layout_) {
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
      Arrange();
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
