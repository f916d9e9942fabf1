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
  EXPECT_EQ(L"", Read(L"plain")) << "there is no key";
  EXPECT_EQ(L"", WinRegistry().GetDefaultMailClient());
  const auto wide = [](std::wstring_view text) {
    return std::string(reinterpret_cast<const char*>(text.data()), text.size() * sizeof text[0]);
  };
  const std::wstring longest(259, L'x');
  const struct {
    const wchar_t* name;
    DWORD type;
    std::string bytes;
    std::wstring read;
  } cases[] = {
      {L"plain", REG_SZ, wide({L"C:\\ProgramData\0", 15}), L"C:\\ProgramData"},
      {L"", REG_SZ, wide({L"default\0", 8}), L"default"},
      {L"Gr\u00FC\u00DFe", REG_SZ, wide({L"M\u00FCller\0", 7}), L"M\u00FCller"},
      {L"longest", REG_SZ, wide(longest + L'\0'), longest},
      {L"too long", REG_SZ, wide(longest + L"x\0"), L""},
      {L"parts", REG_MULTI_SZ, wide({L"first\0second\0\0", 14}), L"first"},
      {L"bytes", REG_BINARY, {"ab\0c", 4}, L"ab"},
      {L"no null", REG_BINARY, "ab", L"ab" + std::wstring(258, L' ')},
  };
  for (const auto& one : cases) {
    machine_.SetValue(kKey, one.name, one.type, one.bytes.data(),
                      static_cast<DWORD>(one.bytes.size()));
    EXPECT_EQ(one.read, Read(one.name));
  }
  EXPECT_EQ(L"", Read(L"missing"));
  machine_.SetText(L"Software\\Clients\\Mail", nullptr, L"Example Mail");
  EXPECT_EQ(L"Example Mail", WinRegistry().GetDefaultMailClient());
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
