#include "shared/win32/file_update.h"

#include <windows.h>

#include <aclapi.h>

#include <utility>

#include "shared/file_name.h"
#include "shared/win32/system_error.h"

namespace postrove {
namespace {

constexpr wchar_t kSource[] = L"UpdateFile";
constexpr wchar_t kCannotWrite[] = L"Cannot write the file";
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD kBlock = 1 << 20;

class FileHandle {
 public:
  explicit FileHandle(HANDLE handle = INVALID_HANDLE_VALUE) : handle_(handle) {}
  FileHandle(FileHandle&& other) noexcept
      : handle_(std::exchange(other.handle_, INVALID_HANDLE_VALUE)) {}
  FileHandle& operator=(FileHandle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~FileHandle() { Close(); }

  void Close() {
    if (IsOpen()) CloseHandle(std::exchange(handle_, INVALID_HANDLE_VALUE));
  }
  bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
  HANDLE Get() const { return handle_; }

 private:
  HANDLE handle_;
};

// How long an attempt is repeated, in milliseconds.
struct Patience {
  DWORD shared;  // another program holds the file
  DWORD denied;  // for good, or while the file is deleted or a virus scanner holds it
};
constexpr Patience kReader{250, 250};
constexpr Patience kWriter{5000, 500};

// Calls `attempt` until it returns ERROR_SUCCESS or an error that waiting does not cure, for a
// time, but often enough also where this process seldom gets its turn.
template <typename Attempt>
DWORD Retry(const Patience& patience, Attempt attempt) {
  constexpr int kLeastAttempts = 30;
  const DWORD start = GetTickCount();
  for (int attempts = 1;; ++attempts) {
    const DWORD error = attempt();
    const bool shared = error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION;
    if (!shared && error != ERROR_ACCESS_DENIED) return error;
    const DWORD limit = shared ? patience.shared : patience.denied;
    // The difference is right also when the count began anew meanwhile.
    if (attempts >= kLeastAttempts && GetTickCount() - start > limit) return error;
    Sleep(5);
  }
}

DWORD Open(const std::wstring& path, DWORD access, DWORD share, DWORD disposition, DWORD flags,
           FileHandle* file) {
  *file =
      FileHandle(CreateFileW(path.c_str(), access, share, nullptr, disposition, flags, nullptr));
  return file->IsOpen() ? ERROR_SUCCESS : GetLastError();
}

DWORD Load(const std::wstring& path, DWORD access, std::string* bytes) {
  FileHandle file;
  DWORD error = Open(path, access, kShareAll, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, &file);
  if (error != ERROR_SUCCESS) return error;
  LARGE_INTEGER size{};
  if (!GetFileSizeEx(file.Get(), &size)) return GetLastError();
  if (size.QuadPart > kLargestTextFile) return ERROR_FILE_TOO_LARGE;
  std::string content(static_cast<std::size_t>(size.QuadPart), '\0');
  DWORD read = 0;
  if (!ReadFile(file.Get(), content.data(), static_cast<DWORD>(content.size()), &read, nullptr)) {
    return GetLastError();
  }
  content.resize(read);
  *bytes = std::move(content);
  return ERROR_SUCCESS;
}

// A new file that is deleted with the object unless it was renamed.
class TemporaryFile {
 public:
  explicit TemporaryFile(std::wstring path) : path_(std::move(path)) {}
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (!renamed_) DeleteFileW(path_.c_str());
  }

  DWORD Write(const std::string& bytes, DWORD attributes) {
    // What a killed writer left may have attributes that forbid overwriting it.
    DeleteFileW(path_.c_str());
    FileHandle file;
    DWORD error = Open(path_, GENERIC_WRITE, 0, CREATE_ALWAYS, attributes, &file);
    if (error != ERROR_SUCCESS) return error;
    DWORD written = 0;
    if (!WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr)) {
      return GetLastError();
    }
    if (written != bytes.size()) return ERROR_DISK_FULL;
    return FlushFileBuffers(file.Get()) ? ERROR_SUCCESS : GetLastError();
  }

