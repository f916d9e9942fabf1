#include "shared/win32/WinSharedUtil.h"

#include <windows.h>

#include <shellapi.h>

#include "shared/text.h"
#include "shared/win32/file_identity.h"
#include "shared/win32/file_update.h"
#include "shared/win32/folder_picker.h"
#include "shared/win32/no_drive_messages.h"
#include "shared/win32/system_error.h"

namespace postrove {
namespace {

// The attributes of a file or folder, or INVALID_FILE_ATTRIBUTES.
DWORD Attributes(const std::wstring& path) {
  if (path.empty() || path.find(L'\0') != std::wstring::npos) return INVALID_FILE_ATTRIBUTES;
  const NoDriveMessages quiet;
  return GetFileAttributesW(path.c_str());
}

bool IsFolder(DWORD attributes) {
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool IsFile(DWORD attributes) {
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

constexpr wchar_t kSeparators[] = L"\\/";

// The length of the part that cannot be made: "C:\", "\\server\share\".
std::size_t RootLength(const std::wstring& path) {
  if (path.size() > 1 && path[1] == L':') return path.find_first_of(kSeparators) == 2 ? 3 : 2;
  if (path.find_first_of(kSeparators) != 0) return 0;
  if (path.find_first_of(kSeparators, 1) != 1) return 1;
  const std::size_t server = path.find_first_of(kSeparators, 2);
  if (server == std::wstring::npos) return path.size();
  const std::size_t share = path.find_first_of(kSeparators, server + 1);
  return share == std::wstring::npos ? path.size() : share + 1;
}

// The folder that a path lies in, without its separator; the root of the path at least.
std::wstring ParentFolder(const std::wstring& path) {
  const std::size_t root = RootLength(path);
  const std::size_t name = path.find_last_not_of(kSeparators);
  if (name == std::wstring::npos || name < root) return path.substr(0, root);
  const std::size_t separator = path.find_last_of(kSeparators, name);
  if (separator == std::wstring::npos || separator < root) return path.substr(0, root);
  return path.substr(0, separator);
}

DWORD MakeFolders(const std::wstring& folder) {
  const DWORD attributes = Attributes(folder);
  const DWORD lookupError = GetLastError();
  if (IsFolder(attributes)) return ERROR_SUCCESS;
  const std::wstring parent = ParentFolder(folder);
  if (parent == folder) {
    return attributes == INVALID_FILE_ATTRIBUTES ? lookupError : ERROR_DIRECTORY;
  }
  if (!parent.empty()) {
    const DWORD error = MakeFolders(parent);
    if (error != ERROR_SUCCESS) return error;
  }
  const NoDriveMessages quiet;
  if (CreateDirectoryW(folder.c_str(), nullptr)) return ERROR_SUCCESS;
  const DWORD error = GetLastError();
  // Another program may have made it meanwhile.
  return IsFolder(Attributes(folder)) ? ERROR_SUCCESS : error;
}

// The window that a message belongs to: the active one of this thread, else the one in front when
// it is this process's.
HWND OwnerWindow() {
  if (const HWND active = GetActiveWindow()) return active;
  const HWND front = GetForegroundWindow();
  DWORD process = 0;
  if (front) GetWindowThreadProcessId(front, &process);
  return process == GetCurrentProcessId() ? front : nullptr;
}

UINT MessageFlags(HWND owner, UINT buttons, MessageIcon icon) {
  UINT flags = MB_SETFOREGROUND | buttons;
  switch (icon) {
    case MessageIcon::Information:
      flags |= MB_ICONINFORMATION;
      break;
    case MessageIcon::Question:
      flags |= MB_ICONQUESTION;
      break;
    case MessageIcon::Error:
      flags |= MB_ICONERROR;
      break;
  }
  if (!owner) return flags | MB_TASKMODAL;
  const bool topmost = (GetWindowLongPtrW(owner, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
  return topmost ? flags | MB_TOPMOST : flags;
}

class WinSharedUtil final : public clsSharedUtil {
 public:
  bool FolderExists(const std::wstring& folder) override { return IsFolder(Attributes(folder)); }

  bool FileExists(const std::wstring& folder, const std::wstring& file) override {
    if (folder.empty() || file.empty()) return false;
    return IsFile(Attributes(folder.back() == L'\\' ? folder + file : folder + L"\\" + file));
  }

  long long FileSize(const std::wstring& path) override {
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!IsFile(Attributes(path)) ||
        !GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) {
      return -1;
    }
    return static_cast<long long>(data.nFileSizeHigh) << 32 | data.nFileSizeLow;
  }

  std::optional<FileIdentity> IdentifyFile(const std::wstring& path) override {
    const NoDriveMessages quiet;
    return IdentifyFileAt(path);
  }

  std::optional<FileIdentity> ClaimFile(const std::wstring& path) override {
    const NoDriveMessages quiet;
    return ClaimFileAt(path);
  }

  bool RemoveFileIf(const std::wstring& path, const FileIdentity& meant) override {
    const NoDriveMessages quiet;
    return RemoveFileAtIf(path, meant);
  }

  void CreateFolder(const std::wstring& folder) override {
    DWORD error = ERROR_INVALID_NAME;
    if (folder.size() > kMaxPath) {
      error = ERROR_FILENAME_EXCED_RANGE;
    } else if (!folder.empty() && folder.find(L'\0') == std::wstring::npos) {
      error = MakeFolders(folder);
    }
    if (error != ERROR_SUCCESS) {
      throw PathError(L"CreateFolder", L"Cannot make the folder", folder, error);
    }
  }

  std::wstring BrowseForFolder(const std::wstring& prompt) override {
    if (prompt.find(L'\n') == std::wstring::npos) return PickFolder(OwnerWindow(), prompt);
    // The picker shows its prompt in one line of its title bar.
    const HWND owner = OwnerWindow();
    const int answer = MessageBoxW(owner, prompt.c_str(), L"Postrove",
                                   MessageFlags(owner, MB_OKCANCEL, MessageIcon::Information));
    return answer == IDOK ? PickFolder(OwnerWindow(), {}) : std::wstring();
  }

  DriveKind DriveType(const std::wstring& root) override {
    const NoDriveMessages quiet;
    return static_cast<DriveKind>(GetDriveTypeW(root.c_str()));
  }

  void OpenDocument(const std::wstring& document) override {
    SHELLEXECUTEINFOW execute{};
    execute.cbSize = sizeof(execute);
    execute.fMask = SEE_MASK_FLAG_NO_UI | SEE_MASK_NOASYNC;
    execute.hwnd = OwnerWindow();
    execute.lpVerb = L"open";
    execute.lpFile = document.c_str();
    execute.nShow = SW_SHOWNORMAL;
    if (!ShellExecuteExW(&execute)) {
      throw PathError(L"OpenDocument", L"Cannot open", document, GetLastError());
    }
  }

  MessageAnswer ShowMessage(const std::wstring& text, const std::wstring& title,
                            MessageButtons buttons, MessageIcon icon) override {
    const HWND owner = OwnerWindow();
    const UINT flags =
        MessageFlags(owner, buttons == MessageButtons::YesNo ? MB_YESNO : MB_OK, icon);
    const int answer = MessageBoxW(owner, text.c_str(), title.c_str(), flags);
    if (buttons == MessageButtons::Ok) return MessageAnswer::Ok;
    return answer == IDYES ? MessageAnswer::Yes : MessageAnswer::No;
  }

 protected:
  bool LoadFile(const std::wstring& path, std::string* bytes) override {
    DWORD error = ERROR_INVALID_NAME;
    if (path.find(L'\0') == std::wstring::npos) {
      const NoDriveMessages quiet;
      error = LoadWholeFile(path, bytes);
    }
    if (error == ERROR_SUCCESS) return true;
    // A path below a drive or share that is away is "not found" as well.
    const bool notFound = error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
    if (notFound && FolderExists(path.substr(0, RootLength(path)))) return false;
    throw PathError(L"LoadFile", L"Cannot read the file", path, error);
  }

  std::shared_ptr<void> HoldFile(const std::wstring& path) override {
    // DELETE, so that it cannot be held where the renaming would fail.
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_READ | DELETE, FILE_SHARE_READ | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
      throw PathError(L"HoldFile", L"Cannot reserve the file", path, GetLastError());
    }
    return {file, [](HANDLE held) { CloseHandle(held); }};
  }

  void DuplicateFile(const std::wstring& from, const std::wstring& to) override {
    if (const std::wstring folder = ParentFolder(to); !folder.empty()) CreateFolder(folder);
    CopyWholeFile(from, to);
  }

  bool FilesAreEqual(const std::wstring& one, const std::wstring& other) override {
    return WholeFilesAreEqual(one, other);
  }

  void RenameFile(const std::wstring& from, const std::wstring& to) override {
    if (!MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_WRITE_THROUGH)) {
      throw PathError(L"RenameFile", L"Cannot rename the file", from, GetLastError());
    }
  }

  void RemoveFile(const std::wstring& path) override {
    const DWORD before = Attributes(path);
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    if (!DeleteFileW(path.c_str())) {
      const DWORD error = GetLastError();
      if (IsFile(before)) SetFileAttributesW(path.c_str(), before);
      throw PathError(L"RemoveFile", L"Cannot delete the file", path, error);
    }
  }

  std::wstring Today() override {
    SYSTEMTIME now;
    GetLocalTime(&now);
    // Four digits, two and two.
    return text::FromNumber(now.wYear * 10000 + now.wMonth * 100 + now.wDay);
  }

  void UpdateFile(const std::wstring& path,
                  const std::function<std::string(const std::string&)>& change) override {
    if (path.empty() || path.find(L'\0') != std::wstring::npos) {
      throw PathError(L"UpdateFile", L"Cannot write the file", path, ERROR_INVALID_NAME);
    }
    if (const std::wstring folder = ParentFolder(path); !folder.empty()) CreateFolder(folder);
    UpdateWholeFile(path, change);
  }

  std::wstring FromCodePage(const std::string& bytes) override {
    const int length = static_cast<int>(bytes.size());
    const int needed = MultiByteToWideChar(CP_ACP, 0, bytes.data(), length, nullptr, 0);
    std::wstring text(static_cast<std::size_t>(needed), L'\0');
    MultiByteToWideChar(CP_ACP, 0, bytes.data(), length, text.data(), needed);
    return text;
  }

  std::string ToCodePage(const std::wstring& text) override {
    // The code pages that hold all of Unicode, which some systems are set to, allow no flags.
    constexpr UINT kGb18030 = 54936;
    const bool holdsAll = GetACP() == CP_UTF8 || GetACP() == kGb18030;
    const DWORD flags = holdsAll ? 0 : WC_NO_BEST_FIT_CHARS;
    const char* const substitute = holdsAll ? nullptr : "?";
    const int length = static_cast<int>(text.size());
    const int needed =
        WideCharToMultiByte(CP_ACP, flags, text.data(), length, nullptr, 0, substitute, nullptr);
    std::string bytes(static_cast<std::size_t>(needed), '\0');
    WideCharToMultiByte(CP_ACP, flags, text.data(), length, bytes.data(), needed, substitute,
                        nullptr);
    return bytes;
  }
};

}  // namespace

std::shared_ptr<clsSharedUtil> CreateWinSharedUtil() { return std::make_shared<WinSharedUtil>(); }

}  // namespace postrove
