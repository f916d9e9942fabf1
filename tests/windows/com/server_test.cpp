#include <gmock/gmock.h>
#include <objbase.h>
#include <winver.h>
#include <wrl/client.h>

#include <vector>

#include "addin/Postrove_h.h"
#include "fake_server.h"
#include "module_under_test.h"

namespace {

using Microsoft::WRL::ComPtr;

const GUID kApplicationEvents = {0x0006304E, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
const GUID kInspectorsEvents = {0x00063079, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

class Apartment {
 public:
  Apartment() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
  ~Apartment() { CoUninitialize(); }
};

// As much of Outlook's application as being connected takes.
class FakeApplication {
 public:
  FakeApplication() {
    application.eventInterface = kApplicationEvents;
    inspectors.eventInterface = kInspectorsEvents;
    application.members[L"GetNamespace"] = FakeServer::Returns(nameSpace);
    application.members[L"Inspectors"] = FakeServer::Returns(inspectors);
  }

  std::size_t Sinks() const { return application.sinks.size() + inspectors.sinks.size(); }

  void ExpectLetGo() const {
    EXPECT_EQ(1u, application.References());
    EXPECT_EQ(1u, nameSpace.References());
    EXPECT_EQ(1u, inspectors.References());
  }

  FakeServer application, nameSpace, inspectors;
};

class Server : public testing::Test {
 protected:
  ~Server() override { EXPECT_EQ(S_OK, module_.CanUnloadNow()) << "something was left behind"; }

  ComPtr<IClassFactory> Factory() const {
    ComPtr<IClassFactory> factory;
    EXPECT_EQ(S_OK, module_.GetClassObject(__uuidof(Connect), IID_PPV_ARGS(&factory)));
    return factory;
  }

  ComPtr<IDTExtensibility2> NewConnect() const {
    ComPtr<IDTExtensibility2> connect;
    EXPECT_EQ(S_OK, Factory()->CreateInstance(nullptr, IID_PPV_ARGS(&connect)));
    return connect;
  }

  static void ConnectTo(IDTExtensibility2& connect, FakeApplication& host) {
    EXPECT_EQ(S_OK, connect.OnConnection(&host.application, ext_cm_Startup, nullptr, nullptr));
  }

  static void ShutDown(IDTExtensibility2& connect) {
    EXPECT_EQ(S_OK, connect.OnBeginShutdown(nullptr));
    EXPECT_EQ(S_OK, connect.OnDisconnection(ext_dm_HostShutdown, nullptr));
  }

  const Apartment apartment_;
  const ModuleUnderTest module_;
};

TEST_F(Server, GivesOutItsOneClass) {
  void* object = this;
  EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE,
            module_.GetClassObject(GUID{}, __uuidof(IClassFactory), &object));
  EXPECT_EQ(nullptr, object);
  EXPECT_EQ(E_POINTER, module_.GetClassObject(__uuidof(Connect), __uuidof(IUnknown), nullptr));
  EXPECT_EQ(E_NOINTERFACE, module_.GetClassObject(__uuidof(Connect), __uuidof(IDispatch), &object));

  const ComPtr<IClassFactory> factory = Factory();
  FakeServer outer;
  object = this;
  EXPECT_EQ(CLASS_E_NOAGGREGATION,
            factory->CreateInstance(outer.Dispatch(), __uuidof(IUnknown), &object));
  EXPECT_EQ(nullptr, object);
  EXPECT_EQ(E_NOINTERFACE, factory->CreateInstance(nullptr, __uuidof(IClassFactory), &object));
  EXPECT_EQ(E_POINTER, factory->CreateInstance(nullptr, __uuidof(IUnknown), nullptr));
}

TEST_F(Server, TypeInformationNeedsNoRegistration) {
  const ComPtr<IDTExtensibility2> connect = NewConnect();
  UINT count = 0, index = 0;
  ASSERT_EQ(S_OK, connect->GetTypeInfoCount(&count));
  EXPECT_EQ(1u, count);
  ComPtr<ITypeInfo> info;
  EXPECT_EQ(DISP_E_BADINDEX, connect->GetTypeInfo(1, 0, &info));
  ASSERT_EQ(S_OK, connect->GetTypeInfo(0, 0, &info));
  wchar_t name[] = L"onbeginshutdown";
  LPOLESTR names = name;
  DISPID id = 0;
  EXPECT_EQ(S_OK, info->GetIDsOfNames(&names, 1, &id));
  EXPECT_EQ(5, id);

  ComPtr<ITypeLib> library;
  ASSERT_EQ(S_OK, info->GetContainingTypeLib(&library, &index));
  BSTR libraryName = nullptr, description = nullptr;
  ASSERT_EQ(S_OK, library->GetDocumentation(-1, &libraryName, &description, nullptr, nullptr));
  EXPECT_STREQ(L"Postrove", libraryName);
  EXPECT_STREQ(L"Marrow Postrove Utility for Outlook 2000", description);
  SysFreeString(libraryName);
  SysFreeString(description);
}

VARIANT Number(LONG number) {
  VARIANT variant{};
  variant.vt = VT_I4;
  variant.lVal = number;
  return variant;
}

VARIANT ByReference(VARIANT& target) {
  VARIANT variant{};
  variant.vt = VT_BYREF | VT_VARIANT;
  variant.pvarVal = &target;
  return variant;
}

VARIANT Object(IDispatch* dispatch) {
  VARIANT variant{};
  variant.vt = VT_DISPATCH;
  variant.pdispVal = dispatch;
  return variant;
}

TEST_F(Server, InvokeChecksWhatItGets) {
  const ComPtr<IDTExtensibility2> connect = NewConnect();
  VARIANT text{};
  text.vt = VT_BSTR;
  text.bstrVal = SysAllocString(L"not a number");
  const VARIANT nothing = Object(nullptr), custom{};
  struct Case {
    const char* name;
    DISPID id;
    WORD flags;
    std::vector<VARIANT> reversed;
    HRESULT expected;
    UINT badArgument;
  };
  const Case cases[] = {
      {"unknown member", 6, DISPATCH_METHOD, {}, DISP_E_MEMBERNOTFOUND, 99},
      {"a property", 1, DISPATCH_PROPERTYGET, {}, DISP_E_MEMBERNOTFOUND, 99},
      {"too few", 1, DISPATCH_METHOD, {nothing, nothing}, DISP_E_BADPARAMCOUNT, 99},
      {"too many", 3, DISPATCH_METHOD, {custom, custom}, DISP_E_BADPARAMCOUNT, 99},
      {"no object",
       1,
       DISPATCH_METHOD,
       {custom, nothing, Number(0), Number(5)},
       DISP_E_TYPEMISMATCH,
       3},
      {"no number", 2, DISPATCH_METHOD, {custom, text}, DISP_E_TYPEMISMATCH, 1},
      {"custom left out", 2, DISPATCH_METHOD, {Number(0)}, S_OK, 99},
      {"odd custom", 4, DISPATCH_METHOD, {text}, S_OK, 99},
      {"no custom at all", 5, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {}, S_OK, 99},
  };
  for (Case c : cases) {
    DISPPARAMS parameters{c.reversed.data(), nullptr, static_cast<UINT>(c.reversed.size()), 0};
    UINT bad = 99;
    const HRESULT result =
        connect->Invoke(c.id, GUID{}, 0, c.flags, &parameters, nullptr, nullptr, &bad);
    EXPECT_EQ(c.expected, result) << c.name;
    if (FAILED(result)) {
      EXPECT_EQ(c.badArgument, bad) << c.name;
    }
  }
  SysFreeString(text.bstrVal);
}

TEST_F(Server, ConnectsAndShutsDownByInvoke) {
  FakeApplication host;
  const ComPtr<IDTExtensibility2> connect = NewConnect();
  const auto call = [&](DISPID id, std::vector<VARIANT> reversed) {
    DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    EXPECT_EQ(S_OK, connect->Invoke(id, GUID{}, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr,
                                    nullptr));
  };
  VARIANT application = Object(&host.application), mode = Number(1);
  call(1, {VARIANT{}, Object(nullptr), ByReference(mode), ByReference(application)});
  EXPECT_EQ(2u, host.Sinks());
  EXPECT_GT(host.nameSpace.References(), 1u);
  call(4, {VARIANT{}});
  call(3, {VARIANT{}});
  call(5, {VARIANT{}});
  call(2, {VARIANT{}, Number(0)});
  EXPECT_EQ(0u, host.Sinks());
  host.ExpectLetGo();
}

TEST_F(Server, ConnectingTwiceSubscribesOnce) {
  FakeApplication host;
  const ComPtr<IDTExtensibility2> connect = NewConnect();
  ConnectTo(*connect.Get(), host);
  ConnectTo(*connect.Get(), host);
  EXPECT_EQ(2u, host.Sinks());
  ShutDown(*connect.Get());
  ShutDown(*connect.Get());
  host.ExpectLetGo();
}

TEST_F(Server, MayBeUnloadedOnlyWhenNothingIsHeld) {
  EXPECT_EQ(S_OK, module_.CanUnloadNow());
  FakeApplication host;
  {
    const ComPtr<IClassFactory> factory = Factory();
    EXPECT_EQ(S_FALSE, module_.CanUnloadNow()) << "class factory";
    factory->LockServer(TRUE);
  }
  EXPECT_EQ(S_FALSE, module_.CanUnloadNow()) << "lock";
  Factory()->LockServer(FALSE);
  EXPECT_EQ(S_OK, module_.CanUnloadNow());

  ComPtr<IDTExtensibility2> connect = NewConnect();
  EXPECT_EQ(S_FALSE, module_.CanUnloadNow()) << "Connect";
  ConnectTo(*connect.Get(), host);
  connect.Reset();
  EXPECT_EQ(S_FALSE, module_.CanUnloadNow()) << "the tracker holds the application";
  EXPECT_EQ(2u, host.Sinks());

  connect = NewConnect();
  EXPECT_EQ(S_OK, connect->OnBeginShutdown(nullptr));
  connect.Reset();
  EXPECT_EQ(S_OK, module_.CanUnloadNow()) << "the controller alone is idle";
}

// COM itself loads and unloads it, by its registration.
TEST(RegisteredServer, IsLoadedByProgIdAndUnloaded) {
  const Apartment apartment;
  ASSERT_EQ(S_OK, ModuleUnderTest().RegisterServer());
  ASSERT_EQ(nullptr, GetModuleHandleW(L"Postrove09.dll"));
  CLSID clsid{};
  const HRESULT found = CLSIDFromProgID(L"Postrove.Connect", &clsid);
  if (FAILED(found)) {
    ModuleUnderTest().UnregisterServer();
    GTEST_SKIP() << "COM does not read this user's classes here";
  }
  FakeApplication host;
  {
    ComPtr<IDTExtensibility2> connect;
    ASSERT_EQ(S_OK, CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&connect)));
    EXPECT_EQ(S_OK, connect->OnConnection(&host.application, ext_cm_Startup, nullptr, nullptr));
    EXPECT_EQ(S_OK, connect->OnDisconnection(ext_dm_UserClosed, nullptr));
    connect.Reset();
    CoFreeUnusedLibrariesEx(0, 0);
    EXPECT_NE(nullptr, GetModuleHandleW(L"Postrove09.dll")) << "unloaded under its event sinks";

    ASSERT_EQ(S_OK, CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&connect)));
    EXPECT_EQ(S_OK, connect->OnBeginShutdown(nullptr));
    EXPECT_EQ(S_OK, connect->OnDisconnection(ext_dm_HostShutdown, nullptr));
  }
  host.ExpectLetGo();
  CoFreeUnusedLibrariesEx(0, 0);
  EXPECT_EQ(nullptr, GetModuleHandleW(L"Postrove09.dll"));
  EXPECT_EQ(S_OK, ModuleUnderTest().UnregisterServer());
  EXPECT_TRUE(FAILED(CLSIDFromProgID(L"Postrove.Connect", &clsid)));
}

