#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace postrove {

// The bytes of a file, or nothing when there is none.
inline std::optional<std::string> Bytes(const std::wstring& path) {
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return std::nullopt;
  std::string bytes(GetFileSize(file, nullptr), '\0');
  DWORD read = 0;
  EXPECT_TRUE(ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr));
  CloseHandle(file);
  return bytes;
}

inline void MakeFile(const std::wstring& path, const std::string& bytes) {
  const HANDLE file =
      CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  DWORD written = 0;
  EXPECT_TRUE(WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr));
  CloseHandle(file);
}

// A new empty folder for one test, removed with everything in it.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    wchar_t temp[MAX_PATH];
    wchar_t name[MAX_PATH];
    EXPECT_NE(GetTempPathW(MAX_PATH, temp), 0u);
    EXPECT_NE(GetTempFileNameW(temp, L"prv", 0, name), 0u);
    DeleteFileW(name);
    EXPECT_TRUE(CreateDirectoryW(name, nullptr));
    path_ = std::wstring(name) + L"\\";
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() { Remove(path_); }

  // With a trailing backslash.
  const std::wstring& Path() const { return path_; }

  std::wstring operator/(const std::wstring& name) const { return path_ + name; }

  // The names in the folder, with or without those of its folders.
  std::vector<std::wstring> Names() const { return NamesIn(path_, true); }
  std::vector<std::wstring> Files() const { return NamesIn(path_, false); }

  void Write(const std::wstring& name, const std::string& bytes) const {
    MakeFile(path_ + name, bytes);
  }

 private:
  static std::vector<std::wstring> NamesIn(const std::wstring& folder, bool folders) {
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW data;
    const HANDLE find = FindFirstFileW((folder + L"*").c_str(), &data);
    if (find == INVALID_HANDLE_VALUE) return names;
    do {
      const std::wstring name = data.cFileName;
      const bool wanted = folders || !(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY);
      if (wanted && name != L"." && name != L"..") names.push_back(name);
    } while (FindNextFileW(find, &data));
    FindClose(find);
    return names;
  }

  static void Remove(const std::wstring& folder) {
    for (const std::wstring& name : NamesIn(folder, true)) {
      const std::wstring path = folder + name;
      SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
      if (!DeleteFileW(path.c_str())) Remove(path + L"\\");
    }
    RemoveDirectoryW(folder.c_str());
  }

  std::wstring path_;
};

}  // namespace postrove
