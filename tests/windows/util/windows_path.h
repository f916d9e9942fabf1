#pragma once

#include <algorithm>
#include <string>

namespace postrove {

// A path of the machine that built the tests as Windows programs know it: Wine shows that machine's
// files as Z:.
inline std::wstring WindowsPath(const std::string& built) {
  std::wstring path(built.begin(), built.end());
  if (path.front() == L'/') path.insert(0, L"Z:");
  std::replace(path.begin(), path.end(), L'/', L'\\');
  return path;
}

}  // namespace postrove
