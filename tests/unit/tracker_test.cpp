#include "gtest/gtest.h"
#include "memory/Product.h"

namespace postrove::testing {
namespace {

using office::Value;

constexpr wchar_t kTag[] = L"Quillion Postrove Button";

TEST(Tracker, PutsOneFormattedButtonOnAMailInspector) {
  for (const bool sent : {false, true}) {
    for (const bool word : {false, true}) {
      SCOPED_TRACE(::testing::Message() << "sent " << sent << ", Word " << word);
      Product product;
      product.Start();
      product.outlook.Open(true);
      product.outlook.Open(true);
      const auto inspector = product.outlook.Open(sent, 43, word);
      product.outlook.AddButton(*inspector, kTag);  // left behind by a crash
      product.outlook.AddButton(*inspector, kTag);
      product.outlook.AddButton(*inspector, L"another add-in");
      product.outlook.RaiseNew(inspector);

      ASSERT_EQ(inspector->buttons.size(), 2u);
      const auto& button = inspector->buttons.back()->properties;
      EXPECT_EQ(button.at(L"Caption"), Value(sent ? L"SaveToProject" : L"Pos&trove"));
      EXPECT_EQ(button.at(L"Style"), Value(3));
      EXPECT_EQ(button.at(L"FaceId"), Value(325));
      EXPECT_EQ(button.at(L"BeginGroup"), Value(true));
      EXPECT_EQ(button.at(L"Tag"), Value(kTag));
      EXPECT_EQ(button.at(L"OnAction"), Value(L"!<Postrove.Connect>"));
      EXPECT_EQ(button.at(L"Visible"), Value(true));
      // Type, Id, Parameter, Before, Temporary; the third inspector's parameter is 2.
      const office::Arguments expected{1, office::Missing{}, 2, 4, true};
      EXPECT_EQ(inspector->additions, std::vector<office::Arguments>{expected});
      EXPECT_EQ(product.shared.gOutlook->SaveType(), 3);
      EXPECT_EQ(inspector->bar->properties.at(L"Protection"), Value(word ? 8 : 0));
      EXPECT_EQ(inspector->bar->properties.at(L"Visible"), Value(word));
    }
  }
}

TEST(Tracker, OtherItemsOnlyReplaceTheTrackedInspector) {
  Product product;
  product.Start();
  const auto mail = product.outlook.Open(false);
  product.outlook.RaiseNew(mail);
  for (const std::int32_t itemClass : {26, 40, 48, 44, 46, 53}) {
    const auto other = product.outlook.Open(false, itemClass);
    product.outlook.log.calls.clear();
    product.outlook.RaiseNew(other);
    EXPECT_TRUE(other->additions.empty()) << itemClass;
    EXPECT_EQ(product.shared.gOutlook->Inspector().Get(), other->window);
    // Nothing but the class is asked of an item that is not known to be a mail.
    EXPECT_EQ(product.outlook.log.calls,
              (std::vector<std::wstring>{L"Inspector.Subscribe", L"Inspector.CurrentItem",
                                         L"Item.Class"}));
  }
}

TEST(Tracker, ClosingLetsGo) {
  Product product;
  product.Start();
  const auto first = product.outlook.Open(true, 43, true);
  product.outlook.RaiseNew(first);
  product.outlook.Activate(first);
  EXPECT_EQ(product.shared.gOutlook->Inspector().Get(), first->window);
  product.outlook.CloseWindow(first);
  EXPECT_TRUE(first->buttons.empty());
  EXPECT_EQ(first->bar->properties.at(L"Protection"), Value(0));
  EXPECT_FALSE(product.shared.gOutlook->Inspector());

  const auto second = product.outlook.Open(true);
  product.outlook.RaiseNew(second);
  product.shared.gOutlook->SetMailItem(office::MailItem(second->item));
  second->item->Raise(facts::kItemEvents, facts::kItemSend, {false});
  EXPECT_TRUE(product.shared.gOutlook->MailItem());
  EXPECT_TRUE(product.shared.gOutlook->Inspector());
  product.outlook.CloseMessage(second);
  EXPECT_FALSE(product.shared.gOutlook->MailItem());
  EXPECT_FALSE(product.shared.gOutlook->Inspector());
}

TEST(Tracker, InterfaceKeepsItsOddities) {
  Product product;
  product.Start();
  IclsOutlook& tracker = *product.shared.gOutlook;
  EXPECT_EQ(product.outlook.lastNamespace, L"MAPI");
  EXPECT_EQ(tracker.NameSpace().Get(), product.outlook.nameSpace);
  EXPECT_EQ(product.outlook.inspectors->SinkCount(), 1u);
  EXPECT_FALSE(tracker.Inspectors());  // and subscribes anew, not twice
  EXPECT_EQ(product.outlook.inspectors->SinkCount(), 1u);
  const office::Wrapper thing(product.outlook.app);
  tracker.SetMailFolder(thing);
  tracker.SetAttachment(thing);
  tracker.SetApptItem(office::Item(product.outlook.app));
  tracker.SetContactItem(office::Item(product.outlook.app));
  EXPECT_FALSE(tracker.MailFolder() || tracker.Attachment() || tracker.ApptItem() ||
               tracker.ContactItem());
  tracker.SetApp(office::Application(product.outlook.app));
  EXPECT_EQ(product.outlook.app->SinkCount(), 1u);
  EXPECT_EQ(product.outlook.inspectors->SinkCount(), 1u);
}

TEST(Tracker, QuitReleasesByVersion) {
  const struct {
    const wchar_t* version;
    bool releasesTracker;
  } cases[] = {{L"9.0.0.2711", true},      {L"10.0.0.2627", true},  {L"11.0.8173", true},
               {L"12.0.6739.5000", false}, {L"14.0.0.7011", false}, {L"15.0.0.4569", false},
               {L"16.0.0.4266", false},    {L"9.5", false},         {L"", false}};
  for (const auto& one : cases) {
    SCOPED_TRACE(text::ToUtf8(one.version));
    Product product(one.version);
    product.Start();
    const auto inspector = product.outlook.Open(false);
    product.outlook.RaiseNew(inspector);
    product.outlook.Quit();
    EXPECT_FALSE(product.shared.gController);
    EXPECT_EQ(product.shared.gOutlook == nullptr, one.releasesTracker);
    const auto late = product.outlook.Open(false);  // a window that opens while Outlook quits
    product.outlook.RaiseNew(late);
    EXPECT_TRUE(late->additions.empty());
    product.shared.gOutlook.reset();
    EXPECT_EQ(product.outlook.app->SinkCount() + product.outlook.inspectors->SinkCount() +
                  inspector->window->SinkCount() + inspector->buttons.at(0)->SinkCount(),
              0u);
    EXPECT_EQ(product.outlook.app.use_count() + product.outlook.inspectors.use_count() +
                  product.outlook.nameSpace.use_count(),
              3 + 1)  // the test's three and the application's own of its inspectors
        << "a reference to the host was kept";
  }
}

}  // namespace
}  // namespace postrove::testing
