// Wine's COM looks for classes below HKEY_LOCAL_MACHINE only. This tool makes the current user's
// Software\Classes of a test prefix a registry link to the machine's, so that classes registered
// for the user are found as they are on Windows. Run it once, in a fresh prefix.

#include <windows.h>

#include <cstdio>
#include <cwchar>

int main() {
  const wchar_t target[] = L"\\Registry\\Machine\\Software\\Classes";
  // Through a link that is there already the deletion would reach the machine's classes.
  HKEY existing = nullptr;
  DWORD type = REG_NONE;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Classes", REG_OPTION_OPEN_LINK, KEY_QUERY_VALUE,
                    &existing) == ERROR_SUCCESS) {
    RegQueryValueExW(existing, L"SymbolicLinkValue", nullptr, &type, nullptr, nullptr);
    RegCloseKey(existing);
  }
  if (type == REG_LINK) return 0;
  RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Classes");
  HKEY key = nullptr;
  LSTATUS status =
      RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Classes", 0, nullptr, REG_OPTION_CREATE_LINK,
                      KEY_ALL_ACCESS | KEY_CREATE_LINK, nullptr, &key, nullptr);
  if (status == ERROR_SUCCESS) {
    status = RegSetValueExW(key, L"SymbolicLinkValue", 0, REG_LINK,
                            reinterpret_cast<const BYTE*>(target),
                            static_cast<DWORD>(wcslen(target) * sizeof(wchar_t)));
    RegCloseKey(key);
  }
  if (status != ERROR_SUCCESS) std::fprintf(stderr, "link_classes: error %ld\n", status);
  return status == ERROR_SUCCESS ? 0 : 1;
}
