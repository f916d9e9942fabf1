#include "registry_tree.h"

#include <shlwapi.h>

#include <algorithm>
#include <stdexcept>

namespace {

constexpr wchar_t kScratch[] = L"Software\\PostroveTests";

std::wstring DataText(DWORD type, const std::vector<BYTE>& data, DWORD size) {
  if (type == REG_DWORD) return std::to_wstring(*reinterpret_cast<const DWORD*>(data.data()));
  return std::wstring(reinterpret_cast<const wchar_t*>(data.data()), size / sizeof(wchar_t) - 1);
}

void List(HKEY key, const std::wstring& path, std::vector<std::wstring>& lines) {
  wchar_t name[300];
  for (DWORD i = 0;; ++i) {
    std::vector<BYTE> data(2000);
    DWORD nameLength = 300, type = 0, size = static_cast<DWORD>(data.size());
    if (RegEnumValueW(key, i, name, &nameLength, nullptr, &type, data.data(), &size) !=
        ERROR_SUCCESS) {
      break;
    }
    lines.push_back(path + L"|" + name + L"=" + DataText(type, data, size));
  }
  for (DWORD i = 0;; ++i) {
    DWORD nameLength = 300;
    if (RegEnumKeyExW(key, i, name, &nameLength, nullptr, nullptr, nullptr, nullptr) !=
        ERROR_SUCCESS) {
      break;
    }
    const std::wstring subpath = path.empty() ? name : path + L"\\" + name;
    lines.push_back(subpath);
    HKEY subkey = nullptr;
    if (RegOpenKeyExW(key, name, 0, KEY_READ, &subkey) == ERROR_SUCCESS) {
      List(subkey, subpath, lines);
      RegCloseKey(subkey);
    }
  }
}

void Check(LSTATUS status) {
  if (status != ERROR_SUCCESS) {
    throw std::runtime_error("registry: error " + std::to_string(status));
  }
}

}  // namespace

ReplacedHive::ReplacedHive(HKEY hive)
    : hive_(hive),
      name_(std::wstring(kScratch) + (hive == HKEY_CURRENT_USER ? L"User" : L"Machine")) {
  SHDeleteKeyW(HKEY_CURRENT_USER, name_.c_str());
  Check(RegCreateKeyExW(HKEY_CURRENT_USER, name_.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                        &key_, nullptr));
  Check(RegOverridePredefKey(hive_, key_));
}

ReplacedHive::~ReplacedHive() {
  RegOverridePredefKey(hive_, nullptr);
  RegCloseKey(key_);
  SHDeleteKeyW(HKEY_CURRENT_USER, name_.c_str());
}

std::vector<std::wstring> ReplacedHive::Tree() const {
  std::vector<std::wstring> lines;
  List(key_, L"", lines);
  std::sort(lines.begin(), lines.end());
  return lines;
}

void ReplacedHive::MakeKey(const std::wstring& path, DWORD options) {
  HKEY made = nullptr;
  Check(RegCreateKeyExW(key_, path.c_str(), 0, nullptr, options, KEY_ALL_ACCESS, nullptr, &made,
                        nullptr));
  RegCloseKey(made);
}

void ReplacedHive::SetValue(const std::wstring& path, const wchar_t* name, DWORD type,
                            const void* data, DWORD size) {
  MakeKey(path);
  HKEY opened = nullptr;
  Check(RegOpenKeyExW(key_, path.c_str(), 0, KEY_SET_VALUE, &opened));
  const LSTATUS status =
      RegSetValueExW(opened, name, 0, type, static_cast<const BYTE*>(data), size);
  RegCloseKey(opened);
  Check(status);
}

void ReplacedHive::SetText(const std::wstring& path, const wchar_t* name,
                           const std::wstring& text) {
  SetValue(path, name, REG_SZ, text.c_str(),
           static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}
