#include "controller/drive_check.h"

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

std::wstring DriveProblem(clsSharedUtil& utility, const std::wstring& folder,
                          const std::wstring& fieldName) {
  if (folder.size() < 2 || folder[1] != L':') return {};
  const std::wstring drive = folder.substr(0, 2);
  const wchar_t* const refusal = DriveRefusal(utility.DriveType(drive + L"\\"));
  if (!refusal) return {};
  return L"-Drive " + drive + refusal + L"  (Select a different " + fieldName + L".)";
}

}  // namespace postrove