TEST(VersionResource, NamesProductMakerAndVersion) {
  const std::wstring path = ModuleUnderTest::Path();
  DWORD unused = 0;
  std::vector<BYTE> data(GetFileVersionInfoSizeW(path.c_str(), &unused));
  ASSERT_FALSE(data.empty());
  ASSERT_TRUE(GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(data.size()), data.data()));
  void* found = nullptr;
  UINT length = 0;
  ASSERT_TRUE(VerQueryValueW(data.data(), L"\\", &found, &length));
  const auto* fixed = static_cast<const VS_FIXEDFILEINFO*>(found);
  EXPECT_EQ(std::to_string(HIWORD(fixed->dwFileVersionMS)) + "." +
                std::to_string(LOWORD(fixed->dwFileVersionMS)) + "." +
                std::to_string(HIWORD(fixed->dwFileVersionLS)),
            POSTROVE_VERSION);
  EXPECT_EQ(DWORD{VFT_DLL}, fixed->dwFileType);

  const std::wstring version(POSTROVE_VERSION, POSTROVE_VERSION + sizeof POSTROVE_VERSION - 1);
  const std::pair<const wchar_t*, std::wstring> texts[] = {{L"CompanyName", L"Marrow Technologies"},
                                                           {L"ProductName", L"Postrove"},
                                                           {L"OriginalFilename", L"Postrove09.dll"},
                                                           {L"FileVersion", version},
                                                           {L"ProductVersion", version}};
  for (const auto& [name, expected] : texts) {
    const std::wstring query = std::wstring(L"\\StringFileInfo\\040904B0\\") + name;
    ASSERT_TRUE(VerQueryValueW(data.data(), query.c_str(), &found, &length));
    EXPECT_EQ(expected, static_cast<const wchar_t*>(found));
  }
}

}  // namespace
