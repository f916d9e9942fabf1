// The stand-in Outlook is strict where the real one is: a client that breaks a rule must fail here.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "outlook/host.h"
#include "outlook/ids.h"
#include "outlook/probe.h"

namespace standin {
namespace {

using namespace probe;
using ::testing::ElementsAre;

// A sink that counts its references only.
struct CountingSink final : IDispatch {
  ULONG references = 0;
  virtual ~CountingSink() = default;
  STDMETHODIMP QueryInterface(REFIID, void** object) override {
    *object = this;
    ++references;
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
  STDMETHODIMP_(ULONG) Release() override { return --references; }
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                      UINT*) override {
    return S_OK;
  }
};

TEST(CallingRules, BrokenCallsFailWithTheRightCode) {
  Host host;
  host.Open(SampleMessage());
  const ComPtr<IDispatch> application = host.Application();
  const ComPtr<IDispatch> item = CurrentItem(host);
  constexpr WORD kGet = DISPATCH_PROPERTYGET, kPut = DISPATCH_PROPERTYPUT, kCall = DISPATCH_METHOD;
  struct Case {
    const char* name;
    const ComPtr<IDispatch>& object;
    DISPID id;
    WORD flags;
    std::vector<Variant> arguments;
    HRESULT expected;
  };
  const Case cases[] = {
      {"unknown number", item, 12345, kGet, {}, DISP_E_MEMBERNOTFOUND},
      {"get called as a method", item, 61502, kCall, {}, DISP_E_MEMBERNOTFOUND},
      {"method called as a get", application, 274, kGet, {}, DISP_E_MEMBERNOTFOUND},
      {"put of a read-only property", item, 62466, kPut, List(Variant::Bool(true)),
       DISP_E_MEMBERNOTFOUND},
      {"argument to a method without", item, 61557, kCall, List(Variant::Long(1)),
       DISP_E_BADPARAMCOUNT},
      {"required argument not given", item, 61521, kCall, {}, DISP_E_BADPARAMCOUNT},
      {"required argument left out", item, 61521, kCall, List(Variant::Missing()),
       DISP_E_PARAMNOTOPTIONAL},
      {"text where a number belongs", item, 61475, kCall, List(Variant::Text(L"now")),
       DISP_E_TYPEMISMATCH},
      {"number where a flag belongs", item, 61468, kPut, List(Variant::Text(L"perhaps")),
       DISP_E_TYPEMISMATCH},
      {"number as text converts", item, 55, kPut, List(Variant::Long(7)), S_OK},
      {"either kind of call is allowed", application, 274, kGet | kCall, {}, S_OK},
  };
  for (const Case& c : cases) {
    std::vector<Variant> arguments;
    for (const Variant& one : c.arguments) arguments.push_back(Variant::Copy(one.Get()));
    EXPECT_EQ(Invoke(c.object, c.id, c.flags, std::move(arguments)).hr, c.expected) << c.name;
  }
  EXPECT_EQ(Get(item, L"Subjct").hr, DISP_E_UNKNOWNNAME);
  EXPECT_EQ(Get(item, L"sUBJECT").Text(), L"7");
}

TEST(CallingRules, NamedArgumentsAreForPutsOnly) {
  Host host;
  host.Open(SampleMessage());
  const ComPtr<IDispatch> item = CurrentItem(host);
  Variant subject = Variant::Text(L"Changed");
  VARIANT raw = subject.Get();
  DISPID name = DISPID_PROPERTYPUT;
  DISPPARAMS unnamed = {&raw, nullptr, 1, 0};
  DISPPARAMS named = {&raw, &name, 1, 1};
  const auto invoke = [&](DISPID id, WORD flags, DISPPARAMS& given, const GUID& reserved) {
    return item->Invoke(id, reserved, 0, flags, &given, nullptr, nullptr, nullptr);
  };
  EXPECT_EQ(invoke(55, DISPATCH_PROPERTYPUT, unnamed, GUID{}), DISP_E_PARAMNOTFOUND);
  EXPECT_EQ(invoke(61521, DISPATCH_METHOD, named, GUID{}), DISP_E_NONAMEDARGS);
  EXPECT_EQ(invoke(55, DISPATCH_PROPERTYPUT, named, kMailItemId), DISP_E_UNKNOWNINTERFACE);
  EXPECT_EQ(Get(item, L"Subject").Text(), L"Site report");
}

TEST(CallingRules, ANumberMeansSomethingWithItsInterfaceOnly) {
  Host host;
  host.Open(SampleMessage());
  const ComPtr<IDispatch> control = AddButton(host, L"T");
  const ComPtr<IDispatch> button = As(control, kCommandBarButtonId);
  constexpr DISPID kStyle = 1610940426;
  constexpr WORD kPut = DISPATCH_PROPERTYPUT;
  EXPECT_EQ(Invoke(control, kStyle, kPut, List(Variant::Long(3))).hr, DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(Put(control, L"FaceId", Variant::Long(325)).hr, DISP_E_UNKNOWNNAME);
  EXPECT_EQ(Invoke(button, kStyle, kPut, List(Variant::Long(3))).hr, S_OK);
  EXPECT_EQ(Get(button, L"Style").Long(), 3);
  EXPECT_EQ(Put(button, L"Caption", Variant::Text(L"Both")).hr, S_OK);
  EXPECT_EQ(Get(control, L"Caption").Text(), L"Both");
  EXPECT_FALSE(As(control, kMailItemId));
}

TEST(Watching, AHeldObjectIsNamed) {
  Host host;
  host.Open(SampleMessage());
  ComPtr<IDispatch> item = CurrentItem(host);
  const ComPtr<IDispatch> again = item;
  host.Quit();
  ASSERT_EQ(host.Leaks().size(), 1u);
  EXPECT_EQ(host.Leaks()[0].name, L"MailItem");
  EXPECT_EQ(host.Leaks()[0].references, 2u);
}

// Outlook raises nothing through an object that was let go of, subscribed or not.
TEST(Watching, ASinkEndsWithTheObjectItWasGivenTo) {
  Host host;
  Inspector& inspector = host.Open(SampleMessage());
  std::vector<std::wstring> log;
  const Listener other(CurrentItem(host), kItemEventsId, L"Other", log);
  ComPtr<IDispatch> item = CurrentItem(host);
  ComPtr<IConnectionPointContainer> container;
  ComPtr<IConnectionPoint> point;
  ASSERT_EQ(item.As(&container), S_OK);
  ASSERT_EQ(container->FindConnectionPoint(kItemEventsId, &point), S_OK);
  DWORD cookie = 0;
  CountingSink sink;
  ASSERT_EQ(point->Advise(&sink, &cookie), S_OK);
  point.Reset();
  container.Reset();
  item.Reset();
  EXPECT_EQ(sink.references, 0u);
  host.Close(inspector);
  EXPECT_THAT(log, ElementsAre(L"Other.61444"));
}

TEST(CommandBars, AClickReachesEverySinkOfTheTag) {
  Host host;
  std::vector<std::wstring> log;
  Inspector& first = host.Open(SampleMessage());
  const ComPtr<IDispatch> one = AddButton(host, L"T");
  Inspector& second = host.Open(SampleMessage());
  const ComPtr<IDispatch> two = AddButton(host, L"T");
  const ComPtr<IDispatch> other = AddButton(host, L"Other");
  Listener firstSink(one, kCommandBarButtonEventsId, L"One", log);
  const Listener secondSink(two, kCommandBarButtonEventsId, L"Two", log);
  const Listener otherSink(other, kCommandBarButtonEventsId, L"Other", log);
  firstSink.during = [](DISPID, const DISPPARAMS& given) {
    ASSERT_EQ(given.cArgs, 2u);
    EXPECT_EQ(V_VT(&given.rgvarg[0]), VT_BYREF | VT_BOOL);
    EXPECT_EQ(Get(ComPtr<IDispatch>(given.rgvarg[1].pdispVal), L"FaceId").hr, S_OK);
  };
  EXPECT_TRUE(host.Click(second, L"T"));
  EXPECT_THAT(log, ElementsAre(L"One.1", L"Two.1"));
  log.clear();
  host.Close(first);
  EXPECT_TRUE(host.Click(second, L"T"));
  EXPECT_THAT(log, ElementsAre(L"Two.1"));
  Call(two, L"Delete");
  EXPECT_FALSE(host.Click(second, L"T"));
}

}  // namespace
}  // namespace standin