  DWORD RenameTo(const std::wstring& path) {
    renamed_ = MoveFileExW(path_.c_str(), path.c_str(),
                           MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
    return renamed_ ? ERROR_SUCCESS : GetLastError();
  }

 private:
  std::wstring path_;
  bool renamed_ = false;
};

void Check(DWORD error, const std::wstring& path) {
  if (error != ERROR_SUCCESS) throw PathError(kSource, kCannotWrite, path, error);
}

// Gives a file another one's access list as it stands, inherited entries included. Where that
// cannot be done (a disk without permissions, a share that lets nobody change them), it keeps those
// that its folder gave it.
//
// ReplaceFile would do so as well, but it renames twice: for a moment, and for good when it fails
// in between, no file has the name, which a reader takes for a file that was never there.
void CopyPermissions(const std::wstring& from, const std::wstring& to) {
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  if (GetNamedSecurityInfoW(const_cast<wchar_t*>(from.c_str()), SE_FILE_OBJECT,
                            DACL_SECURITY_INFORMATION, nullptr, nullptr, nullptr, nullptr,
                            &descriptor) != ERROR_SUCCESS) {
    return;
  }
  // Else an inherited list would count as one that a person made, and no longer follow its folder.
  SECURITY_DESCRIPTOR_CONTROL control = 0;
  DWORD revision = 0;
  if (GetSecurityDescriptorControl(descriptor, &control, &revision) &&
      (control & SE_DACL_AUTO_INHERITED)) {
    SetSecurityDescriptorControl(descriptor, SE_DACL_AUTO_INHERIT_REQ, SE_DACL_AUTO_INHERIT_REQ);
  }
  SetFileSecurityW(to.c_str(), DACL_SECURITY_INFORMATION, descriptor);
  LocalFree(descriptor);
}

}  // namespace

DWORD LoadWholeFile(const std::wstring& path, std::string* bytes) {
  return Retry(kReader, [&] { return Load(path, GENERIC_READ, bytes); });
}

void UpdateWholeFile(const std::wstring& path,
                     const std::function<std::string(const std::string&)>& change) {
  const std::wstring lockPath = path + L".lock";
  if (lockPath.size() > kMaxPath) Check(ERROR_FILENAME_EXCED_RANGE, path);

  FileHandle lock;
  Check(Retry(kWriter,
              [&] {
                return Open(lockPath, GENERIC_WRITE | DELETE, 0, OPEN_ALWAYS,
                            FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE, &lock);
              }),
        path);

  const DWORD attributes = GetFileAttributesW(path.c_str());
  const bool exists = attributes != INVALID_FILE_ATTRIBUTES;
  std::string oldBytes;
  if (exists) {
    if (attributes & FILE_ATTRIBUTE_DIRECTORY) Check(ERROR_DIRECTORY, path);
    if (attributes & FILE_ATTRIBUTE_READONLY) Check(ERROR_FILE_READ_ONLY, path);
    // Bytes that cannot be read are never taken for an empty file. The rights to write and delete
    // are asked for as well: without them the renaming below fails, or gets round the permissions.
    constexpr DWORD kRights = GENERIC_READ | GENERIC_WRITE | DELETE;
    Check(Retry(kWriter, [&] { return Load(path, kRights, &oldBytes); }), path);
  } else if (GetLastError() != ERROR_FILE_NOT_FOUND) {
    Check(GetLastError(), path);
  }
  const std::string newBytes = change(oldBytes);
  if (exists && newBytes == oldBytes) return;

  TemporaryFile temporary(path + L".tmp");
  constexpr DWORD kKept =
      FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
  Check(temporary.Write(newBytes, exists ? attributes & kKept : 0), path);
  if (exists) CopyPermissions(path, path + L".tmp");
  // Fails for a moment while a program reads the old file.
  Check(Retry(kWriter, [&] { return temporary.RenameTo(path); }), path);
}

void CopyWholeFile(const std::wstring& from, const std::wstring& to) {
  FileHandle source, copy;
  DWORD error =
      Open(from, GENERIC_READ, kShareAll, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, &source);
  if (error == ERROR_SUCCESS) {
    error = Open(to, GENERIC_WRITE, 0, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, &copy);
  }
  std::string block(kBlock, '\0');
  DWORD read = 0, written = 0;
  while (error == ERROR_SUCCESS) {
    const bool done = ReadFile(source.Get(), block.data(), kBlock, &read, nullptr) &&
                      WriteFile(copy.Get(), block.data(), read, &written, nullptr) &&
                      (read > 0 || FlushFileBuffers(copy.Get()));
    if (!done) {
      error = GetLastError();
    } else if (read != written) {
      error = ERROR_DISK_FULL;
    } else if (read == 0) {
      return;
    }
  }
  if (copy.IsOpen()) {
    copy.Close();
    DeleteFileW(to.c_str());
  }
  throw PathError(L"DuplicateFile", L"Cannot copy the file to", to, error);
}

bool WholeFilesAreEqual(const std::wstring& one, const std::wstring& other) {
  FileHandle files[2];
  const std::wstring* const paths[] = {&one, &other};
  for (int i = 0; i < 2; ++i) {
    if (Open(*paths[i], GENERIC_READ, kShareAll, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN,
             &files[i]) != ERROR_SUCCESS) {
      return false;
    }
  }
  std::string blocks[2];
  for (;;) {
    for (int i = 0; i < 2; ++i) {
      blocks[i].resize(kBlock);
      DWORD read = 0;
      if (!ReadFile(files[i].Get(), blocks[i].data(), kBlock, &read, nullptr)) return false;
      blocks[i].resize(read);
    }
    if (blocks[0] != blocks[1]) return false;
    if (blocks[0].empty()) return true;
  }
}

}  // namespace postrove
