#include "forms/kit/access_key.h"

#include "forms/kit/form.h"
#include "shared/text.h"

namespace postrove::forms {
namespace {

bool HasCaption(const Control& control) {
  return control.Kind() != ControlKind::TextBox && control.Kind() != ControlKind::ComboBox &&
         control.Kind() != ControlKind::RichTextBox;
}

// The marked letters of a shown caption.
std::wstring KeysOf(const std::wstring& caption) {
  std::wstring keys;
  for (std::size_t i = 0; i + 1 < caption.size(); ++i) {
    if (caption[i] == L'&' && caption[++i] != L'&') keys += text::Fold(caption[i]);
  }
  return keys;
}

// Those that choose for themselves do it one after the other.
std::wstring KeysOfOthers(const Control& control) {
  std::wstring keys;
  bool before = true;
  for (const auto& other : control.Owner().Controls()) {
    if (other.get() == &control) before = false;
    if (other.get() == &control || !HasCaption(*other) || !other->mnemonic) continue;
    if (before || !other->choosesKey) keys += KeysOf(ShownCaption(*other));
  }
  return keys;
}

bool IsLetter(wchar_t unit) {
  return (unit >= L'0' && unit <= L'9') || (unit >= L'A' && unit <= L'Z') ||
         (unit >= L'a' && unit <= L'z') || unit >= 0xC0;
}

}  // namespace

std::wstring ShownCaption(const Control& control) {
  const std::wstring& caption = control.Text();
  if (!control.choosesKey) return caption;
  const std::wstring taken = KeysOfOthers(control);
  bool marked = false;
  std::wstring shown;
  for (const wchar_t unit : caption) {
    if (!marked && IsLetter(unit) && taken.find(text::Fold(unit)) == std::wstring::npos) {
      marked = true;
      shown += L'&';
    }
    if (unit == L'&') shown += L'&';
    shown += unit;
  }
  return shown;
}

}  // namespace postrove::forms
