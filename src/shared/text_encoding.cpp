#include "shared/text_encoding.h"

#include <algorithm>

#include "shared/text.h"

namespace postrove {
namespace {

unsigned Byte(char c) { return static_cast<unsigned char>(c); }

bool IsUtf8BeyondAscii(std::string_view bytes) {
  const auto beyondAscii = [](char c) { return Byte(c) >= 0x80; };
  return std::any_of(bytes.begin(), bytes.end(), beyondAscii) &&
         text::ToUtf8(text::FromUtf8(bytes)) == bytes;
}

}  // namespace

DetectedEncoding DetectEncoding(std::string_view bytes) {
  if (bytes.starts_with(kUtf16Mark)) return {Encoding::Utf16, kUtf16Mark.size()};
  if (bytes.starts_with(kUtf16BigEndianMark)) {
    return {Encoding::Utf16BigEndian, kUtf16BigEndianMark.size()};
  }
  if (bytes.starts_with(kUtf8Mark)) return {Encoding::Utf8, kUtf8Mark.size()};
  if (IsUtf8BeyondAscii(bytes)) return {Encoding::Utf8, 0};
  return {};
}

std::size_t UnitSize(Encoding encoding) {
  return encoding == Encoding::Utf16 || encoding == Encoding::Utf16BigEndian ? 2 : 1;
}

unsigned UnitAt(std::string_view bytes, std::size_t at, Encoding encoding) {
  if (UnitSize(encoding) == 1) return Byte(bytes[at]);
  const std::size_t low = encoding == Encoding::Utf16 ? at : at + 1;
  const std::size_t high = encoding == Encoding::Utf16 ? at + 1 : at;
  return Byte(bytes[low]) | Byte(bytes[high]) << 8;
}

std::wstring DecodeFile(std::string_view bytes, const CodePage& codePage) {
  const DetectedEncoding detected = DetectEncoding(bytes);
  return DecodeText(bytes.substr(detected.markSize), detected.encoding, codePage);
}

std::wstring DecodeText(std::string_view bytes, Encoding encoding, const CodePage& codePage) {
  if (encoding == Encoding::Utf8) return text::FromUtf8(bytes);
  if (encoding == Encoding::CodePage) return codePage.decode(std::string(bytes));
  std::u16string units;
  units.reserve(bytes.size() / 2);
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    units.push_back(static_cast<char16_t>(UnitAt(bytes, at, encoding)));
  }
  return text::FromUtf16(units);
}

std::string EncodeText(std::wstring_view text, Encoding encoding, const CodePage& codePage) {
  if (encoding == Encoding::Utf8) return text::ToUtf8(text);
  if (encoding == Encoding::CodePage) return codePage.encode(std::wstring(text));
  std::string bytes;
  for (const char16_t unit : text::ToUtf16(text)) {
    const char low = static_cast<char>(unit & 0xFF);
    const char high = static_cast<char>(unit >> 8);
    bytes.push_back(encoding == Encoding::Utf16 ? low : high);
    bytes.push_back(encoding == Encoding::Utf16 ? high : low);
  }
  return bytes;
}

}  // namespace postrove
