#include <utility>

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
  try {
    std::optional<TextStream> stream = utility_->OpenTextFile(LocalFolder() + kLabelFile);
    if (stream) labels_ = ReadLabelFile(std::move(*stream), WorkUnit, useQuillion_);
    labelTrouble_.Over();
  } catch (const Error& error) {
    labelTrouble_.Met(error);
  }
}

std::wstring clsPostrove::Label(std::size_t block, std::size_t index,
                                const std::wstring& fallback) const {
  return block < labels_.size() && index < labels_[block].size() ? labels_[block][index] : fallback;
}

void clsPostrove::FillWorkUnitTypes(forms::Control& combo) {
  Reporting(*utility_, L"clsPostrove", L"FillWorkUnitTypes()", [&] {
    std::optional<TextStream> stream = utility_->OpenTextFile(LocalFolder() + kWorkUnitFile);
    while (stream && !stream->AtEndOfStream()) combo.AddItem(stream->ReadLine());
  });
}

bool clsPostrove::IsKnownWorkUnit(const std::wstring& name) {
  std::optional<TextStream> stream = utility_->OpenTextFile(LocalFolder() + kWorkUnitFile);
  while (stream && !stream->AtEndOfStream()) {
    if (text::EqualsIgnoreCase(stream->ReadLine(), name)) return true;
  }
  return false;
}

void clsPostrove::AddWorkUnitType(const std::wstring& name) {
  utility_->AppendLine(LocalFolder() + kWorkUnitFile, name);
}

}  // namespace postrove
