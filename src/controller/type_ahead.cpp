#include "controller/type_ahead.h"

#include "forms/kit/control.h"
#include "shared/text.h"

namespace postrove {
namespace {

constexpr int kBackspace = 8;

}  // namespace

bool IsCharacter(int keyAscii) {
  const bool control = keyAscii < 0x20 || (keyAscii >= 0x7F && keyAscii < 0xA0);
  const bool firstHalf = keyAscii >= 0xD800 && keyAscii < 0xDC00;
  return !control && !firstHalf;
}

bool CompleteTyping(forms::FormHost& host, forms::Control& combo, int& keyAscii) {
  if (!IsCharacter(keyAscii) && keyAscii != kBackspace) return false;
  std::wstring prefix = combo.Text().substr(0, static_cast<std::size_t>(combo.SelectionStart()));
  if (keyAscii != kBackspace) {
    prefix += static_cast<wchar_t>(keyAscii);
  } else if (!prefix.empty()) {
    prefix.pop_back();
  }
  if (prefix.empty()) return false;  // the box takes away what is left
  host.DropDownList(combo);
  const std::size_t row = text::FindStartingWith(combo.Items(), prefix);
  if (row == std::wstring::npos) return false;
  const auto start = static_cast<int>(prefix.size());
  combo.SetListIndex(static_cast<int>(row));
  combo.Select(start, static_cast<int>(combo.Text().size()) - start);
  keyAscii = 0;
  return true;
}

}  // namespace postrove
