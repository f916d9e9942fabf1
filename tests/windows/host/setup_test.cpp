// Stories of the defaults setup dialog in the stand-in Outlook: a user works on its real windows,
// and what is left on the disk is looked at as text.

#include <functional>

#include "outlook/dialog_windows.h"
#include "product_run.h"

namespace {

using namespace standin;
using postrove::MakeFile;
using run::kData;
using run::kDatabase;
using run::kIni;
using run::Text;
using run::WaitFor;
using run::Window;

const std::wstring kQuillion = L"C:\\Program Files\\Quillion";
constexpr wchar_t kSetup[] = L"Postrove Defaults Setup";

class Setup : public ::testing::Test {
 protected:
  void SetUp() override { TearDown(); }  // of a run that was ended
  void TearDown() override {
    DeleteFileW((kQuillion + L"\\Qulln.txt").c_str());
    RemoveDirectoryW(kQuillion.c_str());
  }

  // One run of Outlook, in which a user opens the setup dialog, does the steps in it and returns.
  static void Run(const std::function<void(const Window&)>& inSetup) {
    Host host;
    host.LoadAddIns();
    Inspector& inspector = host.Open(run::Mail(L"Minutes"));
    run::Click(host, inspector, [&](const Window& save) {
      save.Press(L"Defaults...");
      const Window setup(kSetup);
      inSetup(setup);
      setup.Press(L"Return");
      Window(L"Postrove").Press(L"Close");
    });
    host.Quit();
    EXPECT_EQ(run::Held(host), "");
  }

  const run::Registered registered_;
  const run::Folder folder_;
  const run::FreshData data_;
};

TEST_F(Setup, OwnAndSharedDatabase) {
  CreateDirectoryW(kQuillion.c_str(), nullptr);
  const std::string settings =
      "[FilePathsPrj]\r\n1=P:\\Prj\r\n[FilePathsMDB]\r\n1=C:\\ProgramData\\Postrove\\Postrove."
      "mdb\r\n";
  MakeFile(kQuillion + L"\\Qulln.txt", settings);
  Run([](const Window& setup) {
    EXPECT_EQ(setup.Value(L"Server Folder"), L"P:\\Prj\\");
    EXPECT_FALSE(setup.Shows(L"Settings Location: "));
    setup.Press(L"Postrove");
    WaitFor("its own settings", [&] { return setup.Shows(L"Settings Location: "); });
    EXPECT_EQ(Text(kIni), "[Setup]\r\nUseQuillion=0\r\n");
    EXPECT_EQ(setup.Value(L"Server Folder"), L"C:\\");
    setup.Press(L"Quillion");
    WaitFor("the shared settings", [&] { return !setup.Shows(L"Settings Location: "); });
  });
  EXPECT_EQ(Text(kIni), "[Setup]\r\nUseQuillion=1\r\n");
  EXPECT_EQ(Text(kQuillion + L"\\Qulln.txt"), settings);
}

TEST_F(Setup, TheDatabaseMovesOnceNobodyHasItOpen) {
  const std::string rows = Text(kDatabase);
  const HANDLE inUse = CreateFileW(kDatabase.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                   OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(inUse, INVALID_HANDLE_VALUE);
  const std::wstring place = folder_.Path();
  Run([&](const Window& setup) {
    setup.Enter(L"Database Location", place);
    Window(L"Move the Database").Press(L"Yes");
    Window(L"Postrove").Press(L"OK");
    WaitFor("the old folder", [&] { return setup.Value(L"Database Location") == kData; });
    EXPECT_EQ(Text(kIni), "(none)");
    EXPECT_EQ(Text(kDatabase), rows);
    EXPECT_EQ(Text(place + L"Postrove.mdb"), "(none)");
    CloseHandle(inUse);
    setup.Enter(L"Database Location", place);
    Window(L"Move the Database").Press(L"Yes");
    Window(L"Postrove Database Location Changed").Press(L"OK");
    WaitFor("the new folder", [&] { return TopDialog() && TextOf(TopDialog()) == kSetup; });
    EXPECT_EQ(setup.Value(L"Database Location"), place);
  });
  EXPECT_EQ(Text(kIni), "[Setup]\r\nPostroveDBPath=" + postrove::text::ToUtf8(place) + "\r\n");
  EXPECT_EQ(Text(kDatabase), "(none)");
  EXPECT_EQ(Text(place + L"Postrove.mdb"), rows);
}

}  // namespace
