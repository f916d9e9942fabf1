#include <gmock/gmock.h>

#include "addin/Postrove_h.h"
#include "module_under_test.h"
#include "registry_tree.h"

namespace {

#ifdef _WIN64
constexpr wchar_t kOwn[] = L"win64";
constexpr wchar_t kOther[] = L"win32";
#else
constexpr wchar_t kOwn[] = L"win32";
constexpr wchar_t kOther[] = L"win64";
#endif

std::wstring ToText(const GUID& guid) {
  wchar_t buffer[39];
  StringFromGUID2(guid, buffer, 39);
  return buffer;
}

// Both hives replaced: what is written where shows, whatever the real registry does with classes.
class Registration : public testing::Test {
 protected:
  const std::wstring clsid_ = ToText(__uuidof(Connect));
  // Also a check that the identifier stays what it was: it is in users' registries.
  const std::wstring library_ = L"{A7EF68F3-3B7C-44AC-9DAD-FD58A0CF91DC}";
  const std::wstring languageKey_ = L"Software\\Classes\\TypeLib\\" + library_ + L"\\1.0\\0";
  const std::wstring addIn_ = L"Software\\Microsoft\\Office\\Outlook\\Addins\\Postrove.Connect";

  const ModuleUnderTest module_;
  const std::wstring path_ = ModuleUnderTest::Path();
  // In this order: each one's scratch key is made below the user's own hive.
  ReplacedHive machine_{HKEY_LOCAL_MACHINE};
  ReplacedHive user_{HKEY_CURRENT_USER};
};

TEST_F(Registration, WritesTheWholeTableForTheUserOnly) {
  ASSERT_EQ(S_OK, module_.RegisterServer());

  const std::wstring clsid = L"Software\\Classes\\CLSID\\" + clsid_;
  const std::wstring library = L"Software\\Classes\\TypeLib\\" + library_;
  const std::vector<std::wstring> expected = {
      clsid + L"|=Postrove.Connect",
      clsid + L"\\InprocServer32|=" + path_,
      clsid + L"\\InprocServer32|ThreadingModel=Apartment",
      clsid + L"\\ProgID|=Postrove.Connect",
      clsid + L"\\Programmable|=",
      clsid + L"\\TypeLib|=" + library_,
      clsid + L"\\Version|=1.0",
      L"Software\\Classes\\Postrove.Connect|=Postrove.Connect",
      L"Software\\Classes\\Postrove.Connect\\CLSID|=" + clsid_,
      library + L"\\1.0|=Marrow Postrove Utility for Outlook 2000",
      languageKey_ + L"\\" + kOwn + L"|=" + path_,
      library + L"\\1.0\\FLAGS|=0",
      addIn_ + L"|FriendlyName=Postrove",
      addIn_ + L"|Description=Postrove Outlook Utility for Quillion",
      addIn_ + L"|LoadBehavior=3",
      addIn_ + L"|RequireShutdownNotification=1",
  };
  std::vector<std::wstring> values = user_.Tree();
  std::erase_if(values, [](const std::wstring& line) { return line.find(L'|') == line.npos; });
  EXPECT_THAT(values, testing::UnorderedElementsAreArray(expected));
  EXPECT_THAT(machine_.Tree(), testing::IsEmpty());
}

TEST_F(Registration, AgainChangesNothingAndSwitchesTheAddInOn) {
  ASSERT_EQ(S_OK, module_.RegisterServer());
  const std::vector<std::wstring> once = user_.Tree();
  const DWORD switchedOff = 2;
  user_.SetValue(addIn_, L"LoadBehavior", REG_DWORD, &switchedOff, sizeof switchedOff);
  ASSERT_EQ(S_OK, module_.RegisterServer());
  EXPECT_EQ(once, user_.Tree());
}

TEST_F(Registration, UnregisteringLeavesNothingOfOurs) {
  const std::vector<std::wstring> foreignKeys[] = {
      {},
      {L"Software\\Classes\\CLSID\\{00000000-0000-0000-0000-000000000001}",
       L"Software\\Classes\\TypeLib\\{00000000-0000-0000-0000-000000000002}\\1.0",
       L"Software\\Classes\\TypeLib\\" + library_ + L"\\2.0",
       L"Software\\Microsoft\\Office\\Outlook\\Addins\\Other.Connect"},
  };
  user_.MakeKey(L"Software\\Classes");
  user_.MakeKey(L"Software\\Microsoft");
  for (const auto& foreign : foreignKeys) {
    for (const std::wstring& key : foreign) user_.MakeKey(key);
    const std::vector<std::wstring> before = user_.Tree();
    ASSERT_EQ(S_OK, module_.RegisterServer());
    EXPECT_NE(before, user_.Tree());
    EXPECT_EQ(S_OK, module_.UnregisterServer());
    EXPECT_EQ(before, user_.Tree());
    EXPECT_EQ(S_OK, module_.UnregisterServer()) << "not registered";
    EXPECT_EQ(before, user_.Tree());
  }
  EXPECT_THAT(machine_.Tree(), testing::IsEmpty());
}

TEST_F(Registration, TheOtherWidthKeepsWhatBothShare) {
  ASSERT_EQ(S_OK, module_.RegisterServer());
  user_.SetText(languageKey_ + L"\\" + kOther, nullptr, L"C:\\other\\Postrove09.dll");
  EXPECT_EQ(S_OK, module_.UnregisterServer());

  const std::vector<std::wstring> left = user_.Tree();
  EXPECT_THAT(left, testing::Contains(addIn_ + L"|LoadBehavior=3"));
  EXPECT_THAT(left, testing::Contains(L"Software\\Classes\\Postrove.Connect\\CLSID|=" + clsid_));
  EXPECT_THAT(left,
              testing::Contains(languageKey_ + L"\\" + kOther + L"|=C:\\other\\Postrove09.dll"));
  EXPECT_THAT(left, testing::Not(testing::Contains(languageKey_ + L"\\" + kOwn)));
  EXPECT_THAT(left, testing::Not(testing::Contains(L"Software\\Classes\\CLSID\\" + clsid_)));
}

TEST(FailingRegistration, TakesBackWhatWasWritten) {
  const ModuleUnderTest module;
  // Nothing lasting can be made below a volatile key, so each of these fails another step.
  const std::wstring blockers[] = {
      L"Software\\Classes\\CLSID", L"Software\\Classes\\Postrove.Connect",
      L"Software\\Classes\\TypeLib", L"Software\\Microsoft\\Office\\Outlook"};
  for (const std::wstring& blocker : blockers) {
    SCOPED_TRACE(testing::PrintToString(blocker));
    ReplacedHive user(HKEY_CURRENT_USER);
    user.MakeKey(L"Software\\Classes");
    user.MakeKey(L"Software\\Microsoft");
    const std::vector<std::wstring> before = user.Tree();
    user.MakeKey(blocker.substr(0, blocker.rfind(L'\\')));
    user.MakeKey(blocker, REG_OPTION_VOLATILE);

    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE), module.RegisterServer());
    EXPECT_EQ(before, user.Tree());
  }
}

}  // namespace
