#include "controller/project_box.h"

#include <string_view>
#include <utility>

#include "shared/text.h"

namespace postrove {

namespace {

// How surely a row is the current project: by its key, by both of its texts, by the one that is
// known. 0: it is another one.
int Likeness(const Project& row, const Project& current) {
  if (current.number.empty() && text::IsBlank(current.name)) return 0;
  if (current.id != 0 && row.id == current.id) return 3;
  const bool named = row.name == current.name;
  if (row.number == current.number) return named ? 2 : !current.number.empty();
  return named && current.number.empty() && current.id == 0;
}

}  // namespace

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
  int best = 1;
  for (const Project& project : projects) {
    const int likeness = Likeness(project, current);
    if (likeness >= best) {
      best = likeness;
      selected = static_cast<int>(items.size());
    }
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
