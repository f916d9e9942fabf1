#define DBINITCONSTANTS
#include "oledb/data_source.h"

#include <algorithm>
#include <cstring>

#include "oledb/provider_class.h"
#include "oledb/session.h"

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

}  // namespace

DataSource::DataSource()
    : properties_(DBPROPSET_DBINIT,
                  {{DBPROP_INIT_DATASOURCE, VT_BSTR, true, {}},
                   {DBPROP_AUTH_USERID, VT_BSTR, true, {}},
                   {DBPROP_AUTH_PASSWORD, VT_BSTR, true, {}},
                   {DBPROP_AUTH_CACHE_AUTHINFO, VT_BOOL, true, {}},
                   {DBPROP_AUTH_PERSIST_SENSITIVE_AUTHINFO, VT_BOOL, true, {}},
                   {DBPROP_INIT_MODE, VT_I4, true, {}},
                   {DBPROP_INIT_PROMPT, VT_I2, true, {}},
                   {DBPROP_INIT_HWND, sizeof(void*) == 8 ? VT_I8 : VT_I4, true, {}},
                   {DBPROP_INIT_LCID, VT_I4, true, {}},
                   {DBPROP_INIT_OLEDBSERVICES, VT_I4, true, {}},
                   {DBPROP_INIT_PROVIDERSTRING, VT_BSTR, true, {}}}) {}

HRESULT DataSource::Initialize() {
  return Entry(IID_IDBInitialize, [&]() -> HRESULT {
    if (connection_) return DB_E_ALREADYINITIALIZED;
    const auto* name = std::get_if<std::wstring>(&properties_.Value(DBPROP_INIT_DATASOURCE));
    if (!name || name->empty()) throw ProviderError(E_FAIL, L"No database file is named.");
    const std::wstring path = FullPath(*name);
    CheckFile(path);
    const bool readOnly = properties_.Value(DBPROP_INIT_MODE) == Cell(std::int64_t{DB_MODE_READ});
    connection_ = std::make_shared<Connection>(path, readOnly);
    return S_OK;
  });
}

HRESULT DataSource::Uninitialize() {
  return Entry(IID_IDBInitialize, [&]() -> HRESULT {
    if (openSessions_ > 0) return DB_E_OBJECTOPEN;
    connection_.reset();
    return S_OK;
  });
}

HRESULT DataSource::GetProperties(ULONG count, const DBPROPIDSET asked[], ULONG* gotCount,
                                  DBPROPSET** got) {
  return Entry(IID_IDBProperties, [&] { return properties_.Get(count, asked, gotCount, got); });
}

HRESULT DataSource::GetPropertyInfo(ULONG, const DBPROPIDSET[], ULONG*, DBPROPINFOSET**,
                                    OLECHAR**) {
  return Entry(IID_IDBProperties, [] { return E_NOTIMPL; });
}

HRESULT DataSource::SetProperties(ULONG count, DBPROPSET sets[]) {
  return Entry(IID_IDBProperties,
               [&] { return properties_.Set(count, sets, connection_ != nullptr); });
}

HRESULT DataSource::CreateSession(IUnknown* outer, REFIID iid, IUnknown** session) {
  return Entry(IID_IDBCreateSession, [&]() -> HRESULT {
    if (!session) return E_INVALIDARG;
    *session = nullptr;
    if (outer) return DB_E_NOAGGREGATION;
    if (!connection_) return E_UNEXPECTED;
    return Make<Session>(this, connection_)->QueryInterface(iid, reinterpret_cast<void**>(session));
  });
}

HRESULT DataSource::GetClassID(CLSID* clsid) {
  return Entry(IID_IPersist, [&] {
    if (!clsid) return E_INVALIDARG;
    *clsid = kProviderClass;
    return S_OK;
  });
}

}  // namespace standin
