#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace postrove {

// Windows' limit for a whole path in UTF-16 units, without the terminating null.
inline constexpr std::size_t kMaxPath = 259;

// As much of a name as is kept when the path leaves room for more.
inline constexpr std::size_t kMaxNameUnits = 200;

// A name that Windows accepts for a file, made from any text:
// - each of the nine forbidden characters \ / : * ? " < > | becomes "-"; control characters, the
//   invisible direction marks (U+200E, U+200F, U+202A..U+202E, U+2066..U+2069) and halves of
//   surrogate pairs become blanks; runs of blanks become one;
// - dots and blanks at both ends are taken off, so "..\..\x" cannot climb;
// - a reserved device name (CON, PRN, AUX, NUL, COM0-9, LPT0-9, CONIN$, CONOUT$, also before an
//   extension) gets "_" in front;
// - at most `maxUnits` UTF-16 units are kept, never half a surrogate pair.
// The result can be empty when nothing usable is left.
std::wstring CleanFileName(std::wstring_view text, std::size_t maxUnits = kMaxNameUnits);

}  // namespace postrove
