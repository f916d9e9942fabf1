#include "shared/win32/WinRegistry.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <sddl.h>

#include "registry_tree.h"

namespace postrove {
namespace {

constexpr wchar_t kKey[] = L"SOFTWARE\\Example";

class WinRegistryTest : public testing::Test {
 protected:
  std::wstring Read(const wchar_t* name) { return WinRegistry().GetRegistryValue(kKey, name); }

  ReplacedHive machine_{HKEY_LOCAL_MACHINE};
};

TEST_F(WinRegistryTest, ReadsTextBelowTheMachineHive) {
  machine_.SetText(kKey, L"Common AppData", L"C:\\ProgramData");
  machine_.SetText(kKey, nullptr, L"default");
  machine_.SetText(kKey, L"Gr\u00FC\u00DFe", L"M\u00FCller");
  EXPECT_EQ(L"C:\\ProgramData", Read(L"Common AppData"));
  EXPECT_EQ(L"default", Read(L""));
  EXPECT_EQ(L"M\u00FCller", Read(L"Gr\u00FC\u00DFe"));
}

TEST_F(WinRegistryTest, WhatIsMissingIsEmpty) {
  EXPECT_EQ(L"", Read(L"Common AppData"));
  machine_.MakeKey(kKey);
  EXPECT_EQ(L"", Read(L"Common AppData"));
  EXPECT_EQ(L"", WinRegistry().GetDefaultMailClient());
}

TEST_F(WinRegistryTest, TheDefaultMailClientIsTheUnnamedValue) {
  machine_.SetText(L"Software\\Clients\\Mail", nullptr, L"Example Mail");
  EXPECT_EQ(L"Example Mail", WinRegistry().GetDefaultMailClient());
}

TEST_F(WinRegistryTest, AValueLongerThanTheBufferIsEmpty) {
  const std::wstring longest(259, L'x');
  machine_.SetText(kKey, L"fits", longest);
  machine_.SetText(kKey, L"too long", longest + L'x');
  EXPECT_EQ(longest, Read(L"fits"));
  EXPECT_EQ(L"", Read(L"too long"));
}

TEST_F(WinRegistryTest, ReadingEndsAtTheFirstNullWhateverTheType) {
  const wchar_t parts[] = L"first\0second\0";
  machine_.SetValue(kKey, L"parts", REG_MULTI_SZ, parts, sizeof parts);
  machine_.SetValue(kKey, L"bytes", REG_BINARY, "ab\0c", 4);
  machine_.SetValue(kKey, L"no null", REG_BINARY, "ab", 2);
  EXPECT_EQ(L"first", Read(L"parts"));
  EXPECT_EQ(L"ab", Read(L"bytes"));
  EXPECT_EQ(L"ab" + std::wstring(258, L' '), Read(L"no null"));
}

TEST_F(WinRegistryTest, AKeyThatUsersMayOnlyReadIsRead) {
  machine_.SetText(kKey, L"there", L"value");
  HKEY key = nullptr;
  ASSERT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, kKey, 0, WRITE_DAC, &key), ERROR_SUCCESS);
  const auto allow = [&](const wchar_t* list) {
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    ConvertStringSecurityDescriptorToSecurityDescriptorW(list, SDDL_REVISION_1, &descriptor,
                                                         nullptr);
    EXPECT_EQ(RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, descriptor), ERROR_SUCCESS);
    LocalFree(descriptor);
  };
  allow(L"D:P(A;;KR;;;WD)");
  EXPECT_EQ(L"value", Read(L"there"));
  allow(L"D:P(A;;KA;;;WD)");
  RegCloseKey(key);
}

TEST_F(WinRegistryTest, EveryKeyIsClosedAgain) {
  machine_.SetText(kKey, L"there", L"value");
  Read(L"there");
  // The system gives out freed handle numbers again; leaked ones would drive the next number up.
  const auto nextHandle = [] {
    const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    CloseHandle(event);
    return reinterpret_cast<ULONG_PTR>(event);
  };
  const ULONG_PTR before = nextHandle();
  for (int i = 0; i < 100; ++i) {
    Read(L"there");
    Read(L"missing");
  }
  EXPECT_LT(nextHandle(), before + 100);
}

}  // namespace
}  // namespace postrove
