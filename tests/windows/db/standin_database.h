#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <wrl/client.h>

#include <stdexcept>
#include <string>

#include "../util/temporary_folder.h"
#include "../util/windows_path.h"
#include "scripted_provider.h"

// A real engine behind OLE DB: the stand-in for Jet, and files that it opens.
namespace postrove::testing {

inline constexpr wchar_t kStandinProvider[] = L"Postrove.Test.Standin";

// The stand-in under a name of this process, whatever is registered.
class LoadedProvider {
 public:
  LoadedProvider() : name_(kStandinProvider, kClass) {
    module_ = LoadLibraryW(WindowsPath(POSTROVE_STANDIN_OLEDB).c_str());
    if (!module_) throw std::runtime_error("cannot load " POSTROVE_STANDIN_OLEDB);
    CLSID id{};
    CLSIDFromString(kClass, &id);
    Microsoft::WRL::ComPtr<IUnknown> factory;
    EXPECT_EQ(S_OK, Find<decltype(&DllGetClassObject)>("DllGetClassObject")(
                        id, IID_IClassFactory, reinterpret_cast<void**>(factory.GetAddressOf())));
    EXPECT_EQ(S_OK, CoRegisterClassObject(id, factory.Get(), CLSCTX_INPROC_SERVER,
                                          REGCLS_MULTIPLEUSE, &cookie_));
  }
  ~LoadedProvider() {
    CoRevokeClassObject(cookie_);
    EXPECT_EQ(S_OK, Find<HRESULT(STDAPICALLTYPE*)()>("DllCanUnloadNow")())
        << "objects of the provider are left";
    FreeLibrary(module_);
  }
  LoadedProvider(const LoadedProvider&) = delete;
  LoadedProvider& operator=(const LoadedProvider&) = delete;

 private:
  static constexpr wchar_t kClass[] = L"{C3CA9F78-FF5D-43AB-B732-7E4CD1DC6260}";

  template <typename Function>
  Function Find(const char* name) const {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
  }

  const RegistryName name_;
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
