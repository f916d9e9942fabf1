#pragma once

#include <windows.h>

#include <oledb.h>
#include <oledberr.h>
#include <wrl/client.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "util/temporary_folder.h"

// A plain consumer of the stand-in provider. Everything that fails unexpectedly throws
// std::runtime_error.
namespace consumer {

using Microsoft::WRL::ComPtr;

// The headers of OLE DB know no __uuidof.
template <typename Interface>
ComPtr<Interface> As(IUnknown* object, REFIID iid) {
  ComPtr<Interface> result;
  if (FAILED(object->QueryInterface(iid, reinterpret_cast<void**>(result.GetAddressOf())))) {
    throw std::runtime_error("an interface is missing");
  }
  return result;
}

// The provider, loaded but not registered.
class Provider {
 public:
  Provider();
  ~Provider();
  Provider(const Provider&) = delete;
  Provider& operator=(const Provider&) = delete;

  static std::wstring Path();

  ComPtr<IDBInitialize> CreateDataSource() const;
  HRESULT Call(const char* name) const;  // of the four functions that servers export
  long OpenObjects() const;

 private:
  HMODULE module_;
};

// A copy of the sample database in a folder of its own, whose name is not ASCII; deleted with it.
class DatabaseFile {
 public:
  DatabaseFile();

  std::wstring Folder() const { return temporary_.Path() + L"Projekte Größe Γ"; }
  std::wstring Path() const { return Folder() + L"\\Postrove.mdb"; }

 private:
  const postrove::TemporaryFolder temporary_;
};

// Sets one property of the initialization group; `value` is of the caller. The property's status
// goes to `status` unless null.
HRESULT SetProperty(IDBInitialize* dataSource, DBPROPID id, const VARIANT& value,
                    DBPROPSTATUS* status = nullptr);
HRESULT SetDataSource(IDBInitialize* dataSource, const std::wstring& path);

// What the thread's error object says, which is taken; empty when there is none.
std::wstring ErrorText();

// A session of the file.
ComPtr<IDBCreateCommand> Open(const Provider& provider, const std::wstring& path);
ComPtr<ICommandText> CreateCommand(IDBCreateCommand* session, const wchar_t* text);

// Runs a statement that gives rows; null when it does not.
ComPtr<IRowset> Rows(IDBCreateCommand* session, const wchar_t* text);

// Runs a statement without asking for rows.
HRESULT Execute(IDBCreateCommand* session, const wchar_t* text, DBROWCOUNT* affected = nullptr);

DBBINDING Bind(DBORDINAL column, DBTYPE type, DBBYTEOFFSET value, DBLENGTH room = sizeof(VARIANT));

// The rest of the rowset as VARIANTs, fetched in blocks, in words:
// "BSTR Harbour Bridge", "I4 7", "BOOL -1", "NULL".
std::vector<std::vector<std::wstring>> ReadAll(IRowset* rowset);
std::vector<std::vector<std::wstring>> Query(IDBCreateCommand* session, const wchar_t* text);

}  // namespace consumer
