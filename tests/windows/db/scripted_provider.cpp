#define DBINITCONSTANTS
#include "scripted_provider.h"

#include <gtest/gtest.h>

#include <set>

using Microsoft::WRL::ComPtr;

namespace postrove::testing {
namespace {

// {5C2D6A5E-0F0B-4B6A-9C55-3E0C52B7A1D4}
constexpr GUID kClass = {
    0x5C2D6A5E, 0x0F0B, 0x4B6A, {0x9C, 0x55, 0x3E, 0x0C, 0x52, 0xB7, 0xA1, 0xD4}};
constexpr wchar_t kClassText[] = L"{5C2D6A5E-0F0B-4B6A-9C55-3E0C52B7A1D4}";

// Counting of references, and of the provider's objects in the script.
template <typename... Interfaces>
class Object : public Interfaces... {
 public:
  explicit Object(Script& script) : script_(script) { ++script_.objects; }
  virtual ~Object() { --script_.objects; }

  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** found) override {
    *found = Find(id);
    if (!*found) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }

 protected:
  virtual void* Find(REFIID id) = 0;
  Script& script_;

 private:
  ULONG references_ = 0;
};

template <typename T>
HRESULT Give(T* object, REFIID id, void** out) {
  return ComPtr<T>(object)->QueryInterface(id, out);
}

ComPtr<IErrorInfo> Information(const std::wstring& text) {
  ComPtr<ICreateErrorInfo> created;
  CreateErrorInfo(created.GetAddressOf());
  std::wstring copy = text;
  created->SetDescription(copy.data());
  ComPtr<IErrorInfo> information;
  created->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(information.GetAddressOf()));
  return information;
}

// Error records, whose own description is not the one to show.
class Records final : public Object<IErrorInfo, IErrorRecords> {
 public:
  Records(Script& script, std::vector<std::wstring> texts)
      : Object(script), texts_(std::move(texts)) {}

