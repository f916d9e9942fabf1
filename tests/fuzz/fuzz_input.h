#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "shared/text.h"

namespace postrove {

// The fuzzer's bytes, handed out piece by piece.
class FuzzInput {
 public:
  FuzzInput(const std::uint8_t* data, std::size_t size)
      : rest_(reinterpret_cast<const char*>(data), size) {}

  unsigned Byte() {
    if (rest_.empty()) return 0;
    const unsigned byte = static_cast<unsigned char>(rest_.front());
    rest_.remove_prefix(1);
    return byte;
  }

  // Text of up to 31 UTF-16 units or, more often, UTF-8 bytes, whole or malformed.
  std::wstring Text() {
    const unsigned kind = Byte();
    const std::string_view bytes = rest_.substr(0, kind % 32 * (kind < 64 ? 2 : 1));
    rest_.remove_prefix(bytes.size());
    if (kind >= 64) return text::FromUtf8(bytes);
    std::u16string units;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
      const unsigned low = static_cast<unsigned char>(bytes[i]);
      const unsigned high = static_cast<unsigned char>(bytes[i + 1]);
      units.push_back(static_cast<char16_t>(high << 8 | low));
    }
    return text::FromUtf16(units);
  }

  std::string Rest() const { return std::string(rest_); }

 private:
  std::string_view rest_;
};

// Stops the run when a promise is broken.
inline void Require(bool kept, const char* promise) {
  if (kept) return;
  std::fprintf(stderr, "broken: %s\n", promise);
  std::abort();
}

// What holds for every name that was made to stand in a file name.
inline void RequireFileName(const std::wstring& name, std::size_t maxUnits) {
  Require(text::ToUtf16(name).size() <= maxUnits, "the name is short enough");
  for (std::size_t i = 0; i < name.size();) {
    const char32_t c = text::NextCodePoint(name, &i);
    Require(c >= 0x20 && (c < 0xD800 || c > 0xDFFF), "no control character, no half a pair");
    Require(c > 0x7F || std::string_view("\\/:*?\"<>|").find(static_cast<char>(c)) ==
                            std::string_view::npos,
            "no forbidden character");
  }
  const auto clean = [](wchar_t c) { return c != L'.' && c != L' '; };
  Require(name.empty() || (clean(name.front()) && clean(name.back())), "clean ends");
  const std::wstring base = text::Trim(name.substr(0, name.find(L'.')));
  for (const wchar_t* device : {L"con", L"prn", L"aux", L"nul", L"com1", L"lpt9", L"conin$"}) {
    Require(!text::EqualsIgnoreCase(base, device), "no device's name");
  }
}

}  // namespace postrove
