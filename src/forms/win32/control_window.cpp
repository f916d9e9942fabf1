#include "forms/win32/control_window.h"

#include <commctrl.h>
#include <richedit.h>
#include <windowsx.h>

#include <utility>

#include "forms/kit/access_key.h"
#include "forms/win32/dpi.h"
#include "forms/win32/guard.h"
#include "shared/error.h"

namespace postrove::forms {
namespace {

constexpr int kTwipsPerInch = 1440;
constexpr int kTextInset = 90;

struct Look {
  const wchar_t* windowClass;
  DWORD style;
  DWORD exStyle;
};

Look LookOf(const Control& control, const wchar_t* richEditClass) {
  const DWORD frame = control.border ? WS_EX_CLIENTEDGE : 0;
  const DWORD lines = control.multiLine ? ES_MULTILINE | ES_AUTOVSCROLL : ES_AUTOHSCROLL;
  switch (control.Kind()) {
    case ControlKind::Label:
      // Without SS_NOTIFY the mouse passes through, and no tool tip comes up.
      // What has no room is shown by an ellipsis, or in several lines by breaking long words.
      return {WC_STATICW,
              SS_LEFT | SS_NOTIFY | (control.mnemonic ? 0u : SS_NOPREFIX) |
                  (control.multiLine ? SS_EDITCONTROL : SS_ENDELLIPSIS),
              0};
    case ControlKind::TextBox:
      return {WC_EDITW, lines, frame};
    case ControlKind::ComboBox:
      return {WC_COMBOBOXW, CBS_DROPDOWN | CBS_AUTOHSCROLL | CBS_HASSTRINGS | WS_VSCROLL, 0};
    case ControlKind::CommandButton:
      return {WC_BUTTONW, BS_PUSHBUTTON, 0};
    case ControlKind::RichTextBox:
      return {richEditClass ? richEditClass : WC_EDITW,
              ES_MULTILINE | ES_AUTOVSCROLL | ES_READONLY | WS_VSCROLL | WS_BORDER, 0};
    case ControlKind::CheckBox:
      return {WC_BUTTONW, BS_CHECKBOX | (control.boxOnRight ? BS_RIGHTBUTTON : 0u), 0};
    case ControlKind::OptionButton:
      // Of this kind the arrow keys choose. It marks its group as the model does.
      return {WC_BUTTONW, BS_AUTORADIOBUTTON, 0};
    case ControlKind::Frame:
      // Transparent, so that the dialog paints the background of its inside.
      return {WC_BUTTONW, BS_GROUPBOX, WS_EX_TRANSPARENT};
  }
  throw Error(kInvalidArgument, control.Name(), L"Unknown kind of control");
}

bool TakesFocus(const Control& control) {
  return control.tabStop && control.Kind() != ControlKind::Frame &&
         (control.Kind() != ControlKind::Label || control.link);
}

int ShiftState() {
  const auto down = [](int key) { return GetKeyState(key) < 0; };
  return (down(VK_SHIFT) ? 1 : 0) | (down(VK_CONTROL) ? 2 : 0) | (down(VK_MENU) ? 4 : 0);
}

}  // namespace

std::wstring TextOf(HWND window) {
  const int length = GetWindowTextLengthW(window);
  std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), length + 1)));
  return text;
}

ControlWindow::~ControlWindow() {
  if (brush_) DeleteObject(brush_);
  if (icon_) DestroyIcon(icon_);
}

