#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Text helpers with the same results on every machine: nothing here depends on the C locale.
// Text is UTF-16 on Windows and UTF-32 natively, one std::wstring either way.
namespace postrove::text {

// The lower-case form of one character for comparisons: Latin letters, those of Romanian, Pinyin,
// Welsh and Vietnamese among them, Greek and Cyrillic letters; any other character is returned
// unchanged. As in Windows' file names the Turkish dotted and dotless i stand for themselves, and
// the final sigma equals a sigma.
wchar_t Fold(wchar_t c);

bool EqualsIgnoreCase(std::wstring_view a, std::wstring_view b);
bool StartsWithIgnoreCase(std::wstring_view text, std::wstring_view prefix);

// Position of the first occurrence at or after `from`, or npos. An empty needle is never found.
std::size_t FindIgnoreCase(std::wstring_view text, std::wstring_view needle, std::size_t from = 0);

// Position of the first of the texts that begins with the prefix, ignoring case, or npos.
std::size_t FindStartingWith(const std::vector<std::wstring>& texts, std::wstring_view prefix);

// Every occurrence replaced, from left to right; replaced text is not searched again. An empty
// `what` replaces nothing.
std::wstring Replace(std::wstring_view text, std::wstring_view what, std::wstring_view with);
std::wstring ReplaceIgnoreCase(std::wstring_view text, std::wstring_view what,
                               std::wstring_view with);

// Between double quotes.
std::wstring Quoted(std::wstring_view text);

// True when nothing of the text can be seen: it is empty, or all blanks, control characters, zero
// width characters, direction marks and the like.
bool IsBlank(std::wstring_view text);

// Without blanks (U+0020) at both ends.
std::wstring Trim(std::wstring_view text);

std::wstring FromNumber(long long value);

// The number at the start of a text, as Visual Basic's Val reads it: blanks are skipped, then an
// optional sign and digits with one decimal point are read; anything else ends it. 0 when there is
// none. "11.0.8173" reads as 11. As in Val, blanks, tabs and line feeds among the digits are
// skipped as well: "1 000" reads as 1000.
double LeadingNumber(std::wstring_view text);

// A whole text as a number or as a Boolean, as Visual Basic converts it: "True", "False" in any
// letter case, or a number, which is true unless it is 0. Nothing when anything else stands in it.
std::optional<double> ToNumber(std::wstring_view text);
std::optional<bool> ToBoolean(std::wstring_view text);

// UTF-8 conversions. Malformed input becomes U+FFFD, never an error.
std::string ToUtf8(std::wstring_view text);
std::wstring FromUtf8(std::string_view bytes);

// The code point at *position, which is moved behind it; a surrogate pair counts as one, half a
// pair comes back as it stands. *position must lie inside the text.
char32_t NextCodePoint(std::wstring_view text, std::size_t* position);

// Appends a code point in the units of wchar_t. Beyond U+10FFFF it is U+FFFD.
void AppendCodePoint(std::wstring* text, char32_t codePoint);

// UTF-16 code units of the text, whatever the width of wchar_t. Half a surrogate pair is kept.
std::u16string ToUtf16(std::wstring_view text);
std::wstring FromUtf16(std::u16string_view units);

// Text that can stand in HTML, in any charset: & < > " are named, characters beyond ASCII become
// decimal character references.
std::wstring EscapeHtml(std::wstring_view text);

// True for a path that begins with a drive and its root ("C:\...") or a server ("\\..."). Any other
// depends on the current folder, or goes past Windows' own treatment of paths ("\\?\...").
bool IsRootedPath(std::wstring_view path);

// "\" appended to a non-empty path that does not end in one; an empty path stays empty.
std::wstring NormaliseFolder(std::wstring_view path);

}  // namespace postrove::text
