#include "controller/clsPostrove.h"
#include "forms/kit/guards.h"
#include "shared/file_name.h"
#include "shared/text.h"

// What the controller's handlers of several dialogs share.
namespace postrove {

namespace {

// What stands behind the drive in a refusal; null for a drive that will do.
const wchar_t* DriveRefusal(DriveKind kind) {
  switch (kind) {
    case DriveKind::Unknown:
    case DriveKind::NoRoot:
      return L" doesn't exist or it's type cannot be determined.";
    case DriveKind::CdRom:
      return L" is a CD-ROM drive.";
    case DriveKind::RamDisk:
      return L" is a RAM drive.";
    case DriveKind::Removable:
      return L" is a removable drive.";
    default:
      return nullptr;
  }
}

}  // namespace

bool clsPostrove::CheckRequired(forms::Control& box, forms::Control& caption,
                                forms::Control& marker) {
  const bool empty = box.Text().empty();
  marker.SetVisible(empty);
  if (!text::EqualsIgnoreCase(box.Tag(), L"required")) return true;
  box.SetBackColor(empty ? forms::kYellow : forms::kSystemWindow);
  caption.SetForeColor(empty ? forms::kRed : forms::kSystemButtonText);
  return !empty;
}

std::wstring clsPostrove::BrowsePrompt(BrowseTarget target) const {
  switch (target) {
    case BrowseTarget::ServerFolder:
      return L"Select Default Root Folder:";
    case BrowseTarget::EmailFolder:
      return L"Select Default Email Folder:";
    case BrowseTarget::Database:
      return L"Select the Postrove Database Location:";
    case BrowseTarget::Settings:
      return L"Select the Settings File Location:";
    case BrowseTarget::ProjectFolder:
      return L"Select the Folder for the " + WorkUnit + L" Files and Emails:";
    case BrowseTarget::SaveFolder:
      break;
  }
  const std::wstring prompt = L"Select a folder to save the Email in:";
  if (!useQuillion_ || ProjFilePath.empty()) return prompt;
  return L"The Quillion " + WorkUnit + L" Folder is " + ProjFilePath + L"\r\n" + prompt;
}

forms::Control& clsPostrove::BrowsedField(BrowseTarget target) const {
  switch (target) {
    case BrowseTarget::ServerFolder:
      return frmSetupEvent_->txtSetup(forms::kSetupServerFolder);
    case BrowseTarget::EmailFolder:
      return frmSetupEvent_->txtSetup(forms::kSetupEmailFolder);
    case BrowseTarget::Database:
      return frmSetupEvent_->txtSetup(forms::kSetupDatabase);
    case BrowseTarget::Settings:
      return frmSetupEvent_->txtSetup(forms::kSetupSettings);
    case BrowseTarget::ProjectFolder:
      return frmProjInfoEvent_->txtProjInfo(forms::kProjInfoFolder);
    default:
      return frmPostroveEvent_->txtSaveFolder;
  }
}

bool clsPostrove::BrowseFor(BrowseTarget target) {
  const std::shared_ptr<forms::frmPostrove> form = frmPostroveEvent_;
  std::wstring folder;
  {
    const forms::Lowered lowered(*forms_, form, lowered_);
    folder = utility_->BrowseForFolder(BrowsePrompt(target));
  }
  // It lies below each project's own folder, so only its name counts.
  if (target == BrowseTarget::EmailFolder) folder.erase(0, folder.rfind(L'\\') + 1);
  if (folder.empty() || form->IsUnloaded()) return false;
  BrowsedField(target).SetText(text::NormaliseFolder(folder));
  return true;
}

std::wstring clsPostrove::DriveProblem(const std::wstring& folder, const std::wstring& fieldName) {
  networkDrive_ = false;
  if (folder.size() < 2 || folder[1] != L':') return {};
  const std::wstring drive = folder.substr(0, 2);
  const DriveKind kind = utility_->DriveType(drive + L"\\");
  networkDrive_ = kind == DriveKind::Network;
  const wchar_t* const refusal = DriveRefusal(kind);
  if (!refusal) return {};
  return L"-Drive " + drive + refusal + L"  (Select a different " + fieldName + L".)";
}

bool clsPostrove::EnsureFolder(std::wstring& folder) {
  if (utility_->FolderExists(folder)) return true;
  const std::wstring accepted = AskFolderMessage(
      L"Folder Not Found", L"The folder \r\n" + text::Quoted(folder) + L"\r\n does not exist.",
      folder,
      L"You may:\r\n-Click 'OK' to create it. You may edit the folder name first.\r\n-Click "
      L"'Cancel' to return to the Postrove form to pick a different location without creating the "
      L"new folder.");
  if (accepted.empty()) return false;
  const std::wstring target = CleanFolder(accepted);
  const auto refuse = [](const std::wstring& why) {
    if (!why.empty()) throw Error(kInvalidArgument, L"clsPostrove.EnsureFolder()", why);
  };
  refuse(FolderFault(target));
  const std::wstring drive = DriveProblem(target, L"Folder");
  refuse(drive.substr(drive.empty() ? 0 : 1));
  utility_->CreateFolder(target);
  folder = target;
  return true;
}

}  // namespace postrove
