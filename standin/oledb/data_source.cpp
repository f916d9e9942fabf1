#define DBINITCONSTANTS
#include "oledb/data_source.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "oledb/command.h"

namespace standin {

namespace {

std::wstring FullPath(const std::wstring& path) {
  std::wstring full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
  full.resize(
      GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
  return full;
}

[[noreturn]] void RefuseFile(const std::wstring& path, DWORD error) {
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
      throw ProviderError(E_FAIL, L"Could not find file '" + path + L"'.");
    case ERROR_SHARING_VIOLATION:
      throw ProviderError(E_FAIL, L"Could not use '" + path + L"'; file already in use.");
    case ERROR_ACCESS_DENIED:
      throw ProviderError(E_FAIL,
                          L"The Microsoft Jet database engine cannot open the file '" + path +
                              L"'. It is already opened exclusively by another user, or you need "
                              L"permission to view its data.");
    default:
      throw ProviderError(
          E_FAIL, L"'" + path +
                      L"' is not a valid path. Make sure that the path name is spelled correctly "
                      L"and that you are connected to the server on which the file resides.");
  }
}

// Whether a database can be opened is for the file to say: SQLite itself would take an empty one.
void CheckFile(const std::wstring& path) {
  constexpr char kBeginning[] = "SQLite format 3";
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                  nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) RefuseFile(path, GetLastError());
  char beginning[sizeof kBeginning] = {};
  DWORD count = 0;
  ReadFile(file, beginning, sizeof beginning, &count, nullptr);
  CloseHandle(file);
  if (count < sizeof beginning || std::memcmp(beginning, kBeginning, sizeof beginning) != 0) {
    throw ProviderError(E_FAIL, L"Unrecognized database format '" + path + L"'.");
  }
}

std::wstring Setting(const std::wstring& file, const wchar_t* section, const wchar_t* key,
                     const wchar_t* otherwise) {
  wchar_t text[256];
  GetPrivateProfileStringW(section, key, otherwise, text, static_cast<DWORD>(std::size(text)),
                           file.c_str());
  return text;
}

}  // namespace

void DataSource::CheckLogin(const std::wstring& path) {
  constexpr wchar_t kNone[] = L"\n";
  const std::wstring logins = path + L".logins";
  const std::wstring given = texts_[DBPROP_AUTH_USERID];
  const std::wstring user = given.empty() ? L"Admin" : given;
  const bool isAdmin = lstrcmpiW(user.c_str(), L"Admin") == 0;
  const std::wstring password = Setting(logins, L"Users", user.c_str(), isAdmin ? L"" : kNone);
  if (password == kNone && GetFileAttributesW(logins.c_str()) == INVALID_FILE_ATTRIBUTES) {
    throw ProviderError(DB_SEC_E_AUTH_FAILED,
                        L"Cannot start your application. The workgroup information file is missing "
                        L"or opened exclusively by another user.");
  }
  if (password != texts_[DBPROP_AUTH_PASSWORD]) {
    throw ProviderError(DB_SEC_E_AUTH_FAILED, L"Not a valid account name or password.");
  }
  const std::wstring ofDatabase = Setting(logins, L"Database", L"Password", L"");
  // Wine's service components hand on what they do not know as it stands.
  if (!ofDatabase.empty() &&
      texts_[DBPROP_INIT_PROVIDERSTRING] != L"Jet OLEDB:Database Password=" + ofDatabase) {
    throw ProviderError(DB_SEC_E_AUTH_FAILED, L"Not a valid password.");
  }
}

HRESULT DataSource::Initialize() {
  return Entry("Initialize", [&]() -> HRESULT {
    if (connection_) return DB_E_ALREADYINITIALIZED;
    const std::wstring& name = texts_[DBPROP_INIT_DATASOURCE];
    if (name.empty()) throw ProviderError(E_FAIL, L"No database file is named.");
    const std::wstring path = FullPath(name);
    CheckFile(path);
    CheckLogin(path);
    connection_ = std::make_shared<Connection>(path);
    return S_OK;
  });
}

HRESULT DataSource::SetProperties(ULONG count, DBPROPSET sets[]) {
  return Entry("SetProperties", [&]() -> HRESULT {
    constexpr DBPROPID kTexts[] = {DBPROP_INIT_DATASOURCE, DBPROP_AUTH_USERID, DBPROP_AUTH_PASSWORD,
                                   DBPROP_INIT_PROVIDERSTRING};
    // Taken, and of no use here.
    constexpr DBPROPID kOthers[] = {DBPROP_INIT_PROMPT, DBPROP_INIT_OLEDBSERVICES};
    bool allSet = true;
    for (ULONG i = 0; i < count; ++i) {
      for (ULONG k = 0; k < sets[i].cProperties; ++k) {
        DBPROP& property = sets[i].rgProperties[k];
        const auto isOneOf = [&property](const auto& ids) {
          return std::find(std::begin(ids), std::end(ids), property.dwPropertyID) != std::end(ids);
        };
        const bool isText = isOneOf(kTexts) && V_VT(&property.vValue) == VT_BSTR;
        const bool isKnown = sets[i].guidPropertySet == DBPROPSET_DBINIT && !connection_ &&
                             (isText || isOneOf(kOthers));
        property.dwStatus = isKnown ? DBPROPSTATUS_OK : DBPROPSTATUS_NOTSUPPORTED;
        allSet = allSet && isKnown;
        if (!isText) continue;
        const BSTR text = V_BSTR(&property.vValue);
        texts_[property.dwPropertyID] = text ? text : L"";
        if (faultHook) faultHook->SetProperty(property.dwPropertyID, property.vValue);
      }
    }
    return allSet ? S_OK : DB_E_ERRORSOCCURRED;
  });
}

HRESULT DataSource::CreateSession(IUnknown* outer, REFIID iid, IUnknown** session) {
  return Entry("CreateSession", [&]() -> HRESULT {
    if (outer) return DB_E_NOAGGREGATION;
    if (!connection_) return E_UNEXPECTED;
    return Give<Session>(iid, reinterpret_cast<void**>(session), connection_);
  });
}

HRESULT Session::CreateCommand(IUnknown* outer, REFIID iid, IUnknown** command) {
  return Entry("CreateCommand", [&]() -> HRESULT {
    if (outer) return DB_E_NOAGGREGATION;
    return Give<Command>(iid, reinterpret_cast<void**>(command), connection_);
  });
}

}  // namespace standin
