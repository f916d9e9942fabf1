#include "data/label_file.h"

#include "shared/error.h"
#include "shared/text.h"

namespace postrove {

namespace {

constexpr wchar_t kBlockEnd[] = L"[Form]";
constexpr wchar_t kGroupSettingsAdvice[] =
    L"If the \"Use Group Settings\" box is checked, it is recommended that you do not change this "
    L"setting.  ";
// The block whose first label stands there twice.
constexpr std::size_t kBlockWithVariants = 1;
// More than any label file has; a larger count is a damaged one.
constexpr double kMostBlocks = 1000;

std::size_t ReadCount(TextStream& stream) {
  const double count = text::LeadingNumber(stream.ReadLine());
  if (!(count >= 1 && count <= kMostBlocks)) {
    throw Error(kSubscriptOutOfRange, L"clsPostrove.LoadLabels()",
                L"The label file Postrove.cnt does not begin with the number of its blocks.");
  }
  return static_cast<std::size_t>(count);
}

std::wstring LabelOf(const std::wstring& line, const std::wstring& workUnit, bool shared) {
  const std::size_t bar = line.find(L'|');
  const std::wstring label = bar == std::wstring::npos ? line : line.substr(bar + 1);
  const std::wstring named = text::ReplaceIgnoreCase(label, L"<WorkUnit>", workUnit);
  return shared ? text::ReplaceIgnoreCase(named, kGroupSettingsAdvice, L"") : named;
}

}  // namespace

LabelTable ReadLabelFile(TextStream stream, const std::wstring& workUnit, bool shared) {
  LabelTable table(ReadCount(stream));
  stream.ReadLine();
  for (std::size_t block = 0; block < table.size(); ++block) {
    const bool variants = block == kBlockWithVariants;
    std::wstring line = stream.ReadLine();
    if (variants && shared) line = stream.ReadLine();
    while (!line.starts_with(kBlockEnd)) {
      table[block].push_back(LabelOf(line, workUnit, shared));
      if (variants && !shared && table[block].size() == 1) stream.ReadLine();
      line = stream.ReadLine();
    }
  }
  return table;
}

}  // namespace postrove
