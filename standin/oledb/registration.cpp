#include "oledb/registration.h"

#include <objbase.h>

#include <iterator>
#include <string>

#include "oledb/error.h"

namespace standin {

namespace {

constexpr wchar_t kName[] = L"Microsoft.Jet.OLEDB.4.0";
constexpr wchar_t kTitle[] = L"Stand-in for the Microsoft Jet 4.0 OLE DB Provider";
const std::wstring kNameKey = std::wstring(L"Software\\Classes\\") + kName;

std::wstring ClassText() {
  wchar_t text[39];
  StringFromGUID2(kProviderClass, text, static_cast<int>(std::size(text)));
  return text;
}

std::wstring ClassKey() { return L"Software\\Classes\\CLSID\\" + ClassText(); }

bool IsWine() { return GetProcAddress(GetModuleHandleW(L"ntdll"), "wine_get_version") != nullptr; }

// The class that has the name; empty when none has.
std::wstring Owner() {
  wchar_t text[100] = {};
  DWORD size = sizeof text;
  RegGetValueW(HKEY_LOCAL_MACHINE, (kNameKey + L"\\CLSID").c_str(), nullptr, RRF_RT_REG_SZ, nullptr,
               text, &size);
  return text;
}

void Write(const std::wstring& key, const wchar_t* value, const std::wstring& text) {
  const LSTATUS status =
      RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), value, REG_SZ, text.c_str(),
                      static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  if (status != ERROR_SUCCESS) {
    throw ProviderError(HRESULT_FROM_WIN32(status), L"The registry cannot be written.");
  }
}

}  // namespace

HRESULT Register(HMODULE module) {
  if (!IsWine()) return HRESULT_FROM_WIN32(ERROR_NOT_SUPPORTED);
  const std::wstring owner = Owner();
  if (!owner.empty() && lstrcmpiW(owner.c_str(), ClassText().c_str()) != 0) {
    return HRESULT_FROM_WIN32(ERROR_ALREADY_EXISTS);
  }
  wchar_t path[MAX_PATH];
  const DWORD length = GetModuleFileNameW(module, path, MAX_PATH);
  if (length == 0 || length == MAX_PATH) return HRESULT_FROM_WIN32(ERROR_FILENAME_EXCED_RANGE);
  const std::wstring classKey = ClassKey();
  Write(classKey, nullptr, kName);
  Write(classKey + L"\\InprocServer32", nullptr, path);
  Write(classKey + L"\\InprocServer32", L"ThreadingModel", L"Both");
  Write(classKey + L"\\ProgID", nullptr, kName);
  Write(classKey + L"\\OLE DB Provider", nullptr, kTitle);
  Write(kNameKey, nullptr, kTitle);
  Write(kNameKey + L"\\CLSID", nullptr, ClassText());
  return S_OK;
}

}  // namespace standin
