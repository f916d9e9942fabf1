// Command bars of the stand-in: positions, lifetimes and the reach of a click.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "outlook/host.h"
#include "outlook/ids.h"
#include "outlook/inspector_window.h"
#include "probe.h"

namespace standin {
namespace {

using namespace probe;
using ::testing::ElementsAre;

TEST(CommandBars, AnOutOfRangePositionFails) {
  Host host;
  host.Open(SampleMessage());
  const ComPtr<IDispatch> bar = Get(Bars(host), L"Item", List(Variant::Text(L"Standard"))).Object();
  const ComPtr<IDispatch> controls = Get(bar, L"Controls").Object();
  const long count = Get(controls, L"Count").Long();
  const auto add = [&](long type, long before) {
    return Call(controls, L"Add",
                List(Variant::Long(type), Variant::Missing(), Variant::Missing(),
                     Variant::Long(before), Variant::Bool(true)));
  };
  for (const long before : {0L, -1L, count + 1}) {
    EXPECT_EQ(add(1, before).code, E_INVALIDARG) << before;
  }
  EXPECT_EQ(add(0, 1).code, E_INVALIDARG);
  const ComPtr<IDispatch> added = add(1, 4).Object();
  ASSERT_TRUE(added);
  EXPECT_EQ(Get(added, L"Index").Long(), 4);
  EXPECT_EQ(Get(controls, L"Count").Long(), count + 1);
  EXPECT_EQ(Get(Bars(host), L"Item", List(Variant::Text(L"Nonsense"))).code, E_INVALIDARG);
  EXPECT_EQ(Call(Bars(host), L"FindControl",
                 List(Variant::Missing(), Variant::Missing(), Variant::Text(L"T"),
                      Variant::Missing(), Variant::Bool(true)))
                .hr,
            DISP_E_BADPARAMCOUNT);
}

TEST(CommandBars, ANoteHasNoneAndSomeBuildsHaveThemLate) {
  Options late;
  late.commandBarsFromActivate = true;
  Host host(late);
  std::vector<std::wstring> log;
  HRESULT early = S_OK;
  Listener inspectors(Get(host.Application(), L"Inspectors").Object(), kInspectorsEventsId,
                      L"Inspectors", log);
  inspectors.during = [&](DISPID, const DISPPARAMS& given) {
    early = Get(ComPtr<IDispatch>(given.rgvarg[0].pdispVal), L"CommandBars").hr;
  };
  host.Open(SampleMessage());
  EXPECT_EQ(early, DISP_E_EXCEPTION);
  EXPECT_TRUE(Bars(host));
  host.Open(SampleMessage(), true, ItemKind::kNote);
  EXPECT_FALSE(Bars(host));
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
