#include "shared/win32/system_error.h"

namespace postrove {

std::wstring SystemText(DWORD code) {
  wchar_t buffer[512];
  DWORD length = FormatMessageW(
      FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK,
      nullptr, code, 0, buffer, ARRAYSIZE(buffer), nullptr);
  while (length > 0 && buffer[length - 1] <= L' ') --length;
  return std::wstring(buffer, length);
}

std::wstring SystemMessage(DWORD code) {
  const std::wstring text = SystemText(code);
  if (!text.empty()) return text;
  std::wstring number = L"Error 0x";
  for (int shift = 28; shift >= 0; shift -= 4) {
    number += L"0123456789ABCDEF"[code >> shift & 0xF];
  }
  return number;
}

Error PathError(const std::wstring& source, const std::wstring& what, const std::wstring& path,
                DWORD code) {
  const bool missing = code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND;
  return Error(missing ? kFileNotFound : kPathFileAccess, source,
               what + L" \"" + path + L"\": " + SystemMessage(code));
}

}  // namespace postrove
