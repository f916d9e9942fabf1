#include "shared/win32/file_identity.h"

#include <windows.h>

#include "shared/win32/system_error.h"

namespace postrove {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// A handle that asks for no more than it must, so that it stands in nobody's way.
class Handle {
 public:
  Handle(const std::wstring& path, DWORD access, DWORD disposition)
      : handle_(CreateFileW(path.c_str(), access, kShareAll, nullptr, disposition,
                            FILE_ATTRIBUTE_NORMAL, nullptr)),
        error_(handle_ == INVALID_HANDLE_VALUE ? GetLastError() : ERROR_SUCCESS) {}
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle() { Close(); }

  void Close() {
    if (handle_ != INVALID_HANDLE_VALUE) CloseHandle(handle_);
    handle_ = INVALID_HANDLE_VALUE;
  }
  HANDLE Get() const { return handle_; }
  DWORD OpenError() const { return error_; }

  std::optional<FileIdentity> Identity() const {
    BY_HANDLE_FILE_INFORMATION file{};
    if (!GetFileInformationByHandle(handle_, &file)) return std::nullopt;
    if (file.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) return std::nullopt;
    const auto joined = [](DWORD high, DWORD low) {
      return static_cast<std::uint64_t>(high) << 32 | low;
    };
    return FileIdentity{
        static_cast<std::uint32_t>(file.dwVolumeSerialNumber),
        joined(file.nFileIndexHigh, file.nFileIndexLow),
        joined(file.ftCreationTime.dwHighDateTime, file.ftCreationTime.dwLowDateTime),
        (file.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0};
  }

 private:
  HANDLE handle_;
  const DWORD error_;
};

// Deletes the open file, whatever has its name by now. Windows XP has no such function.
bool DeleteOpenFile(HANDLE file) {
  using Function = BOOL(WINAPI*)(HANDLE, FILE_INFO_BY_HANDLE_CLASS, void*, DWORD);
  const auto set = reinterpret_cast<Function>(reinterpret_cast<void*>(
      GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "SetFileInformationByHandle")));
  FILE_DISPOSITION_INFO removal{TRUE};
  return set && set(file, FileDispositionInfo, &removal, sizeof removal);
}

}  // namespace

std::optional<FileIdentity> IdentifyFileAt(const std::wstring& path) {
  return Handle(path, FILE_READ_ATTRIBUTES, OPEN_EXISTING).Identity();
}

std::optional<FileIdentity> ClaimFileAt(const std::wstring& path) {
  const Handle file(path, FILE_READ_ATTRIBUTES, CREATE_NEW);
  const DWORD error = file.OpenError();
  if (error == ERROR_FILE_EXISTS || error == ERROR_ALREADY_EXISTS) return std::nullopt;
  if (error != ERROR_SUCCESS) throw PathError(L"ClaimFile", L"Cannot make the file", path, error);
  // One that cannot be told from others is not removed later.
  return file.Identity().value_or(FileIdentity{});
}

bool RemoveFileAtIf(const std::wstring& path, const FileIdentity& meant) {
  Handle file(path, DELETE | FILE_READ_ATTRIBUTES, OPEN_EXISTING);
  const DWORD error = file.OpenError();
  if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) return true;
  if (error != ERROR_SUCCESS)
    throw PathError(L"RemoveFile", L"Cannot delete the file", path, error);
  if (file.Identity() != meant) return false;
  if (DeleteOpenFile(file.Get())) return true;
  file.Close();
  if (DeleteFileW(path.c_str())) return true;
  throw PathError(L"RemoveFile", L"Cannot delete the file", path, GetLastError());
}

}  // namespace postrove
