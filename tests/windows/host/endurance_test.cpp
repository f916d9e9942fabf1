// A long day: the same work again and again leaves memory, handles and windows as they were.

#include <windows.h>

#include <psapi.h>

#include <cstdlib>

#include "product_run.h"

namespace {

using namespace standin;

// A short day, or as many rounds as POSTROVE_ROUNDS says.
int Rounds() {
  const char* const told = std::getenv("POSTROVE_ROUNDS");
  return told ? std::atoi(told) : 30;
}

BOOL CALLBACK CountWindow(HWND window, LPARAM count) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  *reinterpret_cast<long*>(count) += process == GetCurrentProcessId();
  return TRUE;
}

struct Load {
  long long bytes;
  DWORD handles = 0;
  long windows = 0;
};

Load Now() {
  PROCESS_MEMORY_COUNTERS counters{};
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  Load load{static_cast<long long>(counters.PagefileUsage)};
  GetProcessHandleCount(GetCurrentProcess(), &load.handles);
  EnumWindows(CountWindow, reinterpret_cast<LPARAM>(&load.windows));
  return load;
}

// Under Wine each thread of a user takes a kilobyte for good and each dialog that is shown some
// more; a message or a project list that was kept is larger.
void ExpectLevel(const Load& before, int rounds) {
  constexpr long long kBytesOfRound = 10000;
  const Load after = Now();
  ::testing::Test::RecordProperty("bytesOfRound",
                                  std::to_string((after.bytes - before.bytes) / rounds));
  EXPECT_LT(after.bytes - before.bytes, (1 << 20) + rounds * kBytesOfRound);
  EXPECT_LE(after.handles, before.handles + 2);
  EXPECT_EQ(after.windows, before.windows);
}

TEST(Endurance, FilingAgainAndAgain) {
  const int rounds = Rounds();
  const run::Registered registered;
  const run::Folder folder;
  Host host;
  host.LoadAddIns();
  Load before{};
  for (int round = -10; round < rounds; ++round) {
    if (round == 0) before = Now();
    Inspector& inspector = host.Open(run::Mail(L"Minutes"), round % 2 == 0);
    {
      UserScript script;
      script.project = L"Harbour Bridge: 2231";
      script.folder = folder.Path();
      script.answers = {{L"existing file name", L"OK"}};
      script.report = [](const std::wstring&) {};
      const ScriptedUser user(std::move(script));
      ASSERT_TRUE(host.Click(inspector));
    }
    if (inspector.IsOpen()) host.Close(inspector);
    ASSERT_EQ(folder.Files(), std::vector<std::wstring>{L"Minutes.msg"});
    host.Forget();
  }
  ExpectLevel(before, rounds);
  host.Quit();
  EXPECT_EQ(run::Held(host), "");
}

TEST(Endurance, LoadedAndUnloadedAgainAndAgain) {
  const run::Registered registered;
  Load before{};
  for (int round = -5; round < 100; ++round) {
    if (round == 0) before = Now();
    Host host;
    host.LoadAddIns();
    host.Open(run::Mail(L"Minutes"));
    host.Quit();
    ASSERT_EQ(registered.Module().CanUnloadNow(), S_OK);
  }
  ExpectLevel(before, 100);
}

}  // namespace
