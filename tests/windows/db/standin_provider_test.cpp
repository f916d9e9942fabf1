// The database object with a real engine behind OLE DB: the stand-in for Jet on SQLite files.

#include <gmock/gmock.h>

#include "shared/error.h"
#include "shared/text.h"
#include "shared/win32/OleDbDatabase.h"
#include "standin_database.h"

namespace postrove {
namespace {

using ::testing::HasSubstr;
using testing::LoadedProvider;
using testing::MakeEmptyDatabase;

// A new folder with an empty database, deleted with it.
class DatabaseFile {
 public:
  explicit DatabaseFile(const std::wstring& folder) {
    wchar_t temporary[MAX_PATH];
    GetTempPathW(MAX_PATH, temporary);
    folder_ = temporary + folder;
    CreateDirectoryW(folder_.c_str(), nullptr);
    MakeEmptyDatabase(Path());
  }
  ~DatabaseFile() {
    EXPECT_TRUE(DeleteFileW(Path().c_str())) << "the file is still open";
    EXPECT_TRUE(RemoveDirectoryW(folder_.c_str())) << "something lies beside the file";
  }
  DatabaseFile(const DatabaseFile&) = delete;
  DatabaseFile& operator=(const DatabaseFile&) = delete;

  std::wstring Path() const { return folder_ + L"\\Postrove.mdb"; }

 private:
  std::wstring folder_;
};

class Standin : public ::testing::Test {
 protected:
  Standin() {
    Use(file_);
    database_->Execute(
        L"CREATE TABLE Project (ProjectID INTEGER PRIMARY KEY, [Project Number] TEXT, "
        L"[Project Name] TEXT, ProjFilePath TEXT, Active BOOLEAN)");
  }

  void Use(const DatabaseFile& file) {
    database_->DbType = L"Access";
    database_->Provider = testing::kStandinProvider;
    database_->UID = L"admin";
    database_->DBFullPath = file.Path();
    database_->Prepare();
  }

  const LoadedProvider provider_;
  const DatabaseFile file_{L"Postrove database"};
  const std::shared_ptr<clsDatabase> database_ = CreateOleDbDatabase();
};

TEST_F(Standin, TheStatementsOfTheProductRun) {
  database_->Execute(
      L"INSERT INTO Project ([Project Number], [Project Name], ProjFilePath, [Active]) VALUES "
      L"('2024-07', 'M\u00FCller''s \"Tower\"; \u6771\u4EAC', 'C:\\Projects\\', True);");
  database_->Execute(
      L"INSERT INTO Project ([Project Number], [Project Name], ProjFilePath, [Active]) VALUES "
      L"('A-1', 'Bridge', NULL, True);");
  const std::wstring list =
      L"SELECT P.[Project Number], P.[Project Name], P.ProjFilePath, P.Active, P.ProjectID FROM "
      L"Project AS P WHERE P.[Project Number] <> '0' AND P.Active ORDER BY P.[Project Name]";
  const std::vector<Cell> bridge{
      std::wstring(L"A-1"), std::wstring(L"Bridge"), {}, true, std::int64_t{2}};
  const std::vector<Cell> tower{std::wstring(L"2024-07"),
                                std::wstring(L"M\u00FCller's \"Tower\"; \u6771\u4EAC"),
                                std::wstring(L"C:\\Projects\\"), true, std::int64_t{1}};
  EXPECT_EQ((Rows{bridge, tower}), database_->OpenRecordset(list));

  database_->Execute(
      L"UPDATE Project SET [Project Number] = '0', [Active] = False WHERE ProjectID = 1;");
  EXPECT_EQ((Rows{bridge}), database_->OpenRecordset(list));
  EXPECT_EQ((Rows{{std::wstring(L"A-1")}}),
            database_->OpenRecordset(L"SELECT max([Project Number]) FROM Project;"));
  EXPECT_EQ(Rows(), database_->OpenRecordset(
                        L"SELECT [Project Number] FROM Project WHERE [Project Number] = '7'; "));
  EXPECT_EQ((Rows{{Cell()}}),
            database_->OpenRecordset(L"SELECT max([Project Number]) FROM Project WHERE False;"));
}

TEST_F(Standin, AThousandRowsArrive) {
  database_->Execute(
      L"WITH RECURSIVE N(I) AS (SELECT 1 UNION ALL SELECT I + 1 FROM N WHERE I < 1000) "
      L"INSERT INTO Project (ProjectID, [Project Name]) SELECT I, 'Project ' || I FROM N");
  Rows expected;
  for (long i = 1; i <= 1000; ++i) {
    expected.push_back({std::int64_t{i}, L"Project " + text::FromNumber(i)});
  }
  EXPECT_EQ(expected, database_->OpenRecordset(
                          L"SELECT ProjectID, [Project Name] FROM Project ORDER BY ProjectID"));
}

TEST_F(Standin, ErrorsCarryTheProvidersText) {
  const auto textOf = [&](auto run) -> std::wstring {
    try {
      run();
    } catch (const Error& error) {
      EXPECT_TRUE(FAILED(error.Number()));
      return error.Description();
    }
    return L"no error";
  };
  EXPECT_THAT(textOf([&] { database_->OpenRecordset(L"SELECT * FROM Projects"); }),
              HasSubstr(L"Projects"));
  EXPECT_THAT(textOf([&] { database_->Execute(L"INSERT INTO Project VALUES ('it's')"); }),
              HasSubstr(L"syntax"));
  const std::wstring missing = file_.Path() + L".mdb";
  database_->DBFullPath = missing;
  database_->Prepare();
  EXPECT_THAT(textOf([&] { database_->OpenRecordset(L"SELECT 1"); }), HasSubstr(missing));
}

TEST_F(Standin, FilesWithOddNamesAreReached) {
  for (const wchar_t* folder : {L"O'Neil", L"1=2", L"{B}", L" blank first", L"two  blanks"}) {
    const DatabaseFile file(folder);
    Use(file);
    database_->Execute(L"CREATE TABLE T (A TEXT)");
    database_->Execute(L"INSERT INTO T VALUES ('x')");
    EXPECT_EQ((Rows{{std::wstring(L"x")}}), database_->OpenRecordset(L"SELECT A FROM T"));
  }
}

TEST_F(Standin, NothingIsLeftAfterManyOperations) {
  for (int i = 0; i < 1000; ++i) {
    ASSERT_EQ(1u, database_->OpenRecordset(L"SELECT count(*) FROM Project").size());
  }
}

}  // namespace
}  // namespace postrove
