#include "controller/project_box.h"

#include <string_view>
#include <utility>

#include "shared/text.h"

namespace postrove {

std::wstring ItemText(const Project& project) {
  if (project.number.empty()) return project.name;
  constexpr std::wstring_view kBetween = L": ";
  std::wstring item;
  item.reserve(project.name.size() + kBetween.size() + project.number.size());  // there are many
  return item.append(project.name).append(kBetween).append(project.number);
}

void FillProjectCombo(forms::Control& combo, const std::vector<Project>& projects,
                      const Project& current) {
  std::vector<std::wstring> items;
  items.reserve(projects.size());
  int selected = -1;
  for (const Project& project : projects) {
    const bool shown = current.number.empty()
                           ? project.name == current.name && !text::IsBlank(current.name)
                           : project.number == current.number;
    if (shown) selected = static_cast<int>(items.size());
    items.push_back(ItemText(project));
  }
  if (items.empty()) items.push_back(ItemText(current));
  combo.SetItems(std::move(items));
  combo.SetListIndex(selected);
}

void AppendToProjectCombo(forms::Control& combo, const std::vector<Project>& projects) {
  const std::wstring item = ItemText(projects.back());
  if (projects.size() == 1) {
    combo.SetItems({item});
  } else {
    combo.AddItem(item);
  }
}

Project TypedProject(const std::wstring& typed) {
  Project project;
  const std::size_t colon = typed.find(L':');
  if (colon == std::wstring::npos) {
    project.name = text::Trim(typed);
  } else {
    project.name = typed.substr(0, colon);
    project.number = text::Trim(std::wstring_view(typed).substr(colon + 1));
  }
  project.active = true;
  return project;
}

}  // namespace postrove
