#include <windows.h>

#include <stdexcept>

#include "benchmarks.h"
#include "measure.h"
#include "memory/Product.h"
#include "shared/win32/WinSharedUtil.h"

namespace postrove::bench {
namespace {

constexpr double kAim = 1.5;
constexpr int kSettings = 20;

std::wstring Key(int i) { return L"Key" + std::to_wstring(i); }

}  // namespace

void MeasureSettings(const std::wstring& folder) {
  PrintTitle("Settings files of 20 values", "the functions of the system");
  const std::wstring file = folder + L"\\bench.ini";
  const std::shared_ptr<clsSharedUtil> utility = CreateWinSharedUtil();
  for (int i = 0; i < kSettings; ++i) {
    utility->WriteSetting(L"Postrove", L"Setup", Key(i), L"C:\\Projects\\" + Key(i), file);
  }
  const auto expect = [](bool right) {
    if (!right) throw std::runtime_error("another value was read");
  };
  const auto theirs = [&](const std::wstring& key) {
    wchar_t value[MAX_PATH];
    GetPrivateProfileStringW(L"Setup", key.c_str(), L"", value, MAX_PATH, file.c_str());
    return std::wstring(value);
  };
  const auto ours = [&](const std::wstring& key) {
    return utility->ReadSetting(L"Postrove", L"Setup", key, L"", file);
  };
  const auto all = [&](const auto& read) {
    return Milliseconds([&] {
      for (int i = 0; i < kSettings; ++i) expect(read(Key(i)) == L"C:\\Projects\\" + Key(i));
    });
  };
  PrintTimes("reading all of them",
             Compare([&] { return all(theirs); },
                     [&] {
                       const clsSharedUtil::ReadingOnce once(*utility);
                       return all(ours);
                     }),
             kAim);
  int written = 0;
  const auto write = [&](const auto& store) {
    const std::wstring value = std::to_wstring(++written);
    const double time = Milliseconds([&] { store(value); });
    expect(ours(L"Last") == value);
    return time;
  };
  PrintTimes("storing one",
             Compare(
                 [&] {
                   return write([&](const std::wstring& value) {
                     WritePrivateProfileStringW(L"Setup", L"Last", value.c_str(), file.c_str());
                   });
                 },
                 [&] {
                   return write([&](const std::wstring& value) {
                     utility->WriteSetting(L"Postrove", L"Setup", L"Last", value, file);
                   });
                 }),
             kAim);
  DeleteFileW(file.c_str());
}

// Each access to a file takes 20 ms, as on a share behind a slow line.
void MeasureSlowShare() {
  PrintTitle("Start with settings on a share that answers after 20 ms", "one look at each of them");
  constexpr DWORD kDelay = 20;
  const auto remote = [] {
    auto product = std::make_unique<testing::Product>();
    product->utility->AddFile(testing::kLocalIni, "[Setup]\r\nPostroveSettingsPath=S:\\Set\\\r\n");
    product->utility->AddFile(L"S:\\Set\\Postrove.ini", "[Setup]\r\nRoot=P:\\Jobs\\\r\n");
    product->utility->otherUsers = [] { Sleep(kDelay); };
    return product;
  };
  int accesses = 0;
  const auto start = [&] {
    const auto product = remote();
    const int before = product->utility->FileOperations();
    const double time = Milliseconds([&] { product->Start(); });
    accesses = product->utility->FileOperations() - before;
    return time;
  };
  const auto look = [&] {
    const auto product = remote();
    return Milliseconds([&] {
      product->utility->FolderExists(testing::kQuillionFolder);
      for (const std::wstring& file :
           {testing::kLocalIni, std::wstring(L"S:\\Set\\Postrove.ini"),
            testing::kDataFolder + L"Postrove.cnt", testing::kDataFolder + L"Postrove.mdb"}) {
        product->utility->FileSize(file);
      }
    });
  };
  PrintTimes("creation to OnConnection", Compare(look, start), kAim);
  PrintCount("accesses to files", accesses);
}

}  // namespace postrove::bench
