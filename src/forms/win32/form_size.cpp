#include "forms/win32/form_size.h"

namespace postrove::forms {
namespace {

constexpr wchar_t kKey[] = L"Software\\Postrove\\Forms";

}  // namespace

SIZE RememberedSize(const std::wstring& form) {
  SIZE twips = {};
  HKEY key;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, kKey, 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS) return {};
  DWORD type = 0;
  DWORD bytes = sizeof twips;
  const LSTATUS status =
      RegQueryValueExW(key, form.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(&twips), &bytes);
  RegCloseKey(key);
  const bool found = status == ERROR_SUCCESS && type == REG_BINARY && bytes == sizeof twips;
  return found ? twips : SIZE();
}

void RememberSize(const std::wstring& form, SIZE twips) {
  HKEY key;
  if (RegCreateKeyExW(HKEY_CURRENT_USER, kKey, 0, nullptr, 0, KEY_SET_VALUE, nullptr, &key,
                      nullptr) != ERROR_SUCCESS) {
    return;
  }
  RegSetValueExW(key, form.c_str(), 0, REG_BINARY, reinterpret_cast<const BYTE*>(&twips),
                 sizeof twips);
  RegCloseKey(key);
}

}  // namespace postrove::forms
