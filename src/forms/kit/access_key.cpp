#include "forms/kit/access_key.h"

#include "forms/kit/form.h"
#include "shared/text.h"

namespace postrove::forms {
namespace {

constexpr int kLastRank = 4;

// Keys are given away in this order: no word of the user's and no translated label takes the key of
// a button, least of all that of the main one.
int Rank(const Control& control) {
  if (control.isDefault) return 0;
  return (control.Kind() == ControlKind::Label ? kLastRank - 1 : 1) + (control.choosesKey ? 1 : 0);
}

bool HasKey(const Control& control) {
  return control.mnemonic && control.Kind() != ControlKind::TextBox &&
         control.Kind() != ControlKind::ComboBox && control.Kind() != ControlKind::RichTextBox;
}

bool IsLetter(wchar_t unit) {
  return (unit >= L'0' && unit <= L'9') || (unit >= L'A' && unit <= L'Z') ||
         (unit >= L'a' && unit <= L'z') || unit >= 0xC0;
}

// A caption and the letter that it marks itself, if any.
struct Caption {
  std::wstring plain;
  wchar_t own = 0;
};

Caption Read(const Control& control) {
  if (control.choosesKey || !HasKey(control)) return {control.Text()};
  const std::wstring& raw = control.Text();
  Caption caption;
  for (std::size_t i = 0; i < raw.size(); ++i) {
    if (raw[i] == L'&' && i + 1 < raw.size() && raw[++i] != L'&') {
      caption.own = text::Fold(raw[i]);
    }
    caption.plain += raw[i];
  }
  return caption;
}

// The caption with its own mark, or with one that it chooses; takes the letter.
std::wstring Mark(const Control& control, std::wstring& taken) {
  const auto isFree = [&](wchar_t unit) {
    return IsLetter(unit) && taken.find(text::Fold(unit)) == std::wstring::npos;
  };
  const Caption caption = Read(control);
  if (!control.choosesKey && (!caption.own || isFree(caption.own))) {
    if (caption.own) taken += caption.own;
    return control.Text();
  }
  std::wstring shown;
  bool marked = false;
  for (const wchar_t unit : caption.plain) {
    if (!marked && isFree(unit)) {
      marked = true;
      taken += text::Fold(unit);
      shown += L'&';
    }
    if (unit == L'&') shown += L'&';
    shown += unit;
  }
  return shown;
}

}  // namespace

std::wstring ShownCaption(const Control& control) {
  if (!HasKey(control)) return control.Text();
  std::wstring taken;
  for (int rank = 0; rank <= kLastRank; ++rank) {
    for (const auto& one : control.Owner().Controls()) {
      if (!HasKey(*one) || Rank(*one) != rank) continue;
      std::wstring shown = Mark(*one, taken);
      if (one.get() == &control) return shown;
    }
  }
  return control.Text();
}

std::wstring PlainCaption(const Control& control) { return Read(control).plain; }

}  // namespace postrove::forms
