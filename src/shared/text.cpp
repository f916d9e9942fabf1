#include "shared/text.h"

#include <algorithm>
#include <iterator>

namespace postrove::text {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kLastCodePoint = 0x10FFFF;

bool IsHighSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDBFF; }
bool IsLowSurrogate(char32_t c) { return c >= 0xDC00 && c <= 0xDFFF; }
bool IsSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }

// A run of capital letters. With step 1 every character of it is a capital; with step 2 capitals
// and small letters alternate, beginning with a capital.
struct Capitals {
  char32_t first;
  char32_t last;
  char32_t step;
  char32_t lower;  // small letter of `first`; the others follow in the same distance
};

constexpr Capitals kCapitals[] = {
    {0x00C0, 0x00D6, 1, 0x00E0}, {0x00D8, 0x00DE, 1, 0x00F8}, {0x0100, 0x012E, 2, 0x0101},
    {0x0132, 0x0136, 2, 0x0133}, {0x0139, 0x0147, 2, 0x013A}, {0x014A, 0x0176, 2, 0x014B},
    {0x0178, 0x0178, 1, 0x00FF}, {0x0179, 0x017D, 2, 0x017A}, {0x01CD, 0x01DB, 2, 0x01CE},
    {0x01DE, 0x01EE, 2, 0x01DF}, {0x01F8, 0x021E, 2, 0x01F9}, {0x0222, 0x0232, 2, 0x0223},
    {0x0370, 0x0372, 2, 0x0371}, {0x0376, 0x0376, 1, 0x0377}, {0x0386, 0x0386, 1, 0x03AC},
    {0x0388, 0x038A, 1, 0x03AD}, {0x038C, 0x038C, 1, 0x03CC}, {0x038E, 0x038F, 1, 0x03CD},
    {0x0391, 0x03A1, 1, 0x03B1}, {0x03A3, 0x03AB, 1, 0x03C3}, {0x03C2, 0x03C2, 1, 0x03C3},
    {0x03D8, 0x03EE, 2, 0x03D9}, {0x03F7, 0x03F7, 1, 0x03F8}, {0x03FA, 0x03FA, 1, 0x03FB},
    {0x0400, 0x040F, 1, 0x0450}, {0x0410, 0x042F, 1, 0x0430}, {0x0460, 0x0480, 2, 0x0461},
    {0x048A, 0x04BE, 2, 0x048B}, {0x04C0, 0x04C0, 1, 0x04CF}, {0x04C1, 0x04CD, 2, 0x04C2},
    {0x04D0, 0x04FE, 2, 0x04D1}, {0x0500, 0x052E, 2, 0x0501}, {0x1E00, 0x1E94, 2, 0x1E01},
    {0x1EA0, 0x1EFE, 2, 0x1EA1},
};

// Characters that leave nothing to see, in ranges; halves of surrogate pairs among them.
constexpr char32_t kUnseen[][2] = {
    {0x0000, 0x0020},   {0x007F, 0x00A0},   {0x00AD, 0x00AD},  {0x034F, 0x034F}, {0x061C, 0x061C},
    {0x115F, 0x1160},   {0x1680, 0x1680},   {0x17B4, 0x17B5},  {0x180B, 0x180F}, {0x2000, 0x200F},
    {0x2028, 0x202F},   {0x205F, 0x206F},   {0x2800, 0x2800},  {0x3000, 0x3000}, {0x3164, 0x3164},
    {0xD800, 0xDFFF},   {0xFE00, 0xFE0F},   {0xFEFF, 0xFEFF},  {0xFFA0, 0xFFA0}, {0xFFF0, 0xFFFB},
    {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A}, {0xE0000, 0xE0FFF}};

std::size_t FindExactly(std::wstring_view text, std::wstring_view needle, std::size_t from) {
  return needle.empty() ? std::wstring_view::npos : text.find(needle, from);
}

template <typename Find>
std::wstring ReplaceEvery(std::wstring_view text, std::wstring_view what, std::wstring_view with,
                          Find find) {
  std::wstring result;
  std::size_t copied = 0;
  for (std::size_t at = find(text, what, 0); at != std::wstring_view::npos;
       at = find(text, what, copied)) {
    result.append(text.substr(copied, at - copied)).append(with);
    copied = at + what.size();
  }
  return result.append(text.substr(copied));
}

