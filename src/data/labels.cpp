#include "controller/clsPostrove.h"
#include "data/text_stream.h"
#include "shared/text.h"

// The controller's label texts and work-unit types.
namespace postrove {

namespace {

constexpr wchar_t kLabelFile[] = L"Postrove.cnt";
constexpr wchar_t kWorkUnitFile[] = L"WorkUnitType.cnt";

}  // namespace

void clsPostrove::LoadLabels() {
  const std::wstring file = LocalFile(kLabelFile);
  std::optional<TextStream> stream = utility_->OpenTextFile(file);
  if (!stream && utility_->FileSize(file) >= 0) {
    throw Error(kPathFileAccess, L"clsPostrove.LoadLabels()",
                L"The label file \"" + file + L"\" cannot be read.");
  }
  if (stream) labels_ = ReadLabelFile(std::move(*stream), WorkUnit, useQuillion_);
}

std::wstring clsPostrove::Label(std::size_t block, std::size_t index,
                                const std::wstring& fallback) const {
  return block < labels_.size() && index < labels_[block].size() ? labels_[block][index] : fallback;
}

void clsPostrove::FillWorkUnitTypes(forms::Control& combo) {
  std::optional<TextStream> stream = utility_->OpenTextFile(LocalFile(kWorkUnitFile));
  while (stream && !stream->AtEndOfStream()) combo.AddItem(stream->ReadLine());
}

bool clsPostrove::IsKnownWorkUnit(const std::wstring& name) {
  std::optional<TextStream> stream = utility_->OpenTextFile(LocalFile(kWorkUnitFile));
  while (stream && !stream->AtEndOfStream()) {
    if (text::EqualsIgnoreCase(stream->ReadLine(), name)) return true;
  }
  return false;
}

void clsPostrove::AddWorkUnitType(const std::wstring& name) {
  utility_->AppendLine(LocalFile(kWorkUnitFile), name);
}

}  // namespace postrove
