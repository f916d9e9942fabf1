#define DBINITCONSTANTS  // the property sets and DBGUID_DEFAULT are defined here
#include "shared/win32/ole_db_command.h"

#include <algorithm>
#include <iterator>

#include "shared/error.h"
#include "shared/win32/ole_db.h"
#include "shared/win32/ole_db_error.h"

using Microsoft::WRL::ComPtr;

namespace postrove::ole_db {
namespace {

// Seconds. Outlook stands still while a statement runs.
constexpr LONG kStatementTimeout = 30;

// Any COM class could stand in the settings and be loaded: only one that is registered as an OLE DB
// provider is asked for its factory, which the service components would not look at.
HRESULT CheckRegistration(const CLSID& id) {
  wchar_t text[39];
  StringFromGUID2(id, text, static_cast<int>(std::size(text)));
  HKEY key = nullptr;
  const LSTATUS found = RegOpenKeyExW(
      HKEY_CLASSES_ROOT, (L"CLSID\\" + std::wstring(text) + L"\\OLE DB Provider").c_str(), 0,
      KEY_QUERY_VALUE, &key);
  if (found != ERROR_SUCCESS) return REGDB_E_CLASSNOTREG;
  RegCloseKey(key);
  return S_OK;
}

// Fails when the name or its class is not registered, or the library is not there or not for
// programs of this width. Nothing is asked of the provider itself.
HRESULT FindProvider(const std::wstring& name) {
  CLSID id{};
  HRESULT result = CLSIDFromProgID(name.c_str(), &id);
  if (SUCCEEDED(result)) result = CheckRegistration(id);
  if (FAILED(result)) return result;
  ComPtr<IClassFactory> factory;
  return CoGetClassObject(id, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory,
                          reinterpret_cast<void**>(factory.GetAddressOf()));
}

ConnectionCandidate& FindCandidate(std::vector<ConnectionCandidate>& candidates,
                                   const wchar_t* source) {
  HRESULT result = REGDB_E_CLASSNOTREG;
  for (ConnectionCandidate& candidate : candidates) {
    result = FindProvider(candidate.provider);
    if (SUCCEEDED(result)) return candidate;
  }
  throw Error(result, source, NoProviderText(candidates, static_cast<int>(sizeof(void*) * 8)));
}

ComPtr<IDBInitialize> Connect(const std::wstring& connectionString, const wchar_t* source) {
  ComPtr<IDataInitialize> services;
  Check(CoCreateInstance(CLSID_MSDAINITIALIZE, nullptr, CLSCTX_INPROC_SERVER, IID_IDataInitialize,
                         reinterpret_cast<void**>(services.GetAddressOf())),
        source);
  ComPtr<IUnknown> created;
  Check(services->GetDataSource(nullptr, CLSCTX_INPROC_SERVER, connectionString.c_str(),
                                IID_IDBInitialize, created.GetAddressOf()),
        source);
  auto dataSource = Query<IDBInitialize>(created.Get(), IID_IDBInitialize, source);
  Check(dataSource->Initialize(), source);
  return dataSource;
}

// Only a login that is refused leads to the next. The one that is accepted goes to the front.
ComPtr<IDBInitialize> LogIn(std::vector<Login>& logins, const wchar_t* source) {
  std::wstring refused = L"The project database refuses every login:";
  for (auto login = logins.begin(); login != logins.end(); ++login) {
    try {
      const ComPtr<IDBInitialize> dataSource = Connect(login->connectionString, source);
      std::rotate(logins.begin(), login, login + 1);
      return dataSource;
    } catch (const Error& error) {
      if (error.Number() != DB_SEC_E_AUTH_FAILED || logins.size() == 1) throw;
      refused += L"\r\n- " + login->name + L": " + error.Description();
    }
  }
  throw Error(DB_SEC_E_AUTH_FAILED, source, refused);
}

// Not every provider has the property; a statement then takes as long as it takes.
void LimitTime(ICommandText* command) {
  ComPtr<ICommandProperties> properties;
  if (FAILED(command->QueryInterface(IID_ICommandProperties,
                                     reinterpret_cast<void**>(properties.GetAddressOf())))) {
    return;
  }
  DBPROP timeout{};
  timeout.dwPropertyID = DBPROP_COMMANDTIMEOUT;
  timeout.dwOptions = DBPROPOPTIONS_OPTIONAL;
  timeout.vValue.vt = VT_I4;
  timeout.vValue.lVal = kStatementTimeout;
  DBPROPSET set{&timeout, 1, DBPROPSET_ROWSET};
  if (FAILED(properties->SetProperties(1, &set))) ForgetErrors();
}

}  // namespace

ComPtr<ICommandText> CreateCommand(std::vector<ConnectionCandidate>& candidates,
                                   const std::wstring& statement, const wchar_t* source) {
  ConnectionCandidate& candidate = FindCandidate(candidates, source);
  ForgetErrors();
  const ComPtr<IDBInitialize> dataSource = LogIn(candidate.logins, source);
  const auto sessions = Query<IDBCreateSession>(dataSource.Get(), IID_IDBCreateSession, source);
  ComPtr<IUnknown> session;
  Check(sessions->CreateSession(nullptr, IID_IDBCreateCommand, session.GetAddressOf()), source);
  const auto commands = Query<IDBCreateCommand>(session.Get(), IID_IDBCreateCommand, source);
  ComPtr<IUnknown> created;
  Check(commands->CreateCommand(nullptr, IID_ICommandText, created.GetAddressOf()), source);
  auto command = Query<ICommandText>(created.Get(), IID_ICommandText, source);
  Check(command->SetCommandText(DBGUID_DEFAULT, statement.c_str()), source);
  LimitTime(command.Get());
  return command;
}

}  // namespace postrove::ole_db
