#include "data/text_encoding.h"

#include "shared/text.h"

namespace postrove {

DetectedEncoding DetectEncoding(std::string_view bytes) {
  if (bytes.starts_with(kUtf16Mark)) return {Encoding::Utf16, kUtf16Mark.size()};
  if (bytes.starts_with(kUtf8Mark)) return {Encoding::Utf8, kUtf8Mark.size()};
  return {};
}

std::wstring DecodeText(std::string_view bytes, Encoding encoding, const CodePage& codePage) {
  if (encoding == Encoding::Utf8) return text::FromUtf8(bytes);
  if (encoding == Encoding::CodePage) return codePage.decode(std::string(bytes));
  std::u16string units;
  units.reserve(bytes.size() / 2);
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    const auto low = static_cast<unsigned char>(bytes[at]);
    const auto high = static_cast<unsigned char>(bytes[at + 1]);
    units.push_back(static_cast<char16_t>(low | high << 8));
  }
  return text::FromUtf16(units);
}

std::string EncodeText(std::wstring_view text, Encoding encoding, const CodePage& codePage) {
  if (encoding == Encoding::Utf8) return text::ToUtf8(text);
  if (encoding == Encoding::CodePage) return codePage.encode(std::wstring(text));
  std::string bytes;
  for (const char16_t unit : text::ToUtf16(text)) {
    bytes.push_back(static_cast<char>(unit & 0xFF));
    bytes.push_back(static_cast<char>(unit >> 8));
  }
  return bytes;
}

}  // namespace postrove
