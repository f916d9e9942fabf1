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
// The result is empty when nothing is left that could be seen.
std::wstring CleanFileName(std::wstring_view text, std::size_t maxUnits = kMaxNameUnits);

inline constexpr wchar_t kMessageEnding[] = L".msg";

// The text without the ending of message files that it may have.
std::wstring_view WithoutMessageEnding(std::wstring_view text);

// The UTF-16 units that a folder, with its backslash, leaves for a name before `ending`; 0 for
// none.
std::size_t RoomForName(std::wstring_view folder, std::wstring_view ending);

// A folder as Windows reads it, with a backslash at its end: each "/" is a backslash, several in a
// row are one, blanks and dots at the end of a part are gone, "." and ".." are followed. What
// begins with neither a drive nor a server still does not. Empty text stays empty.
std::wstring CleanFolder(std::wstring_view path);

// Why a clean folder cannot be used, in a sentence for the user; empty when it can, as far as its
// text tells. It must begin with a drive or a server and name no device.
std::wstring FolderFault(std::wstring_view folder);

}  // namespace postrove
