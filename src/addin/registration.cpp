#include "addin/registration.h"

#include <oleauto.h>
#include <shlwapi.h>

#include <cstddef>
#include <string>

#include "addin/Postrove_h.h"
#include "addin/module.h"

namespace postrove::addin {
namespace {

// The action string of the inspector button names it too.
constexpr wchar_t kProgId[] = L"Postrove.Connect";
constexpr wchar_t kFriendlyName[] = L"Postrove";
constexpr wchar_t kDescription[] = L"Postrove Outlook Utility for Quillion";
constexpr wchar_t kTypeLibraryName[] = L"Marrow Postrove Utility for Outlook 2000";
constexpr wchar_t kVersion[] = L"1.0";
constexpr DWORD kLoadAtStartUp = 3;

#ifdef _WIN64
constexpr wchar_t kPlatform[] = L"win64";
#else
constexpr wchar_t kPlatform[] = L"win32";
#endif

std::wstring ToText(const GUID& guid) {
  wchar_t buffer[39];
  StringFromGUID2(guid, buffer, 39);
  return buffer;
}

// Paths below HKEY_CURRENT_USER.
struct Keys {
  std::wstring progId = std::wstring(L"Software\\Classes\\") + kProgId;
  std::wstring classIds = L"Software\\Classes\\CLSID";
  std::wstring clsid = classIds + L"\\" + ToText(__uuidof(::Connect));
  std::wstring typeLibraries = L"Software\\Classes\\TypeLib";
  std::wstring typeLibrary = typeLibraries + L"\\" + ToText(LIBID_Postrove);
  std::wstring typeLibraryVersion = typeLibrary + L"\\" + kVersion;
  std::wstring typeLibraryLocale = typeLibraryVersion + L"\\0";
  std::wstring office = L"Software\\Microsoft\\Office";
  std::wstring outlook = office + L"\\Outlook";
  std::wstring addIns = outlook + L"\\Addins";
  std::wstring addIn = addIns + L"\\" + kProgId;
};

class Key {
 public:
  Key() = default;
  ~Key() {
    if (key_) RegCloseKey(key_);
  }
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;

  HKEY Get() const { return key_; }
  HKEY* operator&() { return &key_; }

 private:
  HKEY key_ = nullptr;
};

// Writes keys and values below HKEY_CURRENT_USER until one fails; `status` keeps the first failure.
class Writer {
 public:
  void Text(const std::wstring& path, const wchar_t* name, const std::wstring& text) {
    Write(path, name, REG_SZ, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
  }
  void Number(const std::wstring& path, const wchar_t* name, DWORD number) {
    Write(path, name, REG_DWORD, &number, sizeof number);
  }

  LSTATUS Status() const { return status_; }

 private:
  void Write(const std::wstring& path, const wchar_t* name, DWORD type, const void* data,
             std::size_t size) {
    if (status_ != ERROR_SUCCESS) return;
    Key key;
    status_ = RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_SET_VALUE,
                              nullptr, &key, nullptr);
    if (status_ != ERROR_SUCCESS) return;
    status_ = RegSetValueExW(key.Get(), name, 0, type, static_cast<const BYTE*>(data),
                             static_cast<DWORD>(size));
  }

  LSTATUS status_ = ERROR_SUCCESS;
};

LSTATUS WriteAll(const Keys& keys, const std::wstring& modulePath) {
  Writer writer;
  writer.Text(keys.clsid, nullptr, kProgId);
  writer.Text(keys.clsid + L"\\ProgID", nullptr, kProgId);
  writer.Text(keys.clsid + L"\\InprocServer32", nullptr, modulePath);
  writer.Text(keys.clsid + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
  writer.Text(keys.clsid + L"\\TypeLib", nullptr, ToText(LIBID_Postrove));
  writer.Text(keys.clsid + L"\\Version", nullptr, kVersion);
  writer.Text(keys.clsid + L"\\Programmable", nullptr, L"");

  writer.Text(keys.progId, nullptr, kProgId);
  writer.Text(keys.progId + L"\\CLSID", nullptr, ToText(__uuidof(::Connect)));

  // By hand: the system's own function would also claim IDTExtensibility2's entries, which belong
  // to Office.
  writer.Text(keys.typeLibraryVersion, nullptr, kTypeLibraryName);
  writer.Text(keys.typeLibraryVersion + L"\\FLAGS", nullptr, L"0");
  writer.Text(keys.typeLibraryLocale + L"\\" + kPlatform, nullptr, modulePath);

  writer.Text(keys.addIn, L"FriendlyName", kFriendlyName);
  writer.Text(keys.addIn, L"Description", kDescription);
  writer.Number(keys.addIn, L"LoadBehavior", kLoadAtStartUp);
  // Outlook 2010 and later leave without OnBeginShutdown and OnDisconnection unless asked; the
  // references to its objects are released there.
  writer.Number(keys.addIn, L"RequireShutdownNotification", 1);
  return writer.Status();
}

// Deletes a key with all that is in it. A missing key is no failure.
LSTATUS DeleteTree(const std::wstring& path) {
  const LSTATUS status = SHDeleteKeyW(HKEY_CURRENT_USER, path.c_str());
  return status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND ? ERROR_SUCCESS : status;
}

struct Content {
  DWORD subkeys = 0;
  DWORD values = 0;
};

// False when the key cannot be read.
bool ReadContent(const std::wstring& path, Content* content) {
  Key key;
  return RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, &key) == ERROR_SUCCESS &&
         RegQueryInfoKeyW(key.Get(), nullptr, nullptr, nullptr, &content->subkeys, nullptr, nullptr,
                          &content->values, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

void DeleteIfEmpty(const std::wstring& path) {
  Content content;
  if (ReadContent(path, &content) && content.subkeys == 0 && content.values == 0) {
    RegDeleteKeyW(HKEY_CURRENT_USER, path.c_str());
  }
}

LSTATUS DeleteAll(const Keys& keys) {
  LSTATUS first = ERROR_SUCCESS;
  const auto remove = [&first](const std::wstring& path) {
    const LSTATUS status = DeleteTree(path);
    if (first == ERROR_SUCCESS) first = status;
  };

  remove(keys.clsid);
  DeleteIfEmpty(keys.classIds);

  // Each width has a key of its own below the type library's language, and nobody else writes
  // there: one that is left tells that the other width is still registered and needs the rest.
  remove(keys.typeLibraryLocale + L"\\" + kPlatform);
  Content locale;
  if (ReadContent(keys.typeLibraryLocale, &locale) && locale.subkeys != 0) return first;

  remove(keys.typeLibraryVersion);
  DeleteIfEmpty(keys.typeLibrary);
  DeleteIfEmpty(keys.typeLibraries);
  remove(keys.progId);
  remove(keys.addIn);
  DeleteIfEmpty(keys.addIns);
  DeleteIfEmpty(keys.outlook);
  DeleteIfEmpty(keys.office);
  return first;
}

}  // namespace

HRESULT RegisterServer() {
  const Keys keys;
  const LSTATUS status = WriteAll(keys, ModulePath());
  if (status != ERROR_SUCCESS) DeleteAll(keys);
  return HRESULT_FROM_WIN32(static_cast<unsigned long>(status));
}

HRESULT UnregisterServer() {
  return HRESULT_FROM_WIN32(static_cast<unsigned long>(DeleteAll(Keys())));
}

}  // namespace postrove::addin
