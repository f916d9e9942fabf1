// How often the add-in asks Outlook: every call can cross into another process's window or wait for
// a server, so neither a window that opens nor a filing may need many.

#include <algorithm>

#include "product_run.h"

namespace {

using namespace standin;

TEST(CallCount, OpeningAndFilingInEveryVersion) {
  constexpr std::size_t kPerOpening = 30;
  // Of these, six ask for the names whose letters a message file may lose, and nine look for another
  // window's button when the message closes.
  constexpr std::size_t kPerFiling = 55;
  const run::Registered registered;
  for (const bool sent : {true, false}) {
    std::size_t opening = 0;
    std::size_t filing = 0;
    for (const int version : {9, 10, 11, 12, 14, 15, 16}) {
      SCOPED_TRACE(::testing::Message() << "version " << version << ", received " << sent);
      const run::Folder folder;
      Options options;
      options.version = version;
      Host host(options);
      host.LoadAddIns();
      // The second has a button to take over from.
      host.Open(run::Mail(L"First"), sent, ItemKind::kMail, Editor::kHtml);
      const std::size_t atOpening = host.CallCount();
      Inspector& inspector = host.Open(run::Mail(L"Second"), sent, ItemKind::kMail, Editor::kHtml);
      const std::size_t atClick = host.CallCount();
      {
        UserScript script;
        script.project = L"Mill Street: 2231";
        script.folder = folder.Path();
        script.report = [](const std::wstring&) {};
        const ScriptedUser user(std::move(script));
        EXPECT_TRUE(host.Click(inspector));
      }
      ASSERT_EQ(folder.Files(), std::vector<std::wstring>{L"Second.msg"});
      EXPECT_EQ(host.SentMessages().size(), sent ? 0u : 1u);
      EXPECT_LT(atClick - atOpening, kPerOpening);
      EXPECT_LT(host.CallCount() - atClick, kPerFiling);
      opening = std::max(opening, atClick - atOpening);
      filing = std::max(filing, host.CallCount() - atClick);
    }
    const std::string kind = sent ? "Received" : "New";
    RecordProperty("callsOfOpening" + kind, static_cast<int>(opening));
    RecordProperty("callsOfFiling" + kind, static_cast<int>(filing));
  }
}

}  // namespace