void ControlWindow::Create(HWND dialog, int id, bool group, const WindowParts& parts) {
  Control& control = *control_;
  const Look look = LookOf(control, parts.richEditClass);
  dialog_ = dialog;
  module_ = parts.module;
  link_ = control.link;
  multiLine_ =
      kind_ == ControlKind::RichTextBox || (kind_ == ControlKind::TextBox && control.multiLine);
  DWORD style = WS_CHILD | look.style;
  if (control.Visible()) style |= WS_VISIBLE;
  if (!control.Enabled()) style |= WS_DISABLED;
  if (TakesFocus(control)) style |= WS_TABSTOP;
  if (group) style |= WS_GROUP;
  // The list of a combo box takes its height from the window's first one.
  const int height = kind_ == ControlKind::ComboBox ? 200 : 0;
  window_ = CreateWindowExW(look.exStyle, look.windowClass, control.Text().c_str(), style, 0, 0, 0,
                            height, dialog, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                            parts.module, nullptr);
  if (!window_) {
    throw Error(HRESULT_FROM_WIN32(GetLastError()), control.Name(),
                L"The window of a control could not be made");
  }
  windowProcedure_ = Subclass(window_);
  if (kind_ == ControlKind::TextBox) edit_ = window_;
  if (kind_ == ControlKind::ComboBox) {
    COMBOBOXINFO info = {};
    info.cbSize = sizeof info;
    if (GetComboBoxInfo(window_, &info)) {
      edit_ = info.hwndItem;
      list_ = info.hwndList;
      editProcedure_ = Subclass(edit_);
    }
  }
  if (edit_) SendMessageW(edit_, EM_SETLIMITTEXT, 0, 0);
  for (const Property property : {Property::Text, Property::Locked, Property::BackColor,
                                  Property::Items, Property::Selection, Property::Value}) {
    Apply(property);
  }
}

bool ControlWindow::Has(HWND window) const {
  return window && window_ && (window == window_ || window == list_ || IsChild(window_, window));
}

void ControlWindow::Apply(Property property) {
  if (!control_ || !window_) return;
  switch (property) {
    case Property::Text:
      return SetWindowTextNow();
    case Property::Visible:
      if (!control_->Visible() && Has(GetFocus())) SendMessageW(dialog_, WM_NEXTDLGCTL, 0, 0);
      ShowWindow(window_, control_->Visible() ? SW_SHOWNA : SW_HIDE);
      return;
    case Property::Enabled:
      if (!control_->Enabled() && Has(GetFocus())) SendMessageW(dialog_, WM_NEXTDLGCTL, 0, 0);
      EnableWindow(window_, control_->Enabled());
      return;
    case Property::Locked:
      if (edit_) SendMessageW(edit_, EM_SETREADONLY, control_->Locked(), 0);
      return;
    case Property::BackColor:
    case Property::ForeColor:
      return ApplyColors();
    case Property::Items:
      return EmptyList();
    case Property::ItemAdded:
      return FillLater();
    case Property::Selection:
      return SetSelectionNow();
    case Property::Value:
      if (kind_ == ControlKind::CheckBox || kind_ == ControlKind::OptionButton) {
        SendMessageW(window_, BM_SETCHECK, control_->Checked() ? BST_CHECKED : BST_UNCHECKED, 0);
      }
      return;
    case Property::ToolTip:
    case Property::Place:
      return;  // the dialog's part
  }
}

void ControlWindow::SetWindowTextNow() {
  const std::wstring text = ShownCaption(*control_);
  if (TextOf(window_) == text) return;
  const Applying applying(applying_);
  SetWindowTextW(window_, text.c_str());
  if (edit_) {
    const int start = control_->SelectionStart();
    SendMessageW(edit_, EM_SETSEL, static_cast<WPARAM>(start), start + control_->SelectionLength());
  }
  ShowPathEnd();
}