// The code point of well-formed UTF-8 at *position, else U+FFFD; *position moves behind the longest
// beginning of a sequence found there, so each broken sequence gives one U+FFFD.
char32_t NextFromUtf8(std::string_view bytes, std::size_t* position) {
  const auto byteAt = [&](std::size_t at) { return static_cast<unsigned char>(bytes[at]); };
  const unsigned char lead = byteAt((*position)++);
  if (lead < 0x80) return lead;
  int following;
  char32_t codePoint;
  // The second byte's range excludes overlong forms, surrogates and what lies past the last code
  // point.
  unsigned char low = 0x80;
  unsigned char high = 0xBF;
  if (lead >= 0xC2 && lead <= 0xDF) {
    following = 1;
    codePoint = lead & 0x1Fu;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    following = 2;
    codePoint = lead & 0x0Fu;
    if (lead == 0xE0) low = 0xA0;
    if (lead == 0xED) high = 0x9F;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    following = 3;
    codePoint = lead & 0x07u;
    if (lead == 0xF0) low = 0x90;
    if (lead == 0xF4) high = 0x8F;
  } else {
    return kReplacement;
  }
  for (; following > 0; --following) {
    if (*position == bytes.size()) return kReplacement;
    const unsigned char next = byteAt(*position);
    if (next < low || next > high) return kReplacement;
    codePoint = (codePoint << 6) | (next & 0x3Fu);
    ++*position;
    low = 0x80;
    high = 0xBF;
  }
  return codePoint;
}

}  // namespace

wchar_t Fold(wchar_t c) {
  const auto code = static_cast<char32_t>(c);
  if (code < 0x80) return code >= 'A' && code <= 'Z' ? static_cast<wchar_t>(code + 0x20) : c;
  for (const Capitals& run : kCapitals) {
    if (code >= run.first && code <= run.last && (code - run.first) % run.step == 0) {
      return static_cast<wchar_t>(code - run.first + run.lower);
    }
  }
  return c;
}

bool EqualsIgnoreCase(std::wstring_view a, std::wstring_view b) {
  return a.size() == b.size() && StartsWithIgnoreCase(a, b);
}

bool StartsWithIgnoreCase(std::wstring_view text, std::wstring_view prefix) {
  if (text.size() < prefix.size()) return false;
  for (std::size_t i = 0; i < prefix.size(); ++i) {
    if (text[i] != prefix[i] && Fold(text[i]) != Fold(prefix[i])) return false;
  }
  return true;
}

std::size_t FindIgnoreCase(std::wstring_view text, std::wstring_view needle, std::size_t from) {
  if (needle.empty()) return std::wstring_view::npos;
  for (std::size_t at = from; at < text.size(); ++at) {
    if (StartsWithIgnoreCase(text.substr(at), needle)) return at;
  }
  return std::wstring_view::npos;
}

// Each key typed goes through all texts: what their beginnings are compared with is folded once.
std::size_t FindStartingWith(const std::vector<std::wstring>& texts, std::wstring_view prefix) {
  std::wstring folded(prefix);
  std::transform(folded.begin(), folded.end(), folded.begin(), Fold);
  for (std::size_t row = 0; row < texts.size(); ++row) {
    const std::wstring& text = texts[row];
    if (text.size() < folded.size()) continue;
    std::size_t same = 0;
    while (same < folded.size() &&
           (text[same] == folded[same] || Fold(text[same]) == folded[same])) {
      ++same;
    }
    if (same == folded.size()) return row;
  }
  return std::wstring_view::npos;
}

std::wstring Replace(std::wstring_view text, std::wstring_view what, std::wstring_view with) {
  return ReplaceEvery(text, what, with, FindExactly);
}

std::wstring ReplaceIgnoreCase(std::wstring_view text, std::wstring_view what,
                               std::wstring_view with) {
  return ReplaceEvery(text, what, with, FindIgnoreCase);
}

std::wstring Quoted(std::wstring_view text) { return L'"' + std::wstring(text) + L'"'; }

bool IsBlank(std::wstring_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const char32_t c = NextCodePoint(text, &i);
    const bool unseen = std::any_of(std::begin(kUnseen), std::end(kUnseen), [c](const auto& range) {
      return c >= range[0] && c <= range[1];
    });
    if (!unseen) return false;
  }
  return true;
}

std::wstring Trim(std::wstring_view text) {
  const std::size_t first = text.find_first_not_of(L' ');
  if (first == std::wstring_view::npos) return {};
  return std::wstring(text.substr(first, text.find_last_not_of(L' ') - first + 1));
}

std::wstring FromNumber(long long value) {
  const std::string digits = std::to_string(value);
  return {digits.begin(), digits.end()};
}

double LeadingNumber(std::wstring_view text) {
  // Digits further behind the point than a double can hold are read and ignored.
  constexpr double kFinestFraction = 1e17;
  double number = 0;
  double fraction = 1;
  bool started = false;
  bool negative = false;
  bool pointSeen = false;
  for (const wchar_t c : text) {
    if (c == L' ' || c == L'\t' || c == L'\n') continue;
    if (c >= L'0' && c <= L'9') {
      if (!pointSeen || fraction < kFinestFraction) {
        number = number * 10 + (c - L'0');
        if (pointSeen) fraction *= 10;
      }
    } else if (c == L'.' && !pointSeen) {
      pointSeen = true;
    } else if ((c == L'-' || c == L'+') && !started) {
      negative = c == L'-';
    } else {
      break;
    }
    started = true;
  }
  number /= fraction;
  return negative ? -number : number;
}