  HRESULT STDMETHODCALLTYPE GetGUID(GUID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetSource(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetDescription(BSTR* text) override {
    *text = SysAllocString(L"the records as a whole");
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE AddErrorRecord(ERRORINFO*, DWORD, DISPPARAMS*, IUnknown*,
                                           DWORD) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetBasicErrorInfo(ULONG, ERRORINFO*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetCustomErrorObject(ULONG, REFIID, IUnknown**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetErrorInfo(ULONG i, LCID, IErrorInfo** information) override {
    *information = Information(texts_.at(i)).Detach();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetErrorParameters(ULONG, DISPPARAMS*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetRecordCount(ULONG* count) override {
    *count = static_cast<ULONG>(texts_.size());
    return S_OK;
  }

 private:
  void* Find(REFIID id) override {
    if (id == IID_IErrorRecords) return static_cast<IErrorRecords*>(this);
    if (id == IID_IErrorInfo || id == IID_IUnknown) return static_cast<IErrorInfo*>(this);
    return nullptr;
  }

  const std::vector<std::wstring> texts_;
};

class Rowset final : public Object<IRowset, IAccessor, IColumnsInfo> {
 public:
  explicit Rowset(Script& script) : Object(script) {}
  ~Rowset() override {
    EXPECT_TRUE(held_.empty()) << held_.size() << " rows were not given back";
    EXPECT_TRUE(bindings_.empty()) << "the accessor was not given back";
  }

  HRESULT STDMETHODCALLTYPE AddRefRows(DBCOUNTITEM, const HROW[], DBREFCOUNT[],
                                       DBROWSTATUS[]) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetData(HROW row, HACCESSOR accessor, void* data) override {
    EXPECT_TRUE(held_.contains(row)) << "data of a row that is not held";
    EXPECT_EQ(kAccessor, accessor);
    HRESULT result = script_.Enter("GetData");
    if (FAILED(result)) return result;
    bool allFailed = true;
    for (const DBBINDING& binding : bindings_) {
      const std::size_t column = static_cast<std::size_t>(binding.iOrdinal) - 1;
      const ScriptedValue& value = script_.rows.at(static_cast<std::size_t>(row) - 1).at(column);
      char* const field = static_cast<char*>(data);
      if (value.write) value.write(*reinterpret_cast<VARIANT*>(field + binding.obValue));
      *reinterpret_cast<DBSTATUS*>(field + binding.obStatus) = value.status;
      const bool good = value.status == DBSTATUS_S_OK || value.status == DBSTATUS_S_ISNULL;
      if (good) allFailed = false;
      if (!good) result = DB_S_ERRORSOCCURRED;
    }
    return allFailed ? DB_E_ERRORSOCCURRED : result;
  }
  HRESULT STDMETHODCALLTYPE GetNextRows(HCHAPTER, DBROWOFFSET offset, DBROWCOUNT wanted,
                                        DBCOUNTITEM* obtained, HROW** rows) override {
    EXPECT_EQ(0, offset);
    if (!held_.empty()) return DB_E_ROWSNOTRELEASED;
    if (const HRESULT result = script_.Enter("GetNextRows"); FAILED(result)) return result;
    for (*obtained = 0; *obtained < static_cast<DBCOUNTITEM>(wanted); ++*obtained) {
      if (next_ == script_.rows.size()) return DB_S_ENDOFROWSET;
      (*rows)[*obtained] = static_cast<HROW>(++next_);
      held_.insert(static_cast<HROW>(next_));
    }
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE ReleaseRows(DBCOUNTITEM count, const HROW rows[], DBROWOPTIONS[],
                                        DBREFCOUNT[], DBROWSTATUS[]) override {
    for (DBCOUNTITEM i = 0; i < count; ++i) EXPECT_EQ(1u, held_.erase(rows[i]));
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE RestartPosition(HCHAPTER) override { return E_NOTIMPL; }

  HRESULT STDMETHODCALLTYPE AddRefAccessor(HACCESSOR, DBREFCOUNT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE CreateAccessor(DBACCESSORFLAGS flags, DBCOUNTITEM count,
                                           const DBBINDING bindings[], DBLENGTH size,
                                           HACCESSOR* accessor, DBBINDSTATUS[]) override {
    if (const HRESULT result = script_.Enter("CreateAccessor"); FAILED(result)) return result;
    EXPECT_EQ(static_cast<DBACCESSORFLAGS>(DBACCESSOR_ROWDATA), flags);
    EXPECT_EQ(script_.columns.size(), count);
    std::set<DBORDINAL> ordinals;
    for (DBCOUNTITEM i = 0; i < count; ++i) {
      const DBBINDING& binding = bindings[i];
      EXPECT_EQ(static_cast<DBTYPE>(DBTYPE_VARIANT), binding.wType);
      EXPECT_EQ(static_cast<DBPART>(DBPART_VALUE | DBPART_STATUS), binding.dwPart);
      EXPECT_EQ(static_cast<DBMEMOWNER>(DBMEMOWNER_CLIENTOWNED), binding.dwMemOwner);
      EXPECT_EQ(0u, binding.obValue % alignof(VARIANT));
      EXPECT_LE(binding.obValue + sizeof(VARIANT), size);
      EXPECT_LE(binding.obStatus + sizeof(DBSTATUS), size);
      EXPECT_TRUE(binding.iOrdinal >= 1 && binding.iOrdinal <= script_.columns.size());
      EXPECT_TRUE(ordinals.insert(binding.iOrdinal).second);
    }
    bindings_.assign(bindings, bindings + count);
    *accessor = kAccessor;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetBindings(HACCESSOR, DBACCESSORFLAGS*, DBCOUNTITEM*,
                                        DBBINDING**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ReleaseAccessor(HACCESSOR accessor, DBREFCOUNT*) override {
    EXPECT_EQ(kAccessor, accessor);
    bindings_.clear();
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE GetColumnInfo(DBORDINAL* count, DBCOLUMNINFO** information,
                                          OLECHAR** names) override {
    if (const HRESULT result = script_.Enter("GetColumnInfo"); FAILED(result)) return result;
    std::wstring all;
    for (const std::wstring& name : script_.columns) all += name + L'\0';
    *names = static_cast<OLECHAR*>(CoTaskMemAlloc(all.size() * sizeof(OLECHAR)));
    all.copy(*names, all.size());
    const std::size_t extra = script_.bookmark ? 1 : 0;
    *count = script_.columns.size() + extra;
    *information = static_cast<DBCOLUMNINFO*>(CoTaskMemAlloc(*count * sizeof(DBCOLUMNINFO)));
    OLECHAR* name = *names;
    for (DBORDINAL i = 0; i < *count; ++i) {
      DBCOLUMNINFO& column = (*information)[i] = DBCOLUMNINFO{};
      column.iOrdinal = i + 1 - extra;
      if (column.iOrdinal == 0) continue;
      column.pwszName = name;
      name += wcslen(name) + 1;
    }
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE MapColumnIDs(DBORDINAL, const DBID[], DBORDINAL[]) override {
    return E_NOTIMPL;
  }

 private:
  static constexpr HACCESSOR kAccessor = 77;

  void* Find(REFIID id) override {
    if (id == IID_IRowset || id == IID_IUnknown) return static_cast<IRowset*>(this);
    if (id == IID_IAccessor) return static_cast<IAccessor*>(this);
    if (id == IID_IColumnsInfo) return static_cast<IColumnsInfo*>(this);
    return nullptr;
  }

  std::size_t next_ = 0;
  std::set<HROW> held_;
  std::vector<DBBINDING> bindings_;
};

class Command final : public Object<ICommandText, ICommandProperties> {
 public:
  explicit Command(Script& script) : Object(script) {}

  HRESULT STDMETHODCALLTYPE Cancel() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE Execute(IUnknown*, REFIID id, DBPARAMS*, DBROWCOUNT*,
                                    IUnknown** rowset) override {
    script_.statements.push_back(text_);
    script_.askedForRows.push_back(id != IID_NULL);
    if (const HRESULT result = script_.Enter("Execute"); FAILED(result)) return result;
    if (id == IID_NULL) return S_OK;
    *rowset = nullptr;
    if (script_.columns.empty()) return S_OK;
    return Give(new Rowset(script_), id, reinterpret_cast<void**>(rowset));
  }
  HRESULT STDMETHODCALLTYPE GetDBSession(REFIID, IUnknown**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetCommandText(GUID*, LPOLESTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetCommandText(REFGUID dialect, LPCOLESTR text) override {
    EXPECT_TRUE(dialect == DBGUID_DEFAULT);
    text_ = text;
    return script_.Enter("SetCommandText");
  }

  HRESULT STDMETHODCALLTYPE GetProperties(const ULONG, const DBPROPIDSET[], ULONG*,
                                          DBPROPSET**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SetProperties(ULONG, DBPROPSET sets[]) override {
    if (const HRESULT result = script_.Enter("SetProperties"); FAILED(result)) return result;
    EXPECT_TRUE(sets->guidPropertySet == DBPROPSET_ROWSET);
    EXPECT_EQ(static_cast<DBPROPID>(DBPROP_COMMANDTIMEOUT), sets->rgProperties->dwPropertyID);
    script_.timeout = sets->rgProperties->vValue.lVal;
    return S_OK;
  }

 private:
  void* Find(REFIID id) override {
    if (id == IID_ICommandText || id == IID_ICommand || id == IID_IUnknown) {
      return static_cast<ICommandText*>(this);
    }
    if (id == IID_ICommandProperties && script_.commandProperties) {
      return static_cast<ICommandProperties*>(this);
    }
    return nullptr;
  }

  std::wstring text_;
};

class Session final : public Object<IDBCreateCommand> {
 public:
  explicit Session(Script& script) : Object(script) {}

  HRESULT STDMETHODCALLTYPE CreateCommand(IUnknown*, REFIID id, IUnknown** command) override {
    if (const HRESULT result = script_.Enter("CreateCommand"); FAILED(result)) return result;
    return Give(new Command(script_), id, reinterpret_cast<void**>(command));
  }

 private:
  void* Find(REFIID id) override {
    return id == IID_IDBCreateCommand || id == IID_IUnknown ? this : nullptr;
  }
};

class DataSource final : public Object<IDBInitialize, IDBProperties, IDBCreateSession> {
 public:
  explicit DataSource(Script& script) : Object(script) {}

  HRESULT STDMETHODCALLTYPE Initialize() override {
    const HRESULT result = script_.Enter("Initialize");
    script_.properties = properties_;
    connected_ = SUCCEEDED(result);
    if (connected_) ++script_.connections;
    return result;
  }
  HRESULT STDMETHODCALLTYPE Uninitialize() override { return S_OK; }

  HRESULT STDMETHODCALLTYPE GetProperties(ULONG, const DBPROPIDSET[], ULONG*,
                                          DBPROPSET**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetPropertyInfo(ULONG, const DBPROPIDSET[], ULONG*, DBPROPINFOSET**,
                                            OLECHAR**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SetProperties(ULONG count, DBPROPSET sets[]) override {
    for (ULONG s = 0; s < count; ++s) {
      for (ULONG p = 0; p < sets[s].cProperties; ++p) {
        const DBPROP& property = sets[s].rgProperties[p];
        if (property.vValue.vt != VT_BSTR) continue;
        properties_[property.dwPropertyID] =
            std::wstring(property.vValue.bstrVal, SysStringLen(property.vValue.bstrVal));
      }
    }
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE CreateSession(IUnknown*, REFIID id, IUnknown** session) override {
    if (!connected_) return E_UNEXPECTED;
    if (const HRESULT result = script_.Enter("CreateSession"); FAILED(result)) return result;
    return Give(new Session(script_), id, reinterpret_cast<void**>(session));
  }

 private:
  void* Find(REFIID id) override {
    if (id == IID_IDBInitialize || id == IID_IUnknown) return static_cast<IDBInitialize*>(this);
    if (id == IID_IDBProperties) return static_cast<IDBProperties*>(this);
    if (id == IID_IDBCreateSession) return static_cast<IDBCreateSession*>(this);
    return nullptr;
  }

  std::map<DBPROPID, std::wstring> properties_;
  bool connected_ = false;
};

// Not one of the objects that the script counts: it lives as long as the registration.
class Factory final : public IClassFactory {
 public:
  explicit Factory(Script& script) : script_(script) {}
  virtual ~Factory() = default;

  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** found) override {
    *found = id == IID_IClassFactory || id == IID_IUnknown ? this : nullptr;
    if (!*found) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** created) override {
    if (const HRESULT result = script_.Enter("CreateInstance"); FAILED(result)) return result;
    return Give(new DataSource(script_), id, created);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  Script& script_;
  ULONG references_ = 0;
};

}  // namespace

HRESULT Script::Enter(const char* method) const {
  const auto found = failures.find(method);
  if (found == failures.end()) return S_OK;
  const ScriptedFailure& failure = found->second;
  if (failure.texts.size() == 1) SetErrorInfo(0, Information(failure.texts[0]).Get());
  if (failure.texts.size() > 1) {
    const ComPtr<IErrorInfo> records(new Records(const_cast<Script&>(*this), failure.texts));
    SetErrorInfo(0, records.Get());
  }
  return failure.result;
}

RegisteredProvider::RegisteredProvider(const std::wstring& name, Script& script)
    : name_(name, kClassText) {
  const ComPtr<Factory> factory(new Factory(script));
  EXPECT_EQ(S_OK, CoRegisterClassObject(kClass, factory.Get(), CLSCTX_INPROC_SERVER,
                                        REGCLS_MULTIPLEUSE, &cookie_));
}

RegisteredProvider::~RegisteredProvider() { CoRevokeClassObject(cookie_); }

RegistryName::RegistryName(const std::wstring& name, const wchar_t* clsid, const wchar_t* library) {
  const auto set = [](const std::wstring& key, const wchar_t* text) {
    EXPECT_EQ(ERROR_SUCCESS,
              RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), nullptr, REG_SZ, text,
                              static_cast<DWORD>((wcslen(text) + 1) * sizeof(wchar_t))));
  };
  keys_.push_back(L"Software\\Classes\\" + name);
  set(keys_.back() + L"\\CLSID", clsid);
  if (!library) return;
  keys_.push_back(std::wstring(L"Software\\Classes\\CLSID\\") + clsid);
  set(keys_.back() + L"\\InprocServer32", library);
}

RegistryName::~RegistryName() {
  for (const std::wstring& key : keys_) RegDeleteTreeW(HKEY_CURRENT_USER, key.c_str());
}

}  // namespace postrove::testing