void ControlWindow::SetFont(Fonts& fonts) {
  if (!control_ || !window_) return;
  const HFONT font = fonts.Get(control_->fontPoints, control_->bold, link_);
  SendMessageW(window_, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
  // Without a frame the text is aligned with the labels.
  if (edit_ && !control_->border)
    SendMessageW(edit_, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, 0);
  unitsPerInch_ = fonts.Pixels(kTwipsPerInch);
  if (edit_ && !multiLine_) lineHeight_ = TextRuler(edit_).LineHeight();
  if (control_->icon) LoadIcon(fonts);
}

// Without the icon the button shows its caption.
void ControlWindow::LoadIcon(Fonts& fonts) {
  constexpr int kIconTwips = 240;
  const int size = fonts.Pixels(kIconTwips);
  const auto icon = static_cast<HICON>(LoadImageW(module_, MAKEINTRESOURCEW(control_->icon),
                                                  IMAGE_ICON, size, size, LR_DEFAULTCOLOR));
  if (!icon) return;
  const LONG_PTR style = GetWindowLongPtrW(window_, GWL_STYLE);
  SetWindowLongPtrW(window_, GWL_STYLE, style | BS_ICON);
  SendMessageW(window_, BM_SETIMAGE, IMAGE_ICON, reinterpret_cast<LPARAM>(icon));
  if (icon_) DestroyIcon(icon_);
  icon_ = icon;
}

void ControlWindow::MoveTo(const RECT& place, int listHeight) {
  if (!window_) return;
  const Applying applying(applying_);
  int height = place.bottom - place.top;
  DWORD start = 0;
  DWORD end = 0;
  if (kind_ == ControlKind::ComboBox) {
    // The frame of the closed box around its text field.
    constexpr int kFrame = 6;
    SendMessageW(window_, CB_SETITEMHEIGHT, static_cast<WPARAM>(-1), height - kFrame);
    height += listHeight;
    SendMessageW(edit_, EM_GETSEL, reinterpret_cast<WPARAM>(&start),
                 reinterpret_cast<LPARAM>(&end));
  }
  SetWindowPos(window_, nullptr, place.left, place.top, place.right - place.left, height,
               SWP_NOZORDER | SWP_NOACTIVATE);
  if (kind_ == ControlKind::RichTextBox) {
    // The text keeps off the frame.
    RECT text;
    GetClientRect(window_, &text);
    const int inset = MulDiv(kTextInset, unitsPerInch_, kTwipsPerInch);
    InflateRect(&text, -inset, 0);
    text.top += inset / 2;
    SendMessageW(window_, EM_SETRECT, 0, reinterpret_cast<LPARAM>(&text));
    // It can have scrolled with the change of its size; a text is read from its beginning.
    SendMessageW(window_, WM_VSCROLL, SB_TOP, 0);
  }
  // A combo box selects its text when it is resized.
  if (kind_ == ControlKind::ComboBox) {
    SendMessageW(edit_, EM_SETSEL, start, static_cast<LPARAM>(end));
  }
  ShowPathEnd();
}

void ControlWindow::Focus(bool selectAll) {
  SetFocus(window_);
  if (selectAll && edit_) SendMessageW(edit_, EM_SETSEL, 0, -1);
}

// An option button without the mark is no tab stop: Windows takes that from it, and would click it
// with the focus.
bool ControlWindow::CanFocus() const {
  return control_ && (GetWindowLongPtrW(window_, GWL_STYLE) & WS_TABSTOP) && control_->Visible() &&
         control_->Enabled();
}

void ControlWindow::ShowDefault(bool isDefault) {
  if (!IsButton() || !window_) return;
  const auto style = static_cast<DWORD>(GetWindowLongPtrW(window_, GWL_STYLE));
  const bool now = (style & BS_TYPEMASK) == BS_DEFPUSHBUTTON;
  if (now == isDefault) return;
  const DWORD type = isDefault ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON;
  SendMessageW(window_, BM_SETSTYLE, (style & 0xFFFF & ~static_cast<DWORD>(BS_TYPEMASK)) | type,
               TRUE);
}

void ControlWindow::Command(UINT code) {
  if (!control_) return;
  switch (kind_) {
    case ControlKind::TextBox:
      if (code == EN_CHANGE && !applying_) ReadText();
      return;
    case ControlKind::ComboBox:
      return ListCommand(code);
    case ControlKind::Label:
      if (code == STN_CLICKED) Click();
      return;
    case ControlKind::CommandButton:
    case ControlKind::CheckBox:
    case ControlKind::OptionButton:
      if (code == BN_CLICKED) Click();
      return;
    case ControlKind::RichTextBox:
    case ControlKind::Frame:
      return;
  }
}

void ControlWindow::Click() {
  const HostDpiScope host;
  if (control_) control_->UserClicked();
}

bool ControlWindow::Pressed(int key) {
  TakePick();
  if (!control_) return false;
  ReadCaret();
  const HostDpiScope host;
  return control_->UserPressed(key);
}

WNDPROC ControlWindow::Subclass(HWND window) {
  SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  return reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Procedure)));
}

void ControlWindow::Unsubclass(HWND window) {
  const WNDPROC procedure = window == window_ ? windowProcedure_ : editProcedure_;
  SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
}

