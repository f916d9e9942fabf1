#include "outlook/com/event_sink.h"

#include <gmock/gmock.h>
#include <wrl/client.h>

#include <stdexcept>

#include "fake_server.h"
#include "outlook/com/dispatch_object.h"
#include "outlook/com/live_object.h"
#include "shared/error.h"

namespace postrove {
namespace {

const GUID kEvents = {0x0006303A, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
constexpr DISPID kClose = 61444;

class EventSink : public testing::Test {
 protected:
  void SetUp() override { source_.eventInterface = kEvents; }

  void TearDown() override {
    EXPECT_EQ(1u, source_.References());
    EXPECT_EQ(live_, com::LiveObject::Count());
  }

  const long live_ = com::LiveObject::Count();
  FakeServer source_;
};

TEST_F(EventSink, ArgumentsArriveInDeclaredOrder) {
  std::int32_t id = 0;
  office::Arguments arguments;
  FakeServer control;
  {
    const office::Subscription subscription =
        com::Advise(&source_, kEvents, [&](std::int32_t dispid, const office::Arguments& values) {
          id = dispid;
          arguments = values;
        });
    VARIANT_BOOL cancel = VARIANT_TRUE;
    VARIANT reversed[2]{};
    reversed[1].vt = VT_DISPATCH;
    reversed[1].pdispVal = &control;
    reversed[0].vt = VT_BYREF | VT_BOOL;
    reversed[0].pboolVal = &cancel;
    EXPECT_EQ(S_OK, source_.Fire(1, {reversed[0], reversed[1]}));
    EXPECT_EQ(VARIANT_TRUE, cancel);
  }
  EXPECT_EQ(1, id);
  ASSERT_EQ(2u, arguments.size());
  EXPECT_EQ(control.Dispatch(), com::UnwrapDispatch(office::ToObject(arguments[0])).Get());
  EXPECT_EQ(office::Value(true), arguments[1]);
  arguments.clear();
  EXPECT_EQ(1u, control.References());
}

TEST_F(EventSink, MayBeEndedInsideItsOwnEvent) {
  const auto kept = std::make_shared<int>(0);
  const std::weak_ptr<int> watched = kept;
  auto subscription = std::make_shared<office::Subscription>();
  *subscription = com::Advise(
      &source_, kEvents,
      [state = kept, subscription, live = live_](std::int32_t, const office::Arguments&) {
        subscription->Reset();
        ++*state;  // what the handler captured outlives the end of the subscription
        EXPECT_LT(live, com::LiveObject::Count()) << "nothing keeps the code that is running";
      });
  // A host that holds nothing of its own during the call.
  DISPPARAMS none{};
  EXPECT_EQ(S_OK, source_.sinks[0]->Invoke(kClose, GUID{}, 0, DISPATCH_METHOD, &none, nullptr,
                                           nullptr, nullptr));
  EXPECT_EQ(1, *kept);
  EXPECT_TRUE(source_.sinks.empty());
  EXPECT_EQ(1, kept.use_count());
}

TEST_F(EventSink, WhatTheHandlerThrowsStaysInside) {
  const std::function<void()> throwers[] = {[] { throw Error(5, L"x", L"y"); },
                                            [] { throw std::runtime_error("z"); }, [] { throw 1; }};
  for (const auto& thrower : throwers) {
    const office::Subscription subscription =
        com::Advise(&source_, kEvents, [&](std::int32_t, const office::Arguments&) { thrower(); });
    EXPECT_EQ(S_OK, source_.Fire(kClose, {}));
  }
}

TEST_F(EventSink, EndsTheEventsBeforeItLetsTheSourceGo) {
  int events = 0;
  office::Subscription subscription =
      com::Advise(&source_, kEvents, [&](std::int32_t, const office::Arguments&) { ++events; });
  Microsoft::WRL::ComPtr<IDispatch> keptByHost = source_.sinks[0];
  subscription.Reset();
  subscription.Reset();
  ASSERT_EQ(1u, source_.referencesAtUnadvise.size());
  EXPECT_GT(source_.referencesAtUnadvise[0], 1u);
  EXPECT_EQ(1u, source_.References());

  // A host that still calls the sink reaches nobody, but the code is in use.
  DISPPARAMS none{};
  EXPECT_EQ(S_OK, keptByHost->Invoke(kClose, GUID{}, 0, DISPATCH_METHOD, &none, nullptr, nullptr,
                                     nullptr));
  EXPECT_EQ(0, events);
  EXPECT_EQ(live_ + 1, com::LiveObject::Count());
}

TEST_F(EventSink, RefusalsLeaveNothingBehind) {
  struct Case {
    const char* name;
    GUID offered;
    HRESULT adviseResult;
    bool keepsSink;
    HRESULT expected;
  };
  const Case cases[] = {{"no such events", GUID{1, 2, 3, {}}, S_OK, false, CONNECT_E_NOCONNECTION},
                        {"refused", kEvents, CONNECT_E_ADVISELIMIT, false, CONNECT_E_ADVISELIMIT},
                        {"refused but kept", kEvents, E_FAIL, true, E_FAIL}};
  for (const Case& c : cases) {
    FakeServer source;
    source.eventInterface = c.offered;
    source.adviseResult = c.adviseResult;
    source.keepRefusedSink = c.keepsSink;
    int events = 0;
    try {
      com::Advise(&source, kEvents, [&](std::int32_t, const office::Arguments&) { ++events; });
      ADD_FAILURE() << c.name;
    } catch (const Error& error) {
      EXPECT_EQ(c.expected, error.Number()) << c.name;
      EXPECT_EQ(L"Subscribe", error.Source()) << c.name;
    }
    source.Fire(kClose, {});
    EXPECT_EQ(0, events) << c.name;
    EXPECT_EQ(1u, source.References()) << c.name;
  }
}

}  // namespace
}  // namespace postrove
