#pragma once

#include <string>
#include <string_view>

// From the character sets of mail to UTF-8.
namespace postrove::mail {

// The text in UTF-8. `charset` is the name the mail gives; when it is empty, unknown or wrong about
// "us-ascii", the text is taken as UTF-8 if it is valid UTF-8 and else as Windows-1252. The Latin-1
// names mean Windows-1252, as mail programs use them. Bytes that the character set does not have
// become U+FFFD.
std::string ToUtf8(std::string_view bytes, std::string_view charset);

// The character set that an HTML text names in its head, lower case; empty when it names none.
std::string HtmlCharset(std::string_view html);

// The HTML text with utf-8 in place of the character set that it names.
std::string NameUtf8(std::string html);

// ASCII letters in lower case, everything else as it is.
std::string LowerAscii(std::string_view text);

// The text on one line: each control character and each line break is a blank.
std::string OneLine(std::string_view utf8);

// Line ends LF, CR or CR LF become CR LF; null characters become blanks.
std::string CrLfLines(std::string_view text);

}  // namespace postrove::mail
