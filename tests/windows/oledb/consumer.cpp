#define DBINITCONSTANTS
#include "consumer.h"

#include <gtest/gtest.h>
#include <oleauto.h>

#include <stdexcept>

#include "oledb/provider_class.h"
#include "util/windows_path.h"

namespace consumer {

namespace {

void Check(HRESULT result, const char* what) {
  if (SUCCEEDED(result)) return;
  char code[20];
  wsprintfA(code, " %08x", static_cast<unsigned>(result));
  const std::wstring text = ErrorText();
  throw std::runtime_error(std::string(what) + code + " " +
                           std::string(testing::PrintToString(text)));
}

template <typename Function>
Function Find(HMODULE module, const char* name) {
  const auto address = GetProcAddress(module, name);
  if (!address) throw std::runtime_error(std::string("not exported: ") + name);
  return reinterpret_cast<Function>(reinterpret_cast<void*>(address));
}

std::wstring Words(const VARIANT& value) {
  switch (V_VT(&value)) {
    case VT_NULL:
      return L"NULL";
    case VT_BSTR:
      return std::wstring(L"BSTR ") + V_BSTR(&value);
    case VT_BOOL:
      return L"BOOL " + std::to_wstring(V_BOOL(&value));
    case VT_I4:
      return L"I4 " + std::to_wstring(V_I4(&value));
    case VT_I8:
      return L"I8 " + std::to_wstring(V_I8(&value));
    case VT_R8:
      return L"R8 " + std::to_wstring(V_R8(&value));
    default:
      return L"VARIANT " + std::to_wstring(V_VT(&value));
  }
}

}  // namespace

std::wstring Provider::Path() { return postrove::WindowsPath(STANDIN_OLEDB_DLL); }

Provider::Provider() : module_(LoadLibraryW(Path().c_str())) {
  if (!module_) throw std::runtime_error("cannot load the provider");
}

Provider::~Provider() { FreeLibrary(module_); }

ComPtr<IDBInitialize> Provider::CreateDataSource() const {
  ComPtr<IClassFactory> factory;
  Check(Find<decltype(&DllGetClassObject)>(module_, "DllGetClassObject")(
            standin::kProviderClass, IID_IClassFactory,
            reinterpret_cast<void**>(factory.GetAddressOf())),
        "DllGetClassObject");
  ComPtr<IDBInitialize> dataSource;
  Check(factory->CreateInstance(nullptr, IID_IDBInitialize,
                                reinterpret_cast<void**>(dataSource.GetAddressOf())),
        "CreateInstance");
  return dataSource;
}

HRESULT Provider::Call(const char* name) const {
  return Find<HRESULT(STDAPICALLTYPE*)()>(module_, name)();
}

long Provider::OpenObjects() const { return Find<long (*)()>(module_, "OpenObjects")(); }

DatabaseFile::DatabaseFile() {
  CreateDirectoryW(Folder().c_str(), nullptr);
  if (!CopyFileW(postrove::WindowsPath(SAMPLE_DATABASE).c_str(), Path().c_str(), FALSE)) {
    throw std::runtime_error("cannot copy the sample database");
  }
}

HRESULT SetProperty(IDBInitialize* dataSource, DBPROPID id, const VARIANT& value,
                    DBPROPSTATUS* status) {
  const auto properties = As<IDBProperties>(dataSource, IID_IDBProperties);
  DBPROP property{};
  property.dwPropertyID = id;
  property.vValue = value;
  DBPROPSET set{&property, 1, DBPROPSET_DBINIT};
  const HRESULT result = properties->SetProperties(1, &set);
  if (status) *status = property.dwStatus;
  return result;
}

HRESULT SetDataSource(IDBInitialize* dataSource, const std::wstring& path) {
  VARIANT value{};
  V_VT(&value) = VT_BSTR;
  V_BSTR(&value) = SysAllocString(path.c_str());
  const HRESULT result = SetProperty(dataSource, DBPROP_INIT_DATASOURCE, value);
  VariantClear(&value);
  return result;
}

std::wstring ErrorText() {
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, info.GetAddressOf()) != S_OK) return {};
  BSTR text = nullptr;
  info->GetDescription(&text);
  const std::wstring result = text ? text : L"";
  SysFreeString(text);
  return result;
}

