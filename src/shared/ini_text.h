#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "shared/text_encoding.h"

// The settings file format: sections headed by a name in square brackets, below each one line
// "key=value" per value.
// - Section names and keys are compared without regard to case, blanks around them do not count.
//   When a section or a key stands twice, the first one counts. A section's name ends at the first
//   "]", a key at the first "=". A blank is a space or a tab.
// - Lines that begin with ";" or "#" and blank lines are comments.
// - Blanks around a value do not count; one pair of double or of single quotes around it is taken
//   off, as Windows' own functions do. Double quotes are put on when a value begins or ends with a
//   blank or a quote, so " - " survives.
// - The encoding of the file (data/text_encoding.h) is kept.
namespace postrove::ini {

// The value, or nothing when the section or the key is missing.
std::optional<std::wstring> Read(const std::string& bytes, std::wstring_view section,
                                 std::wstring_view key, const CodePage& codePage);

// The file with the value stored: replaced in its line, else added at the end of its section
// (behind its last value, before comments that may belong to the next section), else with a new
// section at the end of the file. Everything else - comments, blank lines, order, unknown keys,
// line ends, encoding - stays byte for byte; a file that already holds the value stays as it is.
// Added lines end like the first line of the file, in an empty file with CR LF. A value that the
// file's code page cannot hold turns the file into UTF-16 with its mark, which Windows' own
// functions read as well, or is refused with Error 5. Line breaks and nulls in section, key or
// value throw Error 5, as does an empty section or key or anything that the format could not read
// back, such as a key with "=" in it.
enum class Recoding { Allowed, Refused };
std::string Write(const std::string& bytes, std::wstring_view section, std::wstring_view key,
                  std::wstring_view value, const CodePage& codePage,
                  Recoding recoding = Recoding::Allowed);

}  // namespace postrove::ini
