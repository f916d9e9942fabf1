#include "data/label_file.h"

#include <optional>

#include "fuzz_input.h"
#include "memory/Latin1.h"
#include "shared/error.h"
#include "shared/text_encoding.h"

namespace postrove {
namespace {

using testing::kLatin1;

std::optional<LabelTable> Read(const std::wstring& file, bool shared) {
  try {
    return ReadLabelFile(TextStream(file), L"Job", shared);
  } catch (const Error& error) {
    Require(error.Number() == kInputPastEnd || error.Number() == kSubscriptOutOfRange,
            "only Errors 62 and 9 are thrown");
    return std::nullopt;
  }
}

// Any bytes are read or refused.
void FuzzAnyFile(FuzzInput input) {
  const bool shared = input.Byte() & 1;
  const std::string bytes = input.Rest();
  const DetectedEncoding detected = DetectEncoding(bytes);
  const std::wstring file = DecodeText(bytes.substr(detected.markSize), detected.encoding, kLatin1);
  const std::optional<LabelTable> table = Read(file, shared);
  if (!table) return;

  TextStream stream(file);
  Require(text::LeadingNumber(stream.ReadLine()) >= static_cast<double>(table->size()),
          "the first line counts the blocks");
  std::size_t lines = 1;
  for (; !stream.AtEndOfStream(); ++lines) stream.ReadLine();
  // The first two lines, the ends of the blocks and the variant that does not count.
  std::size_t used = 2 + table->size() + (table->size() > 1 && !table->at(1).empty() ? 1 : 0);
  for (const std::vector<std::wstring>& block : *table) {
    used += block.size();
    for (const std::wstring& label : block) {
      Require(text::FindIgnoreCase(label, L"<WorkUnit>") == std::wstring::npos,
              "the work unit is named");
      Require(label.find_first_of(L"\r\n") == std::wstring::npos, "a label is one line");
    }
  }
  Require(used <= lines, "no label is read twice");
  Require(Read(file + L"\r\n[Form]\r\n1|x", shared) == table, "what follows is ignored");
}

}  // namespace
}  // namespace postrove

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  postrove::FuzzAnyFile(postrove::FuzzInput(data, size));
  return 0;
}
