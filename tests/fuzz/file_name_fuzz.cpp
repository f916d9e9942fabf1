#include "fuzz_input.h"
#include "shared/file_name.h"

namespace postrove {
namespace {

void FuzzOne(FuzzInput input) {
  const std::size_t maxUnits = input.Byte();
  std::wstring text = input.Text();
  for (std::wstring more = input.Text(); !more.empty(); more = input.Text()) text += more;
  const std::wstring name = CleanFileName(text, maxUnits);

  RequireFileName(name, maxUnits);
  Require(CleanFileName(name, maxUnits) == name, "a clean name is left alone");

  Require(text::FromUtf8(text::ToUtf8(name)) == name, "UTF-8 gives the name back");
  const std::u16string units = text::ToUtf16(text);
  Require(text::ToUtf16(text::FromUtf16(units)) == units, "UTF-16 gives any text back");
}

}  // namespace
}  // namespace postrove

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  postrove::FuzzOne(postrove::FuzzInput(data, size));
  return 0;
}
