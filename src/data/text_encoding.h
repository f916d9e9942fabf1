#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

// How text files spell their characters: UTF-16 little endian and UTF-8, each with its byte-order
// mark, are recognised; any other file is in the system's code page.
namespace postrove {

enum class Encoding { CodePage, Utf8, Utf16 };

inline constexpr std::string_view kUtf16Mark("\xFF\xFE", 2);
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

// Text of bytes without a mark, and back. Half a UTF-16 unit at the end is no character.
std::wstring DecodeText(std::string_view bytes, Encoding encoding, const CodePage& codePage);
std::string EncodeText(std::wstring_view text, Encoding encoding, const CodePage& codePage);

}  // namespace postrove
