#pragma once

#include <windows.h>

#include <string>
#include <vector>

// A registry key of the test's own that stands in for a whole hive of this process, so that nothing
// of the user's registry is touched; deleted with all that is in it at the end.
class ReplacedHive {
 public:
  explicit ReplacedHive(HKEY hive);
  ~ReplacedHive();
  ReplacedHive(const ReplacedHive&) = delete;
  ReplacedHive& operator=(const ReplacedHive&) = delete;

  // Every key and value below `path`, sorted by key: "key" or "key|name=data".
  std::vector<std::wstring> Tree() const;

  void MakeKey(const std::wstring& path, DWORD options = 0);
  void SetValue(const std::wstring& path, const wchar_t* name, DWORD type, const void* data,
                DWORD size);
  void SetText(const std::wstring& path, const wchar_t* name, const std::wstring& text);

 private:
  HKEY hive_;
  HKEY key_ = nullptr;
  std::wstring name_;
};
