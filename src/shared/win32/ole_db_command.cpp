#define DBINITCONSTANTS  // the property sets and DBGUID_DEFAULT are defined here
#include "shared/win32/ole_db_command.h"

#include "shared/error.h"
#include "shared/win32/ole_db.h"
#include "shared/win32/ole_db_error.h"

using Microsoft::WRL::ComPtr;

namespace postrove::ole_db {
namespace {

// Seconds. Outlook stands still while a statement runs.
constexpr LONG kStatementTimeout = 30;

// Of the creation of a provider: its name or class is not registered, or its library is not there
// or not for programs of this width.
bool IsMissing(HRESULT result) {
  return result == REGDB_E_CLASSNOTREG || result == CO_E_CLASSSTRING ||
         result == CLASS_E_CLASSNOTAVAILABLE || result == CO_E_DLLNOTFOUND ||
         result == HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND) ||
         result == HRESULT_FROM_WIN32(ERROR_PROC_NOT_FOUND) ||
         result == HRESULT_FROM_WIN32(ERROR_BAD_EXE_FORMAT);
}

// The first provider that is there, with its connection string set but not yet connected.
ComPtr<IDBInitialize> CreateDataSource(const std::vector<ConnectionCandidate>& candidates,
                                       const wchar_t* source) {
  ComPtr<IDataInitialize> services;
  Check(CoCreateInstance(CLSID_MSDAINITIALIZE, nullptr, CLSCTX_INPROC_SERVER, IID_IDataInitialize,
                         reinterpret_cast<void**>(services.GetAddressOf())),
        source);
  HRESULT result = REGDB_E_CLASSNOTREG;
  for (const ConnectionCandidate& candidate : candidates) {
    ComPtr<IUnknown> created;
    result =
        services->GetDataSource(nullptr, CLSCTX_INPROC_SERVER, candidate.connectionString.c_str(),
                                IID_IDBInitialize, created.GetAddressOf());
    if (!IsMissing(result)) {
      Check(result, source);
      return Query<IDBInitialize>(created.Get(), IID_IDBInitialize, source);
    }
    ForgetErrors();
  }
  throw Error(result, source, NoProviderText(candidates, static_cast<int>(sizeof(void*) * 8)));
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

ComPtr<ICommandText> CreateCommand(const std::vector<ConnectionCandidate>& candidates,
                                   const std::wstring& statement, const wchar_t* source) {
  ForgetErrors();
  const ComPtr<IDBInitialize> dataSource = CreateDataSource(candidates, source);
  Check(dataSource->Initialize(), source);
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
