#include "data/label_file.h"

#include <algorithm>
#include <optional>

#include "data/text_encoding.h"
#include "fuzz_input.h"
#include "shared/error.h"
#include "support/Latin1.h"

namespace postrove {
namespace {

using testing::kLatin1;

constexpr wchar_t kAdvice[] =
    L"If the \"Use Group Settings\" box is checked, it is recommended that you do not change this "
    L"setting.  ";

// Text with a blank for each of the characters and for each half of a surrogate pair, two of which
// could become one character.
std::wstring Without(std::wstring text, std::wstring_view characters) {
  std::replace_if(
      text.begin(), text.end(),
      [&](wchar_t c) {
        return (c >= 0xD800 && c <= 0xDFFF) || characters.find(c) != std::wstring_view::npos;
      },
      L' ');
  return text;
}

// A label as the file spells it, and what the two kinds of database are to show for it.
struct Label {
  std::wstring spelled;
  std::wstring own;
  std::wstring shared;
};

Label MakeLabel(FuzzInput* input, const std::wstring& workUnit) {
  const unsigned form = input->Byte();
  const std::wstring before = Without(input->Text(), L"<\r\n");
  const std::wstring after = Without(input->Text(), L"<\r\n");
  const std::wstring placeholder = form & 2 ? L"<WorkUnit>" : form & 4 ? L"<wORKuNIT>" : L"";
  const std::wstring name = placeholder.empty() ? L"" : workUnit;
  const std::wstring advice = form & 8 ? kAdvice : L"";
  Label label{before + placeholder + advice + after, before + name + advice + after,
              before + name + after};
  const bool bare = form & 1 && label.spelled.find(L'|') == std::wstring::npos &&
                    !label.spelled.starts_with(L"[Form]");
  if (!bare) label.spelled.insert(0, L"7|");
  return label;
}

// A file made by the rules gives its labels back.
void FuzzMadeFile(FuzzInput input) {
  const std::wstring lineBreaks[] = {L"\r\n", L"\n", L"\r"};
  const std::wstring& lineBreak = lineBreaks[input.Byte() % 3];
  const std::wstring workUnit = input.Text();
  const unsigned blocks = input.Byte() % 4 + 1;
  std::wstring file = text::FromNumber(blocks) + lineBreak;
  file += Without(input.Text(), L"\r\n") + lineBreak;
  LabelTable own(blocks);
  LabelTable shared(blocks);
  for (unsigned block = 0; block < blocks; ++block) {
    const bool variants = block == 1;
    for (unsigned count = input.Byte() % 4 + (variants ? 2 : 0), i = 0; i < count; ++i) {
      const Label label = MakeLabel(&input, workUnit);
      file += label.spelled + lineBreak;
      if (!variants || i != 1) own[block].push_back(label.own);
      if (!variants || i != 0) shared[block].push_back(label.shared);
    }
    file += L"[Form]" + Without(input.Text(), L"\r\n");
    if (block + 1 < blocks) file += lineBreak;
  }
  const TextStream stream(
      DecodeText(EncodeText(file, Encoding::Utf16, kLatin1), Encoding::Utf16, kLatin1));
  Require(ReadLabelFile(stream, workUnit, false) == own, "the labels for the own database");
  Require(ReadLabelFile(stream, workUnit, true) == shared, "the labels for the shared database");
}

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
  postrove::FuzzInput input(data, size);
  if (input.Byte() & 1) {
    postrove::FuzzMadeFile(input);
  } else {
    postrove::FuzzAnyFile(input);
  }
  return 0;
}
