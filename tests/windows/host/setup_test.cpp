// Stories of the defaults setup dialog in the stand-in Outlook: a user works on its real windows,
// and what is left on the disk is looked at as text.

#include <functional>

#include "dialog_user.h"
#include "outlook/dialog_windows.h"
#include "product_run.h"

namespace {

using namespace standin;
using run::Exists;
using run::kData;
using run::kDatabase;
using run::kIni;
using run::Text;
using run::WaitFor;
using run::Window;
using run::Write;

const std::wstring kQuillion = L"C:\\Program Files\\Quillion";
constexpr wchar_t kSetup[] = L"Postrove Defaults Setup";

class Setup : public ::testing::Test {
 protected:
  void SetUp() override {
    RemoveQuillion();  // of a run that was ended
    types_ = Text(kData + L"WorkUnitType.cnt");
  }

  void TearDown() override {
    RemoveQuillion();
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW((kData + L"Moved_By_Postrove*").c_str(), &found);
    if (search != INVALID_HANDLE_VALUE) {
      do {
        DeleteFileW((kData + found.cFileName).c_str());
      } while (FindNextFileW(search, &found));
      FindClose(search);
    }
    Write(kData + L"WorkUnitType.cnt", types_);
  }

  static void RemoveQuillion() {
    DeleteFileW((kQuillion + L"\\Qulln.txt").c_str());
    RemoveDirectoryW(kQuillion.c_str());
  }

  // One run of Outlook, in which a user opens the setup dialog, does the steps in it and returns;
  // then does what is to do in the save dialog, and closes it.
  using Steps = std::function<void(const Window&)>;
  static void Run(const Steps& inSetup, const Steps& after = {}) {
    Host host;
    host.LoadAddIns();
    Inspector& inspector = host.Open(run::Mail(L"Minutes"));
    run::Click(host, inspector, [&](const Window& save) {
      save.Press(L"Defaults...");
      const Window setup(kSetup);
      inSetup(setup);
      setup.Press(L"Return");
      const Window again(L"Postrove");
      if (after) after(again);
      again.Press(L"Close");
    });
    host.Quit();
    EXPECT_EQ(run::Held(host), "");
  }

  static void WaitForText(const std::wstring& path, const std::string& text) {
    WaitFor(text, [&] { return Text(path) == text; });
  }

  const run::Registered registered_;
  const run::Folder folder_;
  const run::FreshData data_;
  std::string types_;
};

TEST_F(Setup, OwnAndSharedDatabase) {
  CreateDirectoryW(kQuillion.c_str(), nullptr);
  const std::string settings =
      "[FilePathsPrj]\r\n1=P:\\Prj\r\n[FilePathsMDB]\r\n1=C:\\ProgramData\\Postrove\\Postrove."
      "mdb\r\n";
  Write(kQuillion + L"\\Qulln.txt", settings);
  Run([](const Window& setup) {
    EXPECT_EQ(setup.Value(L"Server Folder"), L"P:\\Prj\\");
    EXPECT_FALSE(setup.Shows(L"Settings Location: "));
    setup.Press(L"Postrove");
    WaitForText(kIni, "[Setup]\r\nUseQuillion=0\r\n");
    setup.WaitForLabel(L"Settings Location: ");
    EXPECT_EQ(setup.Value(L"Server Folder"), L"C:\\");
    setup.Press(L"Quillion");
    WaitForText(kIni, "[Setup]\r\nUseQuillion=1\r\n");
  });
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
    EXPECT_FALSE(Exists(place + L"Postrove.mdb"));
    CloseHandle(inUse);
    setup.Enter(L"Database Location", place);
    Window(L"Move the Database").Press(L"Yes");
    Window(L"Postrove Database Location Changed").Press(L"OK");
    WaitFor("the new folder", [&] { return TopDialog() && TextOf(TopDialog()) == kSetup; });
    EXPECT_EQ(setup.Value(L"Database Location"), place);
  });
  EXPECT_EQ(Text(kIni), "[Setup]\r\nPostroveDBPath=" + postrove::text::ToUtf8(place) + "\r\n");
  EXPECT_FALSE(Exists(kDatabase));
  EXPECT_EQ(Text(place + L"Postrove.mdb"), rows);
}

}  // namespace
