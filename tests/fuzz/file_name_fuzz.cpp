#include "fuzz_input.h"
#include "shared/file_name.h"

namespace postrove {
namespace {

void FuzzOne(FuzzInput input) {
  const std::size_t maxUnits = input.Byte();
  std::wstring text = input.Text();
  for (std::wstring more = input.Text(); !more.empty(); more = input.Text()) text += more;
  const std::wstring name = CleanFileName(text, maxUnits);

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
