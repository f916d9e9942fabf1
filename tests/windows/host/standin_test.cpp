// The stand-in Outlook is strict where the real one is: a client that breaks a rule must fail here.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "outlook/host.h"
#include "outlook/ids.h"
#include "outlook/items.h"
#include "probe.h"

namespace standin {
namespace {

using namespace probe;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr HRESULT kItemGone = static_cast<HRESULT>(0x8004010A);

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

TEST(Versions, MembersEditorsAndTextsDiffer) {
  struct Case {
    int version;
    Editor editor;
    long editorType;
    bool word, bodyFormat, senderAddress;
    const wchar_t* text;
  };
  const Case cases[] = {
      {9, Editor::kText, 1, false, false, false, L"9.0.0.2711"},
      {9, Editor::kHtml, 2, false, false, false, L"9.0.0.2711"},
      {11, Editor::kRichText, 3, false, true, true, L"11.0.8173"},
      {12, Editor::kRichText, 4, true, true, true, L"12.0.6739.5000"},
      {10, Editor::kWord, 4, true, true, false, L"10.0.0.2627"},
      {11, Editor::kText, 1, false, true, true, L"11.0.8173"},
      {12, Editor::kText, 4, true, true, true, L"12.0.6739.5000"},
      {16, Editor::kHtml, 4, true, true, true, L"16.0.0.4266"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.version << ", editor " << static_cast<int>(c.editor));
    Options options;
    options.version = c.version;
    Host host(options);
    host.Open(SampleMessage(), true, ItemKind::kMail, c.editor);
    const ComPtr<IDispatch> inspector = Call(host.Application(), L"ActiveInspector").Object();
    const ComPtr<IDispatch> item = CurrentItem(host);
    EXPECT_EQ(Get(host.Application(), L"Version").Text(), c.text);
    EXPECT_EQ(Get(inspector, L"EditorType").Long(), c.editorType);
    EXPECT_EQ(Call(inspector, L"IsWordMail").Bool(), c.word);
    EXPECT_EQ(Get(item, L"BodyFormat").hr == S_OK, c.bodyFormat);
    EXPECT_EQ(Invoke(item, 3103, DISPATCH_PROPERTYGET).hr,
              c.senderAddress ? S_OK : DISP_E_MEMBERNOTFOUND);
  }
}

TEST(Items, AnUnsentItemIsGoneAfterSend) {
  Host host;
  Inspector& inspector = host.Open(SampleMessage(), false);
  const ComPtr<IDispatch> shown = Call(host.Application(), L"ActiveInspector").Object();
  const ComPtr<IDispatch> item = CurrentItem(host);
  std::vector<std::wstring> log;
  const Listener itemEvents(item, kItemEventsId, L"Item", log);
  const Listener inspectorEvents(shown, kInspectorEventsId, L"Inspector", log);
  ASSERT_EQ(Call(item, L"Send").hr, S_OK);

  EXPECT_THAT(log, ElementsAre(L"Item.61445", L"Item.61444", L"Inspector.61448"));
  EXPECT_FALSE(inspector.IsOpen());
  EXPECT_EQ(inspector.Window(), nullptr);
  EXPECT_FALSE(Call(host.Application(), L"ActiveInspector").Object());
  for (const wchar_t* member : {L"Subject", L"Class", L"Sent", L"Attachments", L"HTMLBody"}) {
    EXPECT_EQ(Get(item, member).code, kItemGone) << testing::PrintToString(member);
  }
  EXPECT_EQ(Call(item, L"Send").code, kItemGone);
  EXPECT_EQ(Put(item, L"Body", Variant::Text(L"late")).code, kItemGone);
  EXPECT_EQ(Get(shown, L"CommandBars").hr, DISP_E_EXCEPTION);
  ASSERT_EQ(host.SentMessages().size(), 1u);
  EXPECT_EQ(host.SentMessages()[0].subject, L"Site report");
}

TEST(Inspectors, OpenAnnouncesAndActivates) {
  Host host;
  std::vector<std::wstring> log;
  ComPtr<IDispatch> announced;
  Listener inspectors(Get(host.Application(), L"Inspectors").Object(), kInspectorsEventsId,
                      L"Inspectors", log);
  std::unique_ptr<Listener> first;
  inspectors.during = [&](DISPID, const DISPPARAMS& given) {
    announced = given.rgvarg[0].pdispVal;
    EXPECT_TRUE(Get(announced, L"CurrentItem").Object());
    if (!first) first = std::make_unique<Listener>(announced, kInspectorEventsId, L"First", log);
  };
  Inspector& one = host.Open(SampleMessage());
  host.Open(SampleMessage(), true, ItemKind::kAppointment);
  EXPECT_EQ(Get(Get(announced, L"CurrentItem").Object(), L"Class").Long(), 26);
  EXPECT_EQ(host.Core().Active().get(), host.Core().OpenInspectors()[1].get());
  host.Close(*host.Core().OpenInspectors()[1]);
  EXPECT_EQ(host.Core().Active().get(), &one);
  host.Close(one);
  EXPECT_FALSE(Call(host.Application(), L"ActiveInspector").Object());
  EXPECT_THAT(log, ElementsAre(L"Inspectors.61441", L"First.61441", L"Inspectors.61441",
                               L"First.61446", L"First.61441", L"First.61448"));
}

TEST(Inspectors, CloseCanBeCancelledAndNotNested) {
  Host host;
  Inspector& inspector = host.Open(SampleMessage());
  const ComPtr<IDispatch> item = CurrentItem(host);
  std::vector<std::wstring> log;
  Listener events(item, kItemEventsId, L"Item", log);
  events.cancelled = 61444;
  EXPECT_FALSE(host.Close(inspector));
  EXPECT_TRUE(inspector.IsOpen());
  events.cancelled = 0;
  host.CloseAndCancel(inspector);
  EXPECT_TRUE(inspector.IsOpen());
  events.during = [&](DISPID, const DISPPARAMS&) {
    EXPECT_EQ(Call(item, L"Close", List(Variant::Long(1))).hr, DISP_E_EXCEPTION);
    // Its window is on its way: the item gets another inspector, which nobody sees.
    EXPECT_TRUE(Get(Get(item, L"GetInspector").Object(), L"CurrentItem").Object());
  };
  EXPECT_TRUE(host.Close(inspector));
  EXPECT_THAT(log, ElementsAre(L"Item.61444", L"Item.61444", L"Item.61444"));
  EXPECT_EQ(host.Core().OpenInspectors().size(), 1u);
}

TEST(AddIns, AreToldOfStartAndEndAsTheVersionDoes) {
  struct Case {
    int version;
    ConnectMode mode;
    bool notified;
    std::vector<std::wstring> expected;
  };
  const std::vector<std::wstring> whole = {L"OnConnection 1", L"OnStartupComplete", L"App.61447",
                                           L"OnBeginShutdown", L"OnDisconnection 0"};
  const Case cases[] = {
      // The reference that this add-in holds keeps the older versions from ending.
      {9, ConnectMode::kStartup, false, {L"OnConnection 1", L"OnStartupComplete", L"App.61447"}},
      {12, ConnectMode::kStartup, false, whole},
      {14, ConnectMode::kStartup, true, whole},
      {14, ConnectMode::kStartup, false, {L"OnConnection 1", L"OnStartupComplete", L"App.61447"}},
      {12,
       ConnectMode::kAfterStartup,
       false,
       {L"OnConnection 0", L"App.61447", L"OnBeginShutdown", L"OnDisconnection 0"}},
  };
  for (const Case& c : cases) {
    Options options;
    options.version = c.version;
    std::vector<std::wstring> log;
    ProbeAddIn addIn(log);
    Host host(options);
    ASSERT_EQ(host.Connect(&addIn, c.mode, c.notified), S_OK);
    {
      const Listener events(addIn.application, kApplicationEventsId, L"App", log);
      host.Quit();
    }
    EXPECT_EQ(log, c.expected) << c.version;
    addIn.application.Reset();
    EXPECT_THAT(host.Leaks(), IsEmpty());
    EXPECT_EQ(addIn.References(), 0u);
  }
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

TEST(Watching, AHeldObjectOutlivesTheHost) {
  ComPtr<IDispatch> inspector;
  {
    Host host;
    host.Open(SampleMessage());
    inspector = Call(host.Application(), L"ActiveInspector").Object();
  }
  EXPECT_EQ(Get(inspector, L"CurrentItem").hr, DISP_E_EXCEPTION);
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

}  // namespace
}  // namespace standin