LRESULT ControlWindow::Pass(HWND window, UINT message, WPARAM wParam, LPARAM lParam) const {
  const WNDPROC procedure = window == window_ ? windowProcedure_ : editProcedure_;
  return CallWindowProcW(procedure, window, message, wParam, lParam);
}

LRESULT CALLBACK ControlWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto self = reinterpret_cast<ControlWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  return self->Handle(window, message, wParam, lParam);
}

LRESULT ControlWindow::Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_NCCALCSIZE:
    case WM_NCPAINT:
    case WM_NCHITTEST:
      if (window != edit_ || multiLine_) break;
      return HandleFrame(message, wParam, lParam);
    case WM_SETFOCUS:
    case WM_KILLFOCUS: {
      PostMessageW(dialog_, kFocusMoved, 0, 0);
      if (link_) InvalidateRect(window, nullptr, TRUE);
      const LRESULT result = Pass(window, message, wParam, lParam);
      // Where the user comes back to from another window, the caret stays where it was.
      if (IsChild(dialog_, reinterpret_cast<HWND>(wParam))) ShowPathEnd();
      return result;
    }
    case WM_CHAR: {
      if (wParam == VK_RETURN) return SendMessageW(dialog_, kEnterPressed, 0, 0);
      if (wParam == VK_ESCAPE || wParam == VK_TAB) return 0;
      bool swallowed = false;
      Guarded([&] { swallowed = Pressed(static_cast<int>(wParam)); });
      if (swallowed) return 0;
      break;
    }
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
      if (wParam == VK_UP || wParam == VK_DOWN || wParam == VK_PRIOR || wParam == VK_NEXT ||
          wParam == VK_F4) {
        Guarded([&] { FillAround(); });
      }
      if (link_ && wParam == VK_SPACE) {
        Guarded([&] { Click(); });
        return 0;
      }
      break;
    case WM_MOUSEWHEEL:
      // Over a closed combo box it would change the choice.
      if (!list_) break;
      return ListIsDown() ? SendMessageW(list_, message, wParam, lParam) : 0;
    case WM_TIMER:
      if (wParam != kFillTimer) break;
      Guarded([&] { FillMore(); });
      return 0;
    case WM_LBUTTONDOWN:
      PressMouse(1, lParam);
      break;
    case WM_RBUTTONDOWN:
      PressMouse(2, lParam);
      break;
    case WM_MBUTTONDOWN:
      PressMouse(4, lParam);
      break;
    case WM_SETCURSOR:
      if (!link_) break;
      SetCursor(LoadCursorW(nullptr, IDC_HAND));
      return TRUE;
    case WM_GETDLGCODE:
      if (link_) return DLGC_BUTTON;
      // A box of several lines claims Tab, Enter and Esc; they are the dialog's.
      if (multiLine_) return DLGC_WANTARROWS;
      break;
    case WM_PAINT:
      if (!link_ || GetFocus() != window) break;
      {
        const LRESULT result = Pass(window, message, wParam, lParam);
        PaintFocus();
        return result;
      }
    case WM_NCDESTROY: {
      Unsubclass(window);
      const LRESULT result = Pass(window, message, wParam, lParam);
      if (window == window_) window_ = nullptr;
      if (window == edit_) edit_ = nullptr;
      return result;
    }
    default:
      break;
  }
  return Pass(window, message, wParam, lParam);
}

void ControlWindow::PressMouse(int button, LPARAM position) {
  if (!control_ || !unitsPerInch_) return;
  const auto twips = [this](int pixels) {
    return static_cast<float>(MulDiv(pixels, kTwipsPerInch, unitsPerInch_));
  };
  Guarded([&] {
    const HostDpiScope host;
    control_->UserMouseDown(button, ShiftState(), twips(GET_X_LPARAM(position)),
                            twips(GET_Y_LPARAM(position)));
  });
}

void ControlWindow::PaintFocus() {
  if (const HDC dc = GetDC(window_)) {
    RECT area;
    GetClientRect(window_, &area);
    DrawFocusRect(dc, &area);
    ReleaseDC(window_, dc);
  }
}

}  // namespace postrove::forms
