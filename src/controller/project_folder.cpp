#include "controller/project_folder.h"

#include "shared/file_name.h"
#include "shared/text.h"

namespace postrove {

std::wstring FolderOfNumber(const Settings& settings, const std::wstring& number) {
  return settings.AreRead() ? settings.Root + CleanFileName(number) : std::wstring();
}

std::wstring FolderOf(const Settings& settings, const Project& project) {
  return project.filePath.empty() ? FolderOfNumber(settings, project.number)
                                  : text::NormaliseFolder(project.filePath);
}

std::wstring MessageFolder(const Settings& settings, const Project& project) {
  if (!settings.AreRead()) return {};
  const std::wstring& folder = project.filePath.empty() ? settings.Root : project.filePath;
  return text::NormaliseFolder(folder) + settings.EmailFolder;
}

}  // namespace postrove
