#include "outlook/file_place.h"

#include <windows.h>

#include "outlook/variant.h"
#include "shared/file_name.h"
#include "shared/text.h"

namespace standin {

std::wstring FreePlace(const std::wstring& folder, const std::wstring& subject) {
  const std::wstring root = postrove::text::NormaliseFolder(folder);
  for (std::size_t at = root.find(L'\\'); at != std::wstring::npos; at = root.find(L'\\', at + 1)) {
    CreateDirectoryW(root.substr(0, at).c_str(), nullptr);
  }
  const DWORD attributes = GetFileAttributesW(root.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_DIRECTORY)) {
    throw HostError{HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND), L"Cannot make the folder " + root};
  }
  constexpr std::size_t kNameUnits = 80;
  std::wstring name = postrove::CleanFileName(subject, kNameUnits);
  if (name.empty()) name = L"Untitled";
  std::wstring path = root + name + L".msg";
  for (int number = 2; GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; ++number) {
    path = root + name + L" " + std::to_wstring(number) + L".msg";
  }
  return path;
}

}  // namespace standin
