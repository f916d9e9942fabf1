#include <optional>

#include "data/ini_text.h"
#include "fuzz_input.h"
#include "shared/error.h"

namespace postrove {
namespace {

const CodePage kLatin1{[](const std::string& bytes) {
                              std::wstring text;
                              for (const char byte : bytes) {
                                text.push_back(static_cast<unsigned char>(byte));
                              }
                              return text;
                            },
                            [](const std::wstring& text) {
                              std::string bytes;
                              for (const wchar_t c : text) {
                                bytes.push_back(c >= 0 && c <= 0xFF ? static_cast<char>(c) : '?');
                              }
                              return bytes;
                            }};

void FuzzOne(FuzzInput input) {
  const std::wstring section = input.Text();
  const std::wstring key = input.Text();
  const std::wstring value = input.Text();
  const std::wstring otherSection = input.Text();
  const std::wstring otherKey = input.Text();
  std::string before = input.Rest();
  const std::optional<std::wstring> otherBefore =
      ini::Read(before, otherSection, otherKey, kLatin1);
  std::string after;
  try {
    after = ini::Write(before, section, key, value, kLatin1);
  } catch (const Error& error) {
    Require(error.Number() == kInvalidArgument, "only Error 5 is thrown");
    return;
  }
  Require(ini::Read(after, section, key, kLatin1) == value, "a written value reads back");
  Require(ini::Write(after, section, key, value, kLatin1) == after, "a second write is none");

  const std::optional<std::wstring> otherAfter = ini::Read(after, otherSection, otherKey, kLatin1);
  Require(otherAfter == otherBefore || otherAfter == value, "other values stay");
}

}  // namespace
}  // namespace postrove

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  postrove::FuzzOne(postrove::FuzzInput(data, size));
  return 0;
}
