#include <optional>

#include "fuzz_input.h"
#include "memory/Latin1.h"
#include "shared/error.h"
#include "shared/ini_text.h"

namespace postrove {
namespace {

using testing::kLatin1;

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
