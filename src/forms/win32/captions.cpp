#include "forms/kit/access_key.h"
#include "forms/win32/control_window.h"

// How much of its text a control can show, and what its tool tip says of the rest.
namespace postrove::forms {

bool ControlWindow::HasCaption() const {
  return kind_ == ControlKind::Label || kind_ == ControlKind::CommandButton ||
         kind_ == ControlKind::CheckBox || kind_ == ControlKind::OptionButton;
}

int ControlWindow::CaptionWidth(const Fonts& fonts) const {
  constexpr int kButtonSides = 240;
  constexpr int kMark = 330;  // of a check or option button, and the gap beside it
  int around = 0;
  switch (kind_) {
    case ControlKind::Label:
      if (control_->multiLine) return 0;
      break;
    case ControlKind::CommandButton:
      if (control_->icon) return 0;
      around += kButtonSides;
      break;
    case ControlKind::CheckBox:
    case ControlKind::OptionButton:
      around += kMark;
      break;
    default:
      return 0;
  }
  const SIZE text =
      TextRuler(window_).Measure(PlainCaption(*control_), DT_SINGLELINE | DT_NOPREFIX);
  return fonts.Twips(text.cx) + around;
}

bool ControlWindow::IsCut(const Fonts& fonts) const {
  RECT area;
  GetClientRect(window_, &area);
  if (kind_ == ControlKind::Label && control_->multiLine) {
    constexpr UINT kFormat = DT_WORDBREAK | DT_EDITCONTROL | DT_NOPREFIX;
    return TextRuler(window_).Measure(PlainCaption(*control_), kFormat, area.right).cy >
           area.bottom;
  }
  if (!edit_ || multiLine_) return CaptionWidth(fonts) > fonts.Twips(area.right);
  SendMessageW(edit_, EM_GETRECT, 0, reinterpret_cast<LPARAM>(&area));
  return TextRuler(edit_).Measure(TextOf(edit_), DT_SINGLELINE | DT_NOPREFIX).cx >
         area.right - area.left;
}

std::wstring ControlWindow::Tip(const Fonts& fonts) const {
  if (!control_ || !window_) return {};
  const std::wstring& tip = control_->ToolTip();
  if (!IsCut(fonts)) return tip;
  const std::wstring whole = edit_ ? TextOf(edit_) : PlainCaption(*control_);
  return tip.empty() ? whole : whole + L"\r\n" + tip;
}

}  // namespace postrove::forms
