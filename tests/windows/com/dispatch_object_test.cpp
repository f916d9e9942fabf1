#include "outlook/com/dispatch_object.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "fake_server.h"
#include "outlook/com/live_object.h"
#include "shared/error.h"
#include "shared/win32/system_error.h"

namespace postrove {
namespace {

using office::Missing;
using office::ObjectPtr;
using office::Value;

Error ErrorOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const Error& error) {
    return error;
  }
  ADD_FAILURE() << "nothing was thrown";
  return {0, L"", L""};
}

VARIANT Empty(VARTYPE type) {
  VARIANT variant{};
  variant.vt = type;
  return variant;
}

template <typename Content>
VARIANT Filled(VARTYPE type, Content VARIANT::*member, std::type_identity_t<Content> content) {
  VARIANT variant = Empty(type);
  variant.*member = content;
  return variant;
}

TEST(DispatchObject, ResultsBecomeValues) {
  VARIANT_BOOL boolean = VARIANT_TRUE;
  BSTR byRefText = SysAllocString(L"by reference");
  VARIANT inner = Filled(VT_I2, &VARIANT::iVal, -7);
  const struct {
    const char* name;
    VARIANT result;
    Value expected;
  } cases[] = {
      {"Empty", Empty(VT_EMPTY), {}},
      {"Null", Empty(VT_NULL), {}},
      {"I4", Filled(VT_I4, &VARIANT::lVal, 43), 43},
      {"UI4 too large", Filled(VT_UI4, &VARIANT::ulVal, 4000000000u), 4000000000.0},
      {"I8 too large", Filled(VT_I8, &VARIANT::llVal, 1LL << 40), 1099511627776.0},
      {"R8", Filled(VT_R8, &VARIANT::dblVal, 11.25), 11.25},
      {"any non-zero Boolean", Filled(VT_BOOL, &VARIANT::boolVal, 1), true},
      {"text", Filled(VT_BSTR, &VARIANT::bstrVal, SysAllocString(L"9.0")), std::wstring(L"9.0")},
      {"null text", Empty(VT_BSTR), std::wstring()},
      {"Nothing", Empty(VT_DISPATCH), ObjectPtr()},
      {"unknown Nothing", Empty(VT_UNKNOWN), ObjectPtr()},
      {"missing", Filled(VT_ERROR, &VARIANT::scode, DISP_E_PARAMNOTFOUND), Missing{}},
      {"Boolean by reference", Filled(VT_BYREF | VT_BOOL, &VARIANT::pboolVal, &boolean), true},
      {"text by reference", Filled(VT_BYREF | VT_BSTR, &VARIANT::pbstrVal, &byRefText),
       std::wstring(L"by reference")},
      {"variant by reference", Filled(VT_BYREF | VT_VARIANT, &VARIANT::pvarVal, &inner), -7},
  };
  for (const auto& c : cases) {
    FakeServer server;
    server.members[L"Value"] = [&](WORD, DISPPARAMS&, VARIANT* result, EXCEPINFO*) {
      *result = c.result;
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
  const struct {
    HRESULT result;
    SCODE scode;
    WORD code;
    const wchar_t* text;
    HRESULT number;
    std::wstring description;
    bool later = false;  // filled in when it is asked for
  } cases[] = {
      {E_ACCESSDENIED, 0, 0, nullptr, E_ACCESSDENIED,
       SystemMessage(static_cast<DWORD>(E_ACCESSDENIED))},
      {DISP_E_EXCEPTION, wrongName, 0, L"The path is not right.", wrongName,
       L"The path is not right."},
      {DISP_E_EXCEPTION, static_cast<SCODE>(0xA7270005), 0, nullptr,
       static_cast<HRESULT>(0xA7270005), SystemMessage(0x80070005)},  // bits left in it
      {DISP_E_EXCEPTION, 0, 91, L"Not set", static_cast<HRESULT>(0x800A005B), L"Not set"},
      {DISP_E_EXCEPTION, 0, 0, nullptr, E_ACCESSDENIED, L"said later", true},
      {DISP_E_EXCEPTION, 0, 0, nullptr, DISP_E_EXCEPTION,
       SystemMessage(static_cast<DWORD>(DISP_E_EXCEPTION))},
      {static_cast<HRESULT>(0xA0001234), 0, 0, nullptr, static_cast<HRESULT>(0xA0001234),
       L"Error 0xA0001234"},
  };
  for (const auto& c : cases) {
    FakeServer server;
    server.members[L"SaveAs"] = [&](WORD, DISPPARAMS&, VARIANT*, EXCEPINFO* exception) {
      exception->scode = c.scode;
      exception->wCode = c.code;
      if (c.text) exception->bstrDescription = SysAllocString(c.text);
      if (c.later) exception->pfnDeferredFillIn = FillInLater;
      return c.result;
    };
    const Error error = ErrorOf([&] { com::WrapDispatch(&server)->Call(L"SaveAs", {}); });
    EXPECT_EQ(c.number, error.Number());
    EXPECT_EQ(L"SaveAs", error.Source());
    EXPECT_EQ(c.description, error.Description());
  }

  FakeServer server;
  const Error error = ErrorOf([&] { com::WrapDispatch(&server)->Get(L"Inspectors", {}); });
  EXPECT_EQ(DISP_E_UNKNOWNNAME, error.Number());
  EXPECT_EQ(L"Inspectors", error.Source());
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

}  // namespace
}  // namespace postrove