ComPtr<IDBCreateCommand> Open(const Provider& provider, const std::wstring& path) {
  const ComPtr<IDBInitialize> dataSource = provider.CreateDataSource();
  Check(SetDataSource(dataSource.Get(), path), "data source");
  Check(dataSource->Initialize(), "Initialize");
  const auto sessions = As<IDBCreateSession>(dataSource.Get(), IID_IDBCreateSession);
  ComPtr<IDBCreateCommand> session;
  Check(sessions->CreateSession(nullptr, IID_IDBCreateCommand,
                                reinterpret_cast<IUnknown**>(session.GetAddressOf())),
        "CreateSession");
  return session;
}

ComPtr<ICommandText> CreateCommand(IDBCreateCommand* session, const wchar_t* text) {
  ComPtr<ICommandText> command;
  Check(session->CreateCommand(nullptr, IID_ICommandText,
                               reinterpret_cast<IUnknown**>(command.GetAddressOf())),
        "CreateCommand");
  Check(command->SetCommandText(DBGUID_DEFAULT, text), "SetCommandText");
  return command;
}

ComPtr<IRowset> Rows(IDBCreateCommand* session, const wchar_t* text) {
  ComPtr<IRowset> rowset;
  Check(CreateCommand(session, text)
            ->Execute(nullptr, IID_IRowset, nullptr, nullptr,
                      reinterpret_cast<IUnknown**>(rowset.GetAddressOf())),
        "Execute");
  return rowset;
}

HRESULT Execute(IDBCreateCommand* session, const wchar_t* text, DBROWCOUNT* affected) {
  return CreateCommand(session, text)->Execute(nullptr, IID_NULL, nullptr, affected, nullptr);
}

DBBINDING Bind(DBORDINAL column, DBTYPE type, DBBYTEOFFSET value, DBLENGTH room) {
  DBBINDING binding{};
  binding.iOrdinal = column;
  binding.obValue = value;
  binding.dwPart = DBPART_VALUE;
  binding.dwMemOwner = DBMEMOWNER_CLIENTOWNED;
  binding.cbMaxLen = room;
  binding.wType = type;
  return binding;
}

std::vector<std::vector<std::wstring>> ReadAll(IRowset* rowset) {
  constexpr DBROWCOUNT kBlock = 7;
  const auto accessors = As<IAccessor>(rowset, IID_IAccessor);
  const auto columns = As<IColumnsInfo>(rowset, IID_IColumnsInfo);
  DBORDINAL count = 0;
  DBCOLUMNINFO* info = nullptr;
  OLECHAR* names = nullptr;
  Check(columns->GetColumnInfo(&count, &info, &names), "GetColumnInfo");
  CoTaskMemFree(info);
  CoTaskMemFree(names);
  std::vector<DBBINDING> bindings;
  for (DBORDINAL i = 0; i < count; ++i) {
    bindings.push_back(Bind(i + 1, DBTYPE_VARIANT, i * sizeof(VARIANT)));
  }
  HACCESSOR accessor = 0;
  Check(accessors->CreateAccessor(DBACCESSOR_ROWDATA, count, bindings.data(),
                                  count * sizeof(VARIANT), &accessor, nullptr),
        "CreateAccessor");

  std::vector<std::vector<std::wstring>> table;
  std::vector<VARIANT> values(count);
  for (HRESULT more = S_OK; more == S_OK;) {
    HROW* rows = nullptr;
    DBCOUNTITEM got = 0;
    more = rowset->GetNextRows(DB_NULL_HCHAPTER, 0, kBlock, &got, &rows);
    Check(more, "GetNextRows");
    if (got < static_cast<DBCOUNTITEM>(kBlock) && more != DB_S_ENDOFROWSET) {
      throw std::runtime_error("a short block without its end");
    }
    for (DBCOUNTITEM i = 0; i < got; ++i) {
      Check(rowset->GetData(rows[i], accessor, values.data()), "GetData");
      table.emplace_back();
      for (VARIANT& value : values) {
        table.back().push_back(Words(value));
        VariantClear(&value);
      }
    }
    Check(rowset->ReleaseRows(got, rows, nullptr, nullptr, nullptr), "ReleaseRows");
    CoTaskMemFree(rows);
  }
  Check(accessors->ReleaseAccessor(accessor, nullptr), "ReleaseAccessor");
  return table;
}

std::vector<std::vector<std::wstring>> Query(IDBCreateCommand* session, const wchar_t* text) {
  return ReadAll(Rows(session, text).Get());
}

}  // namespace consumer
