#include "shared/win32/WinRegistry.h"

#include <windows.h>

namespace postrove {
namespace {

constexpr std::size_t kValueBufferSize = 260;

std::string ToCodePage(const std::wstring& text) {
  const int length = static_cast<int>(text.size());
  const int size =
      WideCharToMultiByte(CP_ACP, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_ACP, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
  return bytes;
}

std::wstring FromCodePage(const std::string& bytes) {
  const int length = static_cast<int>(bytes.size());
  const int size = MultiByteToWideChar(CP_ACP, 0, bytes.data(), length, nullptr, 0);
  std::wstring text(static_cast<std::size_t>(size), L'\0');
  MultiByteToWideChar(CP_ACP, 0, bytes.data(), length, text.data(), size);
  return text;
}

HKEY OpenKey(HKEY hive, const std::wstring& path) {
  HKEY key = nullptr;
  const LSTATUS status = RegOpenKeyExA(hive, ToCodePage(path).c_str(), 0, KEY_READ, &key);
  return status == ERROR_SUCCESS ? key : nullptr;
}

std::string CutAtNull(const std::string& bytes) { return bytes.substr(0, bytes.find('\0')); }

std::wstring QueryValue(HKEY key, const std::wstring& name) {
  std::string buffer(kValueBufferSize, ' ');
  auto size = static_cast<DWORD>(buffer.size());
  const LSTATUS status = RegQueryValueExA(key, ToCodePage(name).c_str(), nullptr, nullptr,
                                          reinterpret_cast<BYTE*>(buffer.data()), &size);
  if (status != ERROR_SUCCESS) return {};
  // Data without a null of its own keeps the buffer's blanks behind it.
  return FromCodePage(CutAtNull(buffer));
}

}  // namespace

std::wstring WinRegistry::GetDefaultMailClient() {
  return GetRegistryValue(L"Software\\Clients\\Mail", L"");
}

std::wstring WinRegistry::GetRegistryValue(const std::wstring& path, const std::wstring& name) {
  const HKEY key = OpenKey(HKEY_LOCAL_MACHINE, path);
  if (!key) return {};
  std::wstring text = QueryValue(key, name);
  RegCloseKey(key);
  return text;
}

}  // namespace postrove
