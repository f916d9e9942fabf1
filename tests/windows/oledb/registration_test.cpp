#include <gmock/gmock.h>

#include "com/module_under_test.h"
#include "com/registry_tree.h"
#include "oledb/provider_class.h"

namespace {

// The machine's hive is replaced: registering shows there and nowhere else.
class ProviderRegistration : public testing::Test {
 protected:
  ProviderRegistration() {
    wchar_t text[39];
    StringFromGUID2(standin::kProviderClass, text, 39);
    class_ = text;
  }

  std::wstring class_;
  const std::wstring nameKey_ = L"Software\\Classes\\Microsoft.Jet.OLEDB.4.0";
  const ModuleUnderTest provider_;
  ReplacedHive machine_{HKEY_LOCAL_MACHINE};
};

TEST_F(ProviderRegistration, TakesTheNameAndGivesItBack) {
  machine_.MakeKey(L"Software\\Classes\\CLSID");
  const std::vector<std::wstring> before = machine_.Tree();
  ASSERT_EQ(S_OK, provider_.RegisterServer());
  const std::vector<std::wstring> once = machine_.Tree();
  const std::wstring clsid = L"Software\\Classes\\CLSID\\" + class_;
  EXPECT_THAT(once, testing::IsSupersetOf({nameKey_ + L"\\CLSID|=" + class_,
                                           clsid + L"\\InprocServer32|=" + ModuleUnderTest::Path(),
                                           clsid + L"\\InprocServer32|ThreadingModel=Both",
                                           clsid + L"\\ProgID|=Microsoft.Jet.OLEDB.4.0"}));
  EXPECT_EQ(S_OK, provider_.RegisterServer()) << "again";
  EXPECT_EQ(once, machine_.Tree());
  EXPECT_EQ(S_OK, provider_.UnregisterServer());
  EXPECT_EQ(before, machine_.Tree());
  EXPECT_EQ(S_OK, provider_.UnregisterServer()) << "not registered";
}

TEST_F(ProviderRegistration, LeavesTheNameToItsOwner) {
  machine_.SetText(nameKey_ + L"\\CLSID", nullptr, L"{00000000-0000-0000-0000-000000000001}");
  const std::vector<std::wstring> before = machine_.Tree();
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_ALREADY_EXISTS), provider_.RegisterServer());
  EXPECT_EQ(before, machine_.Tree());
  EXPECT_EQ(S_OK, provider_.UnregisterServer());
  EXPECT_EQ(before, machine_.Tree());
}

}  // namespace
