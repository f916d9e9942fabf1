// The stand-in for Jet by itself, asked through the product's database object: it is no milder than
// Jet with statements and files.

#include <gmock/gmock.h>

#include "shared/error.h"
#include "shared/win32/OleDbDatabase.h"
#include "standin_database.h"

namespace postrove {
namespace {

using ::testing::HasSubstr;

class Standin : public ::testing::Test {
 protected:
  Standin() {
    testing::MakeEmptyDatabase(folder_ / L"Postrove.mdb");
    Use(folder_ / L"Postrove.mdb");
    database_->Execute(
        L"CREATE TABLE Kinds (t TEXT, i INTEGER, b BOOLEAN NOT NULL, r REAL, [Project Name] TEXT)");
    database_->Execute(
        L"INSERT INTO Kinds VALUES ('\u00D6\u20AC\u0436\U0001F309', 2147483648, True, 0.5, NULL), "
        L"('', -7, 0, NULL, '007')");
  }

  void Use(const std::wstring& path) {
    database_->DbType = L"Access";
    database_->Provider = testing::kStandinProvider;
    database_->UID = L"admin";
    database_->DBFullPath = path;
    database_->Prepare();
  }

  void ExpectError(const std::wstring& statement, HRESULT number, const wchar_t* reason) {
    SCOPED_TRACE(::testing::PrintToString(statement));
    try {
      database_->Execute(statement);
      ADD_FAILURE() << "no error";
    } catch (const Error& error) {
      EXPECT_EQ(number, error.Number());
      EXPECT_THAT(error.Description(), HasSubstr(reason));
    }
  }

  const testing::LoadedProvider provider_;
  const TemporaryFolder folder_;
  const std::shared_ptr<clsDatabase> database_ = CreateOleDbDatabase();
};

TEST_F(Standin, RunsOneStatementAndNothingBehindIt) {
  const std::pair<const wchar_t*, const wchar_t*> cases[] = {
      {L"SELECT Missing FROM Kinds", L"no such column"},
      {L"SELECT * FROM Projects", L"no such table: Projects"},
      {L"DELETE FROM Kinds WHERE", L"incomplete input"},
      {L"DELETE FROM Kinds WHERE t = 'O'x'; ", L"unrecognized token"},
      {L"DELETE FROM Kinds WHERE t = 'O'; ' ", L"Characters found after end"},
      {L"SELECT 1; DELETE FROM Kinds", L"Characters found after end of SQL statement."},
      {L"DELETE FROM Kinds;; ", L"Characters found after end of SQL statement."},
      {L"DELETE FROM Kinds WHERE 'a;b' = \"c;\" OR [b] ; x", L"Characters found after end"},
      {L"DELETE FROM Kinds -- all", L"Syntax error"},
      {L"DELETE FROM Kinds /* all */", L"Syntax error"},
      {L"INSERT INTO Kinds (b) VALUES (NULL)", L"NOT NULL constraint failed"},
  };
  for (const auto& [text, reason] : cases) ExpectError(text, DB_E_ERRORSINCOMMAND, reason);
  ExpectError(L"DELETE FROM Kinds WHERE i = ?", DB_E_PARAMNOTOPTIONAL, L"required parameters");
  EXPECT_EQ(2u, database_->OpenRecordset(L"SELECT 1 FROM Kinds").size());
  EXPECT_EQ((Rows{{std::wstring(L"a;'b--"), std::wstring(L"c/*")}}),
            database_->OpenRecordset(L"SELECT 'a;''b--', 'c/*' AS [d--e]; \r\n"));
}

}  // namespace
}  // namespace postrove
