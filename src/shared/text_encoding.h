#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

// How text files spell their characters: UTF-16 of either byte order and UTF-8 are recognised by
// their byte-order marks. A file without a mark is UTF-8 when it holds bytes beyond ASCII and all
// of them are well-formed UTF-8, as editors write it today; any other is in the system's code page.
namespace postrove {

enum class Encoding { CodePage, Utf8, Utf16, Utf16BigEndian };

inline constexpr std::string_view kUtf16Mark("\xFF\xFE", 2);
inline constexpr std::string_view kUtf16BigEndianMark("\xFE\xFF", 2);
inline constexpr std::string_view kUtf8Mark("\xEF\xBB\xBF", 3);

// Conversions of the system's code page, supplied by the caller.
struct CodePage {
  std::function<std::wstring(const std::string&)> decode;
  std::function<std::string(const std::wstring&)> encode;
};

// The encoding of a file and the size of its mark, 0 without one.
struct DetectedEncoding {
  Encoding encoding = Encoding::CodePage;
  std::size_t markSize = 0;
};
DetectedEncoding DetectEncoding(std::string_view bytes);

// Bytes of one unit of an encoding, and the value of the unit at an offset.
std::size_t UnitSize(Encoding encoding);
unsigned UnitAt(std::string_view bytes, std::size_t at, Encoding encoding);

// The text of a whole file.
std::wstring DecodeFile(std::string_view bytes, const CodePage& codePage);

// Text of bytes without a mark, and back. Half a UTF-16 unit at the end is no character.
std::wstring DecodeText(std::string_view bytes, Encoding encoding, const CodePage& codePage);
std::string EncodeText(std::wstring_view text, Encoding encoding, const CodePage& codePage);

}  // namespace postrove
