#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace standin::probe {

// A folder of the test's own, removed with all that is in it at the end.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  std::wstring operator/(const std::wstring& name) const { return path_ + name; }
  const std::wstring& Path() const { return path_; }  // ends in a backslash
  std::vector<std::wstring> Files() const;            // names, without sub-folders
  void Write(const std::wstring& name, const std::string& bytes) const;

 private:
  std::wstring path_;
};

}  // namespace standin::probe
