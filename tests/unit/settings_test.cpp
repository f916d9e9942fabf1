// Writing the defaults, the database settings, and moving database and settings.

#include "data/project_sql.h"
#include "gtest/gtest.h"
#include "memory/Product.h"

namespace postrove::testing {
namespace {

class SettingsFiles : public ::testing::Test {
 protected:
  std::string Ini(const std::wstring& file = kLocalIni) {
    return product_.utility->File(file).value_or("(none)");
  }
  void Save(int index, const std::wstring& text) {
    product_.Data().PostroveDefaultsSave(index, text);
  }
  Product product_;
};

TEST_F(SettingsFiles, OwnDatabaseIsSearchedForWithTheUser) {
  product_.utility->Remove(kDataFolder + L"Postrove.mdb");
  product_.utility->AddFolder(L"S:\\Empty");
  product_.utility->AddFile(L"S:\\Db\\Postrove.mdb");
  product_.utility->AddFile(L"S:\\Half\\Postrove.mdb");
  for (const wchar_t* folder : {L"S:\\Half", L"S:\\Empty", L"S:\\Db"}) {
    product_.utility->ExpectBrowse(folder);
  }
  product_.utility->ExpectMessage();
  product_.database->SetHandler([this](const RanStatement& ran) -> Rows {
    EXPECT_EQ(ran.text, sql::ListProjects(L"Access"));
    if (product_.database->DBFullPath != L"S:\\Half\\Postrove.mdb") return {};
    throw Error(static_cast<long>(0x80004005), L"Test", L"Unrecognized database format.");
  });
  product_.Start();
  EXPECT_TRUE(product_.utility->Messages().at(0).text.starts_with(
      L"\"S:\\Half\\Postrove.mdb\" cannot be used as the project database. Unrecognized database "
      L"format."));
  EXPECT_EQ(product_.database->DBPath, L"S:\\Db\\");
  EXPECT_EQ(product_.database->DBFullPath, L"S:\\Db\\Postrove.mdb");
  EXPECT_EQ(product_.database->DBServer, L"S:\\Db\\Postrove.mdb");
  EXPECT_EQ(product_.database->UID + L"|" + product_.database->Pwd, L"admin|");
  EXPECT_EQ(Ini(), "[Setup]\r\nPostroveDBPath=S:\\Db\\\r\n");
  const auto& prompts = product_.utility->BrowsePrompts();
  ASSERT_EQ(prompts.size(), 3u);
  EXPECT_EQ(prompts[2],
            L"\"Postrove.mdb\" was not found in \"S:\\Empty\\\".\r\nSelect the Server Folder where "
            L"the Postrove database is located. \r\nIf not known, ask the person in your "
            L"organization responsible for your network for the location.");
}

TEST_F(SettingsFiles, SharedDatabases) {
  const std::wstring folder = kQuillionFolder;
  const struct {
    const char* ini;
    const wchar_t* expected;  // type|provider|server|name|user|password|path
  } cases[] = {
      {"", L"Access|Microsoft.Jet.OLEDB.4.0|Quillion.mdb|Quillion|QLN|xbt|"},
      {"[Database]\r\nType=Access\r\n[FilePathsMDB]\r\n1=S:\\Q\\Quillion.mdb\r\n",
       L"Access|Microsoft.Jet.OLEDB.4.0|S:\\Q\\Quillion.mdb|Quillion|QLN|xbt|S:\\Q\\"},
      {"[Database]\r\nType=sqlserver\r\nProvider2=SQLOLEDB\r\nDBServer=SRV\\A\r\nDbName=Q\r\nUID="
       "u\r\n"
       "Pwd=p\r\n",
       L"sqlserver|SQLOLEDB|Quillion.mdb|Q|u|p|SRV\\A"},
  };
  for (const auto& one : cases) {
    Product product;
    product.utility->AddFolder(folder);
    product.utility->AddFile(folder + L"\\Qulln.txt", one.ini);
    product.Start();
    const clsDatabase& db = *product.database;
    EXPECT_EQ(db.DbType + L"|" + db.Provider + L"|" + db.DBServer + L"|" + db.DbName + L"|" +
                  db.UID + L"|" + db.Pwd + L"|" + db.DBPath,
              one.expected);
    EXPECT_TRUE(product.utility->BrowsePrompts().empty());  // not searched for in this mode
  }
}

TEST_F(SettingsFiles, ATargetThatHoldsADatabaseIsAskedAboutAndNeverReplaced) {
  enum class Target { Used, Refused, Damaged };
  for (const Target target : {Target::Used, Target::Refused, Target::Damaged}) {
    Product product;
    product.utility->AddFile(kDataFolder + L"Postrove.mdb", "mine");
    product.utility->AddFile(L"S:\\New\\Postrove.mdb", "theirs");
    product.Start();
    const bool refused = target == Target::Refused, used = target == Target::Used;
    product.utility->ExpectMessage(refused ? MessageAnswer::No : MessageAnswer::Yes);
    if (!refused) product.utility->ExpectMessage();
    if (target == Target::Damaged) product.database->FailOperation(1);
    product.Data().PostroveDefaultsSave(4, L"S:\\New");
    EXPECT_EQ(product.database->DBPath, used ? L"S:\\New\\" : kDataFolder);
    EXPECT_EQ(product.utility->File(kLocalIni).has_value(), used);
    EXPECT_EQ(product.utility->File(L"S:\\New\\Postrove.mdb"), "theirs");
    EXPECT_EQ(product.utility->File(kDataFolder + L"Postrove.mdb"), "mine");
  }
}

// Each file operation of a move, or of the use of a database that is there, fails in turn, or the
// process dies at it, while another user adds a row whenever the database that the settings name
// can be written: they name a whole database with every row, what failed has left nothing, and the
// next try succeeds.
TEST_F(SettingsFiles, AMoveOfTheDatabaseLosesNothingAtAnyMoment) {
  const std::wstring old = kDataFolder + L"Postrove.mdb", there = L"S:\\New\\Postrove.mdb";
  const std::wstring current = L"S:\\Set\\Postrove.ini";
  const auto move = [](Product& product) {
    product.utility->AnswerTheRest(MessageAnswer::Yes);
    product.Data().PostroveDefaultsSave(4, L"S:\\New");
  };
  for (const int variant : {0, 1, 2, 3}) {
    const bool dies = variant % 2 == 1, taken = variant > 1;
    for (int n = 1, operations = 1; n <= operations + 1; ++n) {
      SCOPED_TRACE(::testing::Message() << (taken ? "use " : "move ") << (dies ? "dies" : "fails")
                                        << " at operation " << n);
      std::string rows = "rows of the office";
      Product product;
      FakeSharedUtil& utility = *product.utility;
      utility.AddFile(old, rows);
      if (taken) utility.AddFile(there, "theirs");
      utility.AddFile(kLocalIni, "[Setup]\r\nPostroveSettingsPath=S:\\Set\\\r\n");
      utility.AddFile(current, "[Setup]\r\n");
      product.Start();
      const std::vector<std::wstring> before = utility.Files();
      operations = utility.FileOperations();
      utility.otherUsers = [&] {
        const bool named = utility.File(current)->find("S:\\New\\") != std::string::npos;
        const std::wstring& file = named ? there : old;
        if (!utility.File(file) || utility.IsHeld(file)) return;
        utility.AddFile(file, *utility.File(file) + "+");
        rows += "+";
      };
      dies ? utility.DieAtFileOperation(n) : utility.FailFileOperation(n);
      move(product);
      operations = utility.FileOperations() - operations;

      Product next;
      next.utility->TakeFilesOf(utility);
      next.Start();
      const bool moved = next.database->DBPath == L"S:\\New\\";
      const std::optional<std::string> found = next.utility->File(next.database->DBFullPath);
      ASSERT_TRUE(found);
      EXPECT_TRUE(taken ? found->starts_with(moved ? "theirs" : "rows") : *found == rows);
      for (const std::wstring& file : {current, kLocalIni}) {
        const bool named =
            utility.File(file)->find("PostroveDBPath=S:\\New\\") != std::string::npos;
        EXPECT_TRUE(dies || named == moved) << text::ToUtf8(file);
      }
      EXPECT_TRUE(dies || moved || utility.Files() == before);
      EXPECT_TRUE(dies || utility.File(old).has_value() == (taken || !moved));
      EXPECT_TRUE(moved || n <= operations);
      move(next);
      EXPECT_EQ(next.database->DBPath, L"S:\\New\\");
    }
  }
}

TEST_F(SettingsFiles, QuillionsDatabaseAndFoldersWithoutADriveAreNeverMoved) {
  const std::wstring folder = kQuillionFolder;
  for (const bool shared : {true, false}) {
    Product product;
    if (shared) product.utility->AddFolder(folder);
    product.utility->AddFile(folder + L"\\Quillion", "theirs");
    if (!shared) product.utility->Remove(folder);
    product.Start();
    const auto before = product.utility->Files();
    if (!shared) {
      product.utility->ExpectMessage();
      product.utility->ExpectMessage();
    }
    EXPECT_FALSE(product.Data().database.SetNewDbLocation(shared ? L"C:\\New\\" : L"New\\"));
    EXPECT_FALSE(product.Data().settings.SetNewIniLocation(shared ? L"C:\\New\\" : L"New\\"));
    EXPECT_EQ(product.utility->Files(), before);
  }
}

TEST_F(SettingsFiles, AfterACancelledSearchEachClickReadsEverythingAgain) {
  product_.utility->Remove(kDataFolder + L"Postrove.mdb");
  product_.utility->ExpectBrowse(L"");
  product_.utility->ExpectMessage();
  product_.Start();
  ASSERT_EQ(product_.utility->Messages().size(), 1u);
  EXPECT_NE(product_.utility->Messages()[0].text.find(
                L"You Have Cancelled the \"Set Database Location\" process. \r\nPostrove cannot be "
                L"loaded. Please contact Marrow Technologies for assistance."),
            std::wstring::npos);
  EXPECT_EQ(Ini(), "(none)");
  EXPECT_TRUE(product_.database->Statements().empty());
  product_.utility->ExpectMessage();
  EXPECT_FALSE(product_.Data().projects.ProjectInfoSave({}, false));  // there is none to save into
  product_.utility->AddFile(kLocalIni, "[Setup]\r\nPostroveDBPath=S:\\Db\\\r\nRoot=P:\\\r\n");
  for (const std::size_t lists : {0u, 1u}) {
    product_.forms->Expect([](forms::Form& form) {
      EXPECT_EQ(dynamic_cast<forms::frmPostrove&>(form).txtSaveFolder.Text(), L"P:\\Corr_Out\\");
      form.Unload();
    });
    product_.Click();
    EXPECT_EQ(product_.database->Statements().size(), lists);
    product_.utility->AddFile(L"S:\\Db\\Postrove.mdb");
  }
  EXPECT_EQ(product_.database->DBFullPath, L"S:\\Db\\Postrove.mdb");
}

TEST_F(SettingsFiles, NothingIsWrittenIntoQuillionsFileThatChangesItsEncoding) {
  const std::wstring file = kQuillionFolder + L"\\Qulln.txt";
  product_.utility->AddFile(file, "; \xE9\r\n[Setup]\r\nEmailFolder=Mail\\\r\n");
  product_.Start();
  product_.utility->ExpectMessage();
  Save(3, L"Łódź");
  EXPECT_NE(product_.utility->Messages()[0].text.find(L"Łódź"), std::wstring::npos);
  EXPECT_EQ(Ini(file), "; \xE9\r\n[Setup]\r\nEmailFolder=Mail\\\r\n");
}

TEST_F(SettingsFiles, MovingTheSettingsThereAndBackTakesEffectAtOnce) {
  product_.utility->AddFile(kLocalIni, "; ours\r\n[Setup]\r\nUseQuillion=0\r\nRoot=P:\\\r\n");
  product_.utility->AddFolder(L"S:\\");
  product_.Start();
  product_.utility->ExpectMessage(MessageAnswer::Yes);
  Save(5, L"S:\\Set");
  EXPECT_EQ(product_.utility->IniFile(), L"S:\\Set\\Postrove.ini");
  EXPECT_EQ(Ini(),
            "; ours\r\n[Setup]\r\nUseQuillion=0\r\nRoot=P:\\\r\n"
            "PostroveSettingsPath=S:\\Set\\\r\n");
  Save(0, L"Q:\\");
  EXPECT_EQ(Ini(L"S:\\Set\\Postrove.ini"), "; ours\r\n[Setup]\r\nUseQuillion=0\r\nRoot=Q:\\\r\n");
  product_.utility->ExpectMessage(MessageAnswer::Yes);
  Save(5, kDataFolder);
  EXPECT_EQ(product_.utility->IniFile(), kLocalIni);
  EXPECT_EQ(product_.Data().settings.Root, L"Q:\\");
}

TEST_F(SettingsFiles, SettingsThatAreAllDefaultsCanBeMoved) {
  product_.utility->AddFolder(L"S:\\");
  product_.Start();
  product_.utility->ExpectMessage(MessageAnswer::Yes);
  Save(5, L"S:\\Set");
  EXPECT_EQ(Ini(L"S:\\Set\\Postrove.ini"), "[Setup]\r\nRoot=C:\\\r\n");
}

}  // namespace
}  // namespace postrove::testing
