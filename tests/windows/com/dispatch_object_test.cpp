#include "outlook/com/dispatch_object.h"

#include <gmock/gmock.h>

#include "fake_server.h"
#include "outlook/com/live_object.h"
#include "shared/error.h"
#include "shared/win32/system_error.h"

namespace postrove {
namespace {

using office::Arguments;
using office::Missing;
using office::ObjectPtr;
using office::Value;

// What a call brought, arguments in the order of the array.
struct Seen {
  WORD flags = 0;
  std::vector<VARTYPE> types;
  std::vector<DISPID> names;
  bool wantsResult = false;
};

FakeServer::Member Record(Seen& seen) {
  return [&seen](WORD flags, DISPPARAMS& parameters, VARIANT* result, EXCEPINFO*) {
    seen = {flags,
            {},
            {parameters.rgdispidNamedArgs, parameters.rgdispidNamedArgs + parameters.cNamedArgs},
            result != nullptr};
    for (UINT i = 0; i < parameters.cArgs; ++i) seen.types.push_back(parameters.rgvarg[i].vt);
    return S_OK;
  };
}

Error ErrorOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const Error& error) {
    return error;
  }
  ADD_FAILURE() << "nothing was thrown";
  return {0, L"", L""};
}

TEST(DispatchObject, ArgumentsTravelInReverseWithTheirTypes) {
  FakeServer server;
  Seen seen;
  std::wstring text;
  server.members[L"Add"] = [&](WORD flags, DISPPARAMS& parameters, VARIANT* result,
                               EXCEPINFO* exception) {
    EXPECT_EQ(1, parameters.rgvarg[5].lVal);
    EXPECT_EQ(DISP_E_PARAMNOTFOUND, parameters.rgvarg[4].scode);
    text.assign(parameters.rgvarg[3].bstrVal, SysStringLen(parameters.rgvarg[3].bstrVal));
    EXPECT_EQ(VARIANT_TRUE, parameters.rgvarg[2].boolVal);
    EXPECT_EQ(2.5, parameters.rgvarg[1].dblVal);
    EXPECT_EQ(nullptr, parameters.rgvarg[0].pdispVal);
    return Record(seen)(flags, parameters, result, exception);
  };
  const std::wstring withNull(L"a\0b", 3);
  com::WrapDispatch(&server)->Call(L"Add", {1, Missing{}, withNull, true, 2.5, ObjectPtr()});
  EXPECT_EQ(DISPATCH_METHOD, seen.flags);
  EXPECT_THAT(seen.types,
              testing::ElementsAre(VT_DISPATCH, VT_R8, VT_BOOL, VT_BSTR, VT_ERROR, VT_I4));
  EXPECT_TRUE(seen.names.empty());
  EXPECT_EQ(withNull, text);
}

TEST(DispatchObject, GetAndPutSayWhatTheyAre) {
  FakeServer server;
  Seen seen;
  server.members[L"Item"] = Record(seen);
  const ObjectPtr object = com::WrapDispatch(&server);

  object->Get(L"Item", {});
  EXPECT_EQ(DISPATCH_PROPERTYGET, seen.flags);
  object->Get(L"Item", {std::wstring(L"Standard")});
  EXPECT_EQ(DISPATCH_PROPERTYGET | DISPATCH_METHOD, seen.flags);
  EXPECT_TRUE(seen.names.empty());

  object->Put(L"Item", true);
  EXPECT_EQ(DISPATCH_PROPERTYPUT, seen.flags);
  EXPECT_THAT(seen.names, testing::ElementsAre(DISPID_PROPERTYPUT));
  EXPECT_THAT(seen.types, testing::ElementsAre(VT_BOOL));
  EXPECT_FALSE(seen.wantsResult);
  object->Put(L"Item", object);
  EXPECT_EQ(DISPATCH_PROPERTYPUTREF, seen.flags);
}

