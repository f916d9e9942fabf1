#include "data/labels.h"

#include <optional>
#include <utility>

namespace postrove {

namespace {

constexpr wchar_t kLabelFile[] = L"Postrove.cnt";
constexpr wchar_t kWorkUnitFile[] = L"WorkUnitType.cnt";

}  // namespace

void Labels::LoadLabels() {
  try {
    std::optional<TextStream> stream = utility_.OpenTextFile(settings_.LocalFolder() + kLabelFile);
    if (stream)
      table_ = ReadLabelFile(std::move(*stream), settings_.WorkUnit, settings_.UseQuillion());
    trouble_.Over();
  } catch (const Error& error) {
    trouble_.Met(error);
  }
}

std::wstring Labels::Text(std::size_t block, std::size_t index,
                          const std::wstring& fallback) const {
  return block < table_.size() && index < table_[block].size() ? table_[block][index] : fallback;
}

std::vector<std::wstring> Labels::WorkUnitTypes() const {
  std::vector<std::wstring> types;
  std::optional<TextStream> stream = utility_.OpenTextFile(settings_.LocalFolder() + kWorkUnitFile);
  while (stream && !stream->AtEndOfStream()) types.push_back(stream->ReadLine());
  return types;
}

void Labels::AddWorkUnitType(const std::wstring& name) {
  utility_.AppendLine(settings_.LocalFolder() + kWorkUnitFile, name);
}

}  // namespace postrove
