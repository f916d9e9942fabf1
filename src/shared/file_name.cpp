#include "shared/file_name.h"

#include "shared/text.h"

namespace postrove {
namespace {

bool IsForbidden(char32_t c) {
  return c < 0x80 &&
         std::wstring_view(L"\\/:*?\"<>|").find(static_cast<wchar_t>(c)) != std::wstring_view::npos;
}

// What a reader of the name cannot see or Windows cannot store: control characters, line ends,
// direction and byte order marks and halves of surrogate pairs.
bool IsInvisible(char32_t c) {
  return c < 0x20 || (c >= 0x7F && c <= 0x9F) || c == 0x200E || c == 0x200F || c == 0x061C ||
         (c >= 0x2028 && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069) || c == 0xFEFF ||
         (c >= 0xD800 && c <= 0xDFFF);
}

std::wstring_view TrimDotsAndBlanks(std::wstring_view name) {
  constexpr wchar_t kTrimmed[] = L". ";
  const std::size_t first = name.find_first_not_of(kTrimmed);
  if (first == std::wstring_view::npos) return {};
  return name.substr(first, name.find_last_not_of(kTrimmed) - first + 1);
}

// At most `maxUnits` UTF-16 units of a name that is trimmed at its start, trimmed at its end.
std::wstring Cut(std::wstring_view name, std::size_t maxUnits) {
  std::size_t end = 0;
  std::size_t units = 0;
  while (end < name.size()) {
    std::size_t next = end;
    units += text::NextCodePoint(name, &next) > 0xFFFF ? 2 : 1;
    if (units > maxUnits) break;
    end = next;
  }
  return std::wstring(TrimDotsAndBlanks(name.substr(0, end)));
}

// Windows takes a device's name for the device whatever extension follows, and ignores blanks
// between the two. The superscript digits one to three count as digits.
bool IsDeviceName(std::wstring_view name) {
  const std::wstring base = text::Trim(name.substr(0, name.find(L'.')));
  for (const wchar_t* device : {L"CON", L"PRN", L"AUX", L"NUL", L"CONIN$", L"CONOUT$"}) {
    if (text::EqualsIgnoreCase(base, device)) return true;
  }
  return base.size() == 4 &&
         (text::StartsWithIgnoreCase(base, L"COM") || text::StartsWithIgnoreCase(base, L"LPT")) &&
         std::wstring_view(L"0123456789\u00B9\u00B2\u00B3").find(base[3]) !=
             std::wstring_view::npos;
}

}  // namespace

std::wstring CleanFileName(std::wstring_view text, std::size_t maxUnits) {
  std::wstring name;
  name.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    char32_t c = text::NextCodePoint(text, &i);
    if (IsForbidden(c)) c = L'-';
    if (IsInvisible(c)) c = L' ';
    if (c == L' ' && !name.empty() && name.back() == L' ') continue;
    text::AppendCodePoint(&name, c);
  }
  name = Cut(TrimDotsAndBlanks(name), maxUnits);
  // After the cut, which can shorten a harmless name to a device's.
  if (IsDeviceName(name)) name = Cut(L"_" + name, maxUnits);
  return name;
}

}  // namespace postrove
