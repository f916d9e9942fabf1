#include "temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace standin::probe {

TempFolder::TempFolder() {
  wchar_t folder[MAX_PATH + 1] = {};
  GetTempPathW(MAX_PATH + 1, folder);
  wchar_t name[MAX_PATH] = {};
  // Makes the name unique by a file, whose place the folder takes.
  GetTempFileNameW(folder, L"dsk", 0, name);
  DeleteFileW(name);
  CreateDirectoryW(name, nullptr);
  path_ = std::wstring(name) + L'\\';
}

TempFolder::~TempFolder() {
  for (const std::wstring& name : Files()) {
    SetFileAttributesW((path_ + name).c_str(), FILE_ATTRIBUTE_NORMAL);
  }
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::vector<std::wstring> TempFolder::Files() const {
  std::vector<std::wstring> names;
  WIN32_FIND_DATAW found;
  const HANDLE search = FindFirstFileW((path_ + L"*").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return names;
  do {
    if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) names.push_back(found.cFileName);
  } while (FindNextFileW(search, &found));
  FindClose(search);
  return names;
}

void TempFolder::Write(const std::wstring& name, const std::string& bytes) const {
  const HANDLE file = CreateFileW((path_ + name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  DWORD written = 0;
  WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  CloseHandle(file);
  ASSERT_EQ(written, bytes.size());
}

}  // namespace standin::probe
