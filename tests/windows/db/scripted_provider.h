#pragma once

#include <windows.h>

#include <wrl/client.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "shared/win32/ole_db.h"

// An OLE DB provider that does what a test tells it, and watches that it is used by the rules: one
// block of rows is held at a time, every row and accessor is given back, every binding fits the
// caller's memory. What breaks a rule fails the test.
namespace postrove::testing {

struct ScriptedValue {
  std::function<void(VARIANT&)> write;
  DBSTATUS status = DBSTATUS_S_OK;
};

struct ScriptedFailure {
  HRESULT result;
  std::vector<std::wstring> texts;  // one: plain error information; more: error records
};

struct Script {
  // The stage. Without columns a statement gives no rowset.
  std::vector<std::wstring> columns;
  std::vector<std::vector<ScriptedValue>> rows;
  bool bookmark = false;                            // a column 0 before the others
  bool commandProperties = true;                    // whether commands have ICommandProperties
  std::map<std::string, ScriptedFailure> failures;  // by method

  // What happened.
  std::map<DBPROPID, std::wstring> properties;  // that the last connection was made with
  std::vector<std::wstring> statements;
  std::vector<bool> askedForRows;  // for each of them
  long timeout = 0;
  int connections = 0;
  long objects = 0;  // alive

  // Fails with the failure scripted for `method`, if there is one.
  HRESULT Enter(const char* method) const;
};

// A provider's name and class in the registry, removed at the end. Without a library the class is
// registered nowhere.
class RegistryName {
 public:
  RegistryName(const std::wstring& name, const wchar_t* clsid, const wchar_t* library = nullptr);
  ~RegistryName();
  RegistryName(const RegistryName&) = delete;
  RegistryName& operator=(const RegistryName&) = delete;

 private:
  std::vector<std::wstring> keys_;
};

// The scripted provider under a name, for this process, as long as this lives. The script outlives
// it and all that the provider made.
class RegisteredProvider {
 public:
  RegisteredProvider(const std::wstring& name, Script& script);
  ~RegisteredProvider();
  RegisteredProvider(const RegisteredProvider&) = delete;
  RegisteredProvider& operator=(const RegisteredProvider&) = delete;

 private:
  const RegistryName name_;
  DWORD cookie_ = 0;
};

}  // namespace postrove::testing