TEST(DispatchObject, ResultsBecomeValues) {
  VARIANT_BOOL boolean = VARIANT_TRUE;
  BSTR byRefText = SysAllocString(L"by reference");
  VARIANT inner{};
  inner.vt = VT_I2;
  inner.iVal = -7;
  struct Case {
    const char* name;
    std::function<void(VARIANT&)> fill;
    Value expected;
  };
  const Case cases[] = {
      {"Empty", [](VARIANT&) {}, {}},
      {"Null", [](VARIANT& v) { v.vt = VT_NULL; }, {}},
      {"I1",
       [](VARIANT& v) {
         v.vt = VT_I1;
         v.cVal = -1;
       },
       -1},
      {"UI1",
       [](VARIANT& v) {
         v.vt = VT_UI1;
         v.bVal = 200;
       },
       200},
      {"I2",
       [](VARIANT& v) {
         v.vt = VT_I2;
         v.iVal = -2;
       },
       -2},
      {"I4",
       [](VARIANT& v) {
         v.vt = VT_I4;
         v.lVal = 43;
       },
       43},
      {"Int",
       [](VARIANT& v) {
         v.vt = VT_INT;
         v.intVal = 9;
       },
       9},
      {"UI4 that fits",
       [](VARIANT& v) {
         v.vt = VT_UI4;
         v.ulVal = 5;
       },
       5},
      {"UI4 too large",
       [](VARIANT& v) {
         v.vt = VT_UI4;
         v.ulVal = 4000000000u;
       },
       4000000000.0},
      {"I8 too large",
       [](VARIANT& v) {
         v.vt = VT_I8;
         v.llVal = 1LL << 40;
       },
       1099511627776.0},
      {"R4",
       [](VARIANT& v) {
         v.vt = VT_R4;
         v.fltVal = 0.5f;
       },
       0.5},
      {"R8",
       [](VARIANT& v) {
         v.vt = VT_R8;
         v.dblVal = 11.25;
       },
       11.25},
      {"Currency",
       [](VARIANT& v) {
         v.vt = VT_CY;
         v.cyVal.int64 = 12500;
       },
       1.25},
      {"Date",
       [](VARIANT& v) {
         v.vt = VT_DATE;
         v.date = 36526.5;
       },
       36526.5},
      {"any non-zero Boolean",
       [](VARIANT& v) {
         v.vt = VT_BOOL;
         v.boolVal = 1;
       },
       true},
      {"text",
       [](VARIANT& v) {
         v.vt = VT_BSTR;
         v.bstrVal = SysAllocString(L"9.0");
       },
       std::wstring(L"9.0")},
      {"null text",
       [](VARIANT& v) {
         v.vt = VT_BSTR;
         v.bstrVal = nullptr;
       },
       std::wstring()},
      {"Nothing",
       [](VARIANT& v) {
         v.vt = VT_DISPATCH;
         v.pdispVal = nullptr;
       },
       ObjectPtr()},
      {"unknown Nothing",
       [](VARIANT& v) {
         v.vt = VT_UNKNOWN;
         v.punkVal = nullptr;
       },
       ObjectPtr()},
      {"missing",
       [](VARIANT& v) {
         v.vt = VT_ERROR;
         v.scode = DISP_E_PARAMNOTFOUND;
       },
       Missing{}},
      {"Boolean by reference",
       [&](VARIANT& v) {
         v.vt = VT_BYREF | VT_BOOL;
         v.pboolVal = &boolean;
       },
       true},
      {"text by reference",
       [&](VARIANT& v) {
         v.vt = VT_BYREF | VT_BSTR;
         v.pbstrVal = &byRefText;
       },
       std::wstring(L"by reference")},
      {"variant by reference",
       [&](VARIANT& v) {
         v.vt = VT_BYREF | VT_VARIANT;
         v.pvarVal = &inner;
       },
       -7},
  };
  for (const Case& c : cases) {
    FakeServer server;
    server.members[L"Value"] = [&](WORD, DISPPARAMS&, VARIANT* result, EXCEPINFO*) {
      c.fill(*result);
      return S_OK;
    };
    EXPECT_EQ(c.expected, com::WrapDispatch(&server)->Get(L"Value", {})) << c.name;
  }
  SysFreeString(byRefText);
}

TEST(DispatchObject, AResultThatIsNoValueNamesTheMember) {
  FakeServer server;
  server.members[L"Names"] = [](WORD, DISPPARAMS&, VARIANT* result, EXCEPINFO*) {
    result->vt = VT_ARRAY | VT_BSTR;
    result->parray = SafeArrayCreateVector(VT_BSTR, 0, 1);
    return S_OK;
  };
  const Error error = ErrorOf([&] { com::WrapDispatch(&server)->Get(L"Names", {}); });
  EXPECT_EQ(kTypeMismatch, error.Number());
  EXPECT_EQ(L"Names", error.Source());
}

HRESULT STDAPICALLTYPE FillInLater(EXCEPINFO* exception) {
  exception->scode = E_ACCESSDENIED;
  exception->bstrDescription = SysAllocString(L"said later");
  return S_OK;
}

