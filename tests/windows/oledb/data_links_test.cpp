#include <windows.h>

#include <gtest/gtest.h>
#include <msdasc.h>

#include "consumer.h"
#include "oledb/provider_class.h"

namespace {

using consumer::ComPtr;
using consumer::Provider;

// The provider is registered for real, so that the system finds it; afterwards all is as it was.
class DataLinks : public testing::Test {
 protected:
  DataLinks() {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    wchar_t clsid[39];
    StringFromGUID2(standin::kProviderClass, clsid, 39);
    server_ = L"Software\\Classes\\CLSID\\" + std::wstring(clsid) + L"\\InprocServer32";
    wchar_t path[MAX_PATH] = {};
    DWORD size = sizeof path;
    RegGetValueW(HKEY_LOCAL_MACHINE, server_.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, path, &size);
    before_ = path;
    EXPECT_EQ(S_OK, Provider().Call("DllRegisterServer"));
  }

  ~DataLinks() override {
    if (before_.empty()) {
      Provider().Call("DllUnregisterServer");
    } else {
      RegSetKeyValueW(HKEY_LOCAL_MACHINE, server_.c_str(), nullptr, REG_SZ, before_.c_str(),
                      static_cast<DWORD>((before_.size() + 1) * sizeof(wchar_t)));
    }
    CoUninitialize();
  }

  std::wstring server_, before_;
  const consumer::DatabaseFile file_;
};

TEST_F(DataLinks, OpenItByItsNameAndUnloadItAfterwards) {
  const std::wstring text = L"Provider=Microsoft.Jet.OLEDB.4.0;Data Source=\"" + file_.Path() +
                            L"\";User ID=admin;Password=\"\";OLE DB Services=-4";
  {
    ComPtr<IDataInitialize> links;
    ASSERT_EQ(S_OK, CoCreateInstance(CLSID_MSDAINITIALIZE, nullptr, CLSCTX_INPROC_SERVER,
                                     IID_IDataInitialize,
                                     reinterpret_cast<void**>(links.GetAddressOf())));
    ComPtr<IDBInitialize> dataSource;
    ASSERT_EQ(S_OK,
              links->GetDataSource(nullptr, CLSCTX_INPROC_SERVER, text.c_str(), IID_IDBInitialize,
                                   reinterpret_cast<IUnknown**>(dataSource.GetAddressOf())));
    ASSERT_EQ(S_OK, dataSource->Initialize());
    const auto sessions = consumer::As<IDBCreateSession>(dataSource.Get(), IID_IDBCreateSession);
    ComPtr<IDBCreateCommand> session;
    ASSERT_EQ(S_OK, sessions->CreateSession(nullptr, IID_IDBCreateCommand,
                                            reinterpret_cast<IUnknown**>(session.GetAddressOf())));
    EXPECT_EQ(40u, consumer::Query(session.Get(), L"SELECT ProjectID FROM Project").size());
    EXPECT_NE(nullptr, GetModuleHandleW(L"standin_oledb.dll"));
  }
  CoFreeUnusedLibrariesEx(0, 0);
  EXPECT_EQ(nullptr, GetModuleHandleW(L"standin_oledb.dll")) << "something still uses it";
}

}  // namespace