std::optional<double> ToNumber(std::wstring_view text) {
  const std::wstring trimmed = Trim(text);
  if (trimmed.empty() || trimmed.find_first_not_of(L"+-.0123456789") != std::wstring::npos) {
    return std::nullopt;
  }
  return LeadingNumber(trimmed);
}

std::optional<bool> ToBoolean(std::wstring_view text) {
  if (EqualsIgnoreCase(text, L"true")) return true;
  if (EqualsIgnoreCase(text, L"false")) return false;
  const std::optional<double> number = ToNumber(text);
  return number ? std::optional(*number != 0) : std::nullopt;
}

char32_t NextCodePoint(std::wstring_view text, std::size_t* position) {
  const auto first = static_cast<char32_t>(text[(*position)++]);
  if (!IsHighSurrogate(first) || *position == text.size()) return first;
  const auto second = static_cast<char32_t>(text[*position]);
  if (!IsLowSurrogate(second)) return first;
  ++*position;
  return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
}

void AppendCodePoint(std::wstring* text, char32_t codePoint) {
  if (codePoint > kLastCodePoint) codePoint = kReplacement;
  if (sizeof(wchar_t) == 2 && codePoint > 0xFFFF) {
    text->push_back(static_cast<wchar_t>(0xD800 + ((codePoint - 0x10000) >> 10)));
    text->push_back(static_cast<wchar_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF)));
  } else {
    text->push_back(static_cast<wchar_t>(codePoint));
  }
}

std::string ToUtf8(std::wstring_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  const auto append = [&](char32_t byte) { bytes.push_back(static_cast<char>(byte)); };
  for (std::size_t i = 0; i < text.size();) {
    char32_t c = NextCodePoint(text, &i);
    if (IsSurrogate(c) || c > kLastCodePoint) c = kReplacement;
    if (c < 0x80) {
      append(c);
      continue;
    }
    if (c < 0x800) {
      append(0xC0 | (c >> 6));
    } else {
      if (c < 0x10000) {
        append(0xE0 | (c >> 12));
      } else {
        append(0xF0 | (c >> 18));
        append(0x80 | ((c >> 12) & 0x3F));
      }
      append(0x80 | ((c >> 6) & 0x3F));
    }
    append(0x80 | (c & 0x3F));
  }
  return bytes;
}

std::wstring FromUtf8(std::string_view bytes) {
  std::wstring text;
  text.reserve(bytes.size());
  for (std::size_t i = 0; i < bytes.size();) AppendCodePoint(&text, NextFromUtf8(bytes, &i));
  return text;
}

std::u16string ToUtf16(std::wstring_view text) {
  std::u16string units;
  units.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    char32_t c = NextCodePoint(text, &i);
    if (c > kLastCodePoint) c = kReplacement;
    if (c > 0xFFFF) {
      units.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
      c = 0xDC00 + ((c - 0x10000) & 0x3FF);
    }
    units.push_back(static_cast<char16_t>(c));
  }
  return units;
}

std::wstring FromUtf16(std::u16string_view units) {
  std::wstring text;
  text.reserve(units.size());
  for (std::size_t i = 0; i < units.size(); ++i) {
    char32_t c = units[i];
    if (IsHighSurrogate(c) && i + 1 < units.size() && IsLowSurrogate(units[i + 1])) {
      c = 0x10000 + ((c - 0xD800) << 10) + (units[++i] - 0xDC00u);
    }
    AppendCodePoint(&text, c);
  }
  return text;
}

std::wstring EscapeHtml(std::wstring_view text) {
  std::wstring html;
  html.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const char32_t c = NextCodePoint(text, &i);
    switch (c) {
      case L'&':
        html += L"&amp;";
        break;
      case L'<':
        html += L"&lt;";
        break;
      case L'>':
        html += L"&gt;";
        break;
      case L'"':
        html += L"&quot;";
        break;
      default:
        if (c < 0x80) {
          html.push_back(static_cast<wchar_t>(c));
        } else {
          const bool valid = !IsSurrogate(c) && c <= kLastCodePoint;
          html += L"&#" + FromNumber(valid ? c : kReplacement) + L";";
        }
    }
  }
  return html;
}

bool IsRootedPath(std::wstring_view path) {
  if (path.starts_with(L"\\\\")) {
    const std::wstring_view server = path.substr(2, path.find(L'\\', 2) - 2);
    return !server.empty() && server != L"?" && server != L".";
  }
  const wchar_t drive = path.empty() ? L'\0' : Fold(path[0]);
  return drive >= L'a' && drive <= L'z' && path.substr(1).starts_with(L":\\");
}

std::wstring NormaliseFolder(std::wstring_view path) {
  std::wstring folder(path);
  if (!folder.empty() && folder.back() != L'\\') folder.push_back(L'\\');
  return folder;
}

}  // namespace postrove::text
