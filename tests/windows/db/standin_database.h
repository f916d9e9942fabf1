#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <wrl/client.h>

#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "../util/temporary_folder.h"
#include "../util/windows_path.h"
#include "oledb/fault_hook.h"
#include "oledb/registration.h"
#include "shared/win32/ole_db.h"

// A real engine behind OLE DB: the stand-in for Jet, which does what a test plans, and files that
// it opens.
namespace postrove::testing {

inline constexpr wchar_t kStandinProvider[] = L"Postrove.Test.Standin";

// A provider's name and class in the registry, removed at the end. `keys` are those of the class,
// with their texts; without any the class is registered nowhere.
class RegistryName {
 public:
  RegistryName(const std::wstring& name, const std::wstring& clsid,
               const std::vector<std::pair<std::wstring, std::wstring>>& keys)
      : name_(L"Software\\Classes\\" + name), class_(L"Software\\Classes\\CLSID\\" + clsid) {
    Set(name_ + L"\\CLSID", clsid);
    for (const auto& [key, text] : keys) Set(class_ + L"\\" + key, text);
  }
  ~RegistryName() {
    RegDeleteTreeW(HKEY_CURRENT_USER, name_.c_str());
    RegDeleteTreeW(HKEY_CURRENT_USER, class_.c_str());
  }
  RegistryName(const RegistryName&) = delete;
  RegistryName& operator=(const RegistryName&) = delete;

 private:
  static void Set(const std::wstring& key, const std::wstring& text) {
    EXPECT_EQ(ERROR_SUCCESS,
              RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), nullptr, REG_SZ, text.c_str(),
                              static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))));
  }

  const std::wstring name_;
  const std::wstring class_;
};

// The stand-in under a name of this process, whatever is registered, and what it is to do. Fails
// the test when something of it is not given back.
class LoadedProvider final : public standin::FaultHook {
 public:
  LoadedProvider() {
    module_ = LoadLibraryW(WindowsPath(POSTROVE_STANDIN_OLEDB).c_str());
    if (!module_) throw std::runtime_error("cannot load " POSTROVE_STANDIN_OLEDB);
    CLSID id{};
    CLSIDFromString(kClass, &id);
    Microsoft::WRL::ComPtr<IUnknown> factory;
    EXPECT_EQ(S_OK, Find<decltype(&DllGetClassObject)>("DllGetClassObject")(
                        standin::kProviderClass, IID_IClassFactory,
                        reinterpret_cast<void**>(factory.GetAddressOf())));
    EXPECT_EQ(S_OK, CoRegisterClassObject(id, factory.Get(), CLSCTX_INPROC_SERVER,
                                          REGCLS_MULTIPLEUSE, &cookie_));
    SetHook(this);
  }
  ~LoadedProvider() {
    SetHook(nullptr);
    CoRevokeClassObject(cookie_);
    EXPECT_EQ(S_OK, Find<HRESULT(STDAPICALLTYPE*)()>("DllCanUnloadNow")())
        << "objects of the provider are left";
    FreeLibrary(module_);
  }
  LoadedProvider(const LoadedProvider&) = delete;
  LoadedProvider& operator=(const LoadedProvider&) = delete;

  // The plan: what a method answers, and what becomes of the values.
  std::map<std::string, std::function<HRESULT()>> plan;
  std::function<void(DBORDINAL, VARIANT&, DBSTATUS&)> give;

  // What happened.
  std::map<std::string, int> calls;
  std::map<DBPROPID, std::wstring> properties;  // last set; of a number the text

  HRESULT Enter(const char* method) override {
    ++calls[method];
    const auto planned = plan.find(method);
    return planned == plan.end() ? S_OK : planned->second();
  }
  void SetProperty(DBPROPID id, const VARIANT& value) override {
    properties[id] = V_VT(&value) == VT_BSTR ? V_BSTR(&value) : std::to_wstring(V_I4(&value));
  }
  void Give(DBORDINAL column, VARIANT& value, DBSTATUS& status) override {
    if (give) give(column, value, status);
  }
  void NotGivenBack() override { ADD_FAILURE() << "rows or accessors were not given back"; }

 private:
  static constexpr wchar_t kClass[] = L"{5C2D6A5E-0F0B-4B6A-9C55-3E0C52B7A1D4}";

  template <typename Function>
  Function Find(const char* name) const {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
  }
  void SetHook(standin::FaultHook* hook) {
    Find<void(STDAPICALLTYPE*)(standin::FaultHook*)>("SetFaultHook")(hook);
  }

  const RegistryName name_{kStandinProvider, kClass, {{L"OLE DB Provider", L"A stand-in"}}};
  HMODULE module_ = nullptr;
  DWORD cookie_ = 0;
};

// A database without tables, in place of any other file of that name.
inline void MakeEmptyDatabase(const std::wstring& path) {
  // One page: the header of the file and an empty table of contents.
  std::string page("SQLite format 3\0\x10\0\1\1\0\x40\x20\x20\0\0\0\1\0\0\0\1", 32);
  page.resize(4096);
  page[47] = 4;
  page[59] = 1;
  page[95] = 1;
  page[100] = 13;
  page[105] = 0x10;
  MakeFile(path, page);
}

}  // namespace postrove::testing
