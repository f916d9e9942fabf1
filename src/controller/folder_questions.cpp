#include "controller/folder_questions.h"

#include "controller/drive_check.h"
#include "controller/folder_message_dialog.h"
#include "shared/file_name.h"
#include "shared/text.h"

namespace postrove {

std::optional<std::wstring> BrowseForFolder(DialogStack& dialogs, clsSharedUtil& utility,
                                            const std::wstring& prompt) {
  std::wstring folder;
  {
    const DialogStack::Lowered lowered(dialogs);
    folder = utility.BrowseForFolder(prompt);
  }
  if (folder.empty() || dialogs.IsOver()) return std::nullopt;
  return folder;
}

std::optional<std::wstring> EnsureFolder(DialogStack& dialogs, clsSharedUtil& utility,
                                         const std::wstring& folder) {
  if (utility.FolderExists(folder)) return folder;
  const std::optional<std::wstring> accepted = FolderMessageDialog::Ask(
      dialogs, utility,
      {L"Folder Not Found", L"The folder \r\n" + text::Quoted(folder) + L"\r\n does not exist.",
       folder,
       L"You may:\r\n-Click 'OK' to create it. You may edit the folder name first.\r\n-Click "
       L"'Cancel' to return to the Postrove form to pick a different location without creating the "
       L"new folder."});
  if (!accepted) return std::nullopt;
  const std::wstring target = CleanFolder(*accepted);
  const auto refuse = [](const std::wstring& why) {
    if (!why.empty()) throw Error(kInvalidArgument, L"clsPostrove.EnsureFolder()", why);
  };
  refuse(FolderFault(target));
  const std::wstring drive = DriveProblem(utility, target, L"Folder");
  refuse(drive.substr(drive.empty() ? 0 : 1));
  utility.CreateFolder(target);
  return target;
}

}  // namespace postrove
