#include <richedit.h>

#include <cstdlib>

#include "forms/win32/control_window.h"

// The colours of a control, which follow the system's scheme.
namespace postrove::forms {
namespace {

COLORREF ToColorRef(Color color) {
  constexpr Color kSystem = 0x80000000;
  return color & kSystem ? GetSysColor(static_cast<int>(color & 0xFF)) : color & 0xFFFFFF;
}

int Brightness(COLORREF color) {
  return (GetRValue(color) * 3 + GetGValue(color) * 6 + GetBValue(color)) / 10;
}

// The colours of a form are meant for dark text on a light ground; a scheme of the system can be
// the other way round, on a part of what a control shows.
COLORREF Readable(COLORREF text, COLORREF back) {
  constexpr int kContrast = 100;
  if (std::abs(Brightness(text) - Brightness(back)) >= kContrast) return text;
  return Brightness(back) >= 128 ? RGB(0, 0, 0) : RGB(255, 255, 255);
}

// Where the scheme has one ground for boxes and for the dialog, a box that is read and not edited
// would look like any other.
bool LooksLocked(const Control& control) {
  return control.Locked() && control.border &&
         GetSysColor(COLOR_WINDOW) == GetSysColor(COLOR_BTNFACE);
}

COLORREF TextColor(const Control& control) {
  if (LooksLocked(control)) return GetSysColor(COLOR_GRAYTEXT);
  return Readable(ToColorRef(control.ForeColor()), ToColorRef(control.BackColor()));
}

}  // namespace

HBRUSH ControlWindow::Colors(HDC dc) {
  if (!control_) return nullptr;
  const COLORREF back = ToColorRef(control_->BackColor());
  if (control_->Enabled()) ::SetTextColor(dc, TextColor(*control_));
  ::SetBkColor(dc, back);
  if (!brush_ || back != brushColor_) {
    if (brush_) DeleteObject(brush_);
    brush_ = CreateSolidBrush(back);
    brushColor_ = back;
  }
  return brush_;
}

void ControlWindow::FollowColors() {
  if (!control_ || !window_) return;
  SendMessageW(window_, WM_SYSCOLORCHANGE, 0, 0);
  ApplyColors();
}

// Rich text does not ask for its colours.
void ControlWindow::ApplyColors() {
  if (kind_ == ControlKind::RichTextBox) {
    SendMessageW(window_, EM_SETBKGNDCOLOR, 0,
                 static_cast<LPARAM>(ToColorRef(control_->BackColor())));
    CHARFORMATW format = {};
    format.cbSize = sizeof format;
    format.dwMask = CFM_COLOR;
    format.crTextColor = TextColor(*control_);
    for (const WPARAM range : {SCF_DEFAULT, SCF_ALL}) {
      SendMessageW(window_, EM_SETCHARFORMAT, range, reinterpret_cast<LPARAM>(&format));
    }
  }
  RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
}

}  // namespace postrove::forms