TEST(DispatchObject, FailuresBecomeErrors) {
  const HRESULT wrongName = 0x800300FC;  // STG_E_INVALIDNAME
  struct Case {
    const char* name;
    HRESULT result;
    std::function<void(EXCEPINFO&)> fill;
    HRESULT number;
    std::wstring description;
  };
  const Case cases[] = {
      {"plain HRESULT", E_ACCESSDENIED, nullptr, E_ACCESSDENIED,
       SystemMessage(static_cast<DWORD>(E_ACCESSDENIED))},
      {"the server's text", DISP_E_EXCEPTION,
       [&](EXCEPINFO& e) {
         e.scode = wrongName;
         e.bstrDescription = SysAllocString(L"The path is not right.");
         e.bstrSource = SysAllocString(L"Host");
         e.bstrHelpFile = SysAllocString(L"host.hlp");
       },
       wrongName, L"The path is not right."},
      {"no text", DISP_E_EXCEPTION, [](EXCEPINFO& e) { e.scode = E_OUTOFMEMORY; }, E_OUTOFMEMORY,
       SystemMessage(static_cast<DWORD>(E_OUTOFMEMORY))},
      {"a short number", DISP_E_EXCEPTION,
       [](EXCEPINFO& e) {
         e.wCode = 91;
         e.bstrDescription = SysAllocString(L"Object variable not set");
       },
       static_cast<HRESULT>(0x800A005B), L"Object variable not set"},
      {"filled in later", DISP_E_EXCEPTION, [](EXCEPINFO& e) { e.pfnDeferredFillIn = FillInLater; },
       E_ACCESSDENIED, L"said later"},
      {"nothing at all", DISP_E_EXCEPTION, nullptr, DISP_E_EXCEPTION,
       SystemMessage(static_cast<DWORD>(DISP_E_EXCEPTION))},
  };
  for (const Case& c : cases) {
    FakeServer server;
    server.members[L"SaveAs"] = [&](WORD, DISPPARAMS&, VARIANT*, EXCEPINFO* exception) {
      if (c.fill) c.fill(*exception);
      return c.result;
    };
    const Error error = ErrorOf([&] { com::WrapDispatch(&server)->Call(L"SaveAs", {}); });
    EXPECT_EQ(c.number, error.Number()) << c.name;
    EXPECT_EQ(L"SaveAs", error.Source()) << c.name;
    EXPECT_EQ(c.description, error.Description()) << c.name;
    EXPECT_FALSE(error.Description().empty()) << c.name;
  }

  FakeServer server;
  const Error error = ErrorOf([&] { com::WrapDispatch(&server)->Get(L"Inspectors", {}); });
  EXPECT_EQ(DISP_E_UNKNOWNNAME, error.Number());
  EXPECT_EQ(L"Inspectors", error.Source());
}

TEST(DispatchObject, AnErrorWithoutSystemTextShowsItsNumber) {
  EXPECT_EQ(L"Error 0xA0001234", SystemMessage(0xA0001234));
}

TEST(DispatchObject, ObjectsTravelBothWaysAndAreLetGo) {
  const long before = com::LiveObject::Count();
  FakeServer server, child;
  IDispatch* seen = nullptr;
  server.members[L"Child"] = FakeServer::Returns(child);
  server.members[L"Unknown"] = [&](WORD, DISPPARAMS&, VARIANT* result, EXCEPINFO*) {
    result->vt = VT_UNKNOWN;
    result->punkVal = child.Dispatch();
    child.AddRef();
    return S_OK;
  };
  server.members[L"Take"] = [&](WORD, DISPPARAMS& parameters, VARIANT*, EXCEPINFO*) {
    seen = parameters.rgvarg[0].pdispVal;
    return S_OK;
  };
  {
    const ObjectPtr object = com::WrapDispatch(&server);
    object->Call(L"Take", {object->Get(L"Child", {})});
    EXPECT_EQ(child.Dispatch(), seen);
    seen = nullptr;
    object->Call(L"Take", {object->Get(L"Unknown", {})});
    EXPECT_EQ(child.Dispatch(), seen);
    EXPECT_EQ(before + 1, com::LiveObject::Count());
  }
  EXPECT_EQ(1u, server.References());
  EXPECT_EQ(1u, child.References());
  EXPECT_EQ(before, com::LiveObject::Count());
  EXPECT_EQ(nullptr, com::WrapDispatch(nullptr));
}

TEST(DispatchObject, AnotherInterfaceIsCalledOnItsOwnPointer) {
  FakeServer control, button;
  control.other = &button;
  control.otherInterface = {0x000C030E, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
  Seen seen;
  button.members[L"Style"] = Record(seen);
  const office::Guid buttonInterface{0x000C030E, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
  {
    com::WrapDispatch(&control)->As(buttonInterface)->Put(L"Style", 3);
    EXPECT_EQ(DISPATCH_PROPERTYPUT, seen.flags);
  }
  const Error error = ErrorOf([&] { com::WrapDispatch(&button)->As(buttonInterface); });
  EXPECT_EQ(E_NOINTERFACE, error.Number());
  EXPECT_EQ(1u, control.References());
  EXPECT_EQ(1u, button.References());
}

TEST(DispatchObject, ForeignObjectsAreNoArguments) {
  class Foreign : public office::Object {
    Value Get(const wchar_t*, const Arguments&) override { return {}; }
    void Put(const wchar_t*, const Value&) override {}
    Value Call(const wchar_t*, const Arguments&) override { return {}; }
    ObjectPtr As(const office::Guid&) override { return nullptr; }
    office::Subscription Subscribe(const office::Guid&, office::EventHandler) override {
      return {};
    }
  };
  FakeServer server;
  Seen seen;
  server.members[L"Take"] = Record(seen);
  const Error error = ErrorOf(
      [&] { com::WrapDispatch(&server)->Call(L"Take", {Value(std::make_shared<Foreign>())}); });
  EXPECT_EQ(kTypeMismatch, error.Number());
  EXPECT_EQ(0, seen.flags);
}

}  // namespace
}  // namespace postrove
