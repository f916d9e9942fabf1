// The project table through the product's own controller and database object, on a file of the
// stand-in's.

#include <gmock/gmock.h>

#include "memory/Product.h"
#include "shared/text.h"
#include "shared/win32/OleDbDatabase.h"
#include "standin_database.h"

namespace postrove {

static void PrintTo(const Project& row, std::ostream* out) {
  *out << row.id << " | " << text::ToUtf8(row.number) << " | " << text::ToUtf8(row.name) << " | "
       << text::ToUtf8(row.filePath) << (row.active ? "" : " | not active");
}

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::kStandinProvider;
using ::testing::SizeIs;

class Projects : public ::testing::Test {
 protected:
  Projects() {
    testing::MakeEmptyDatabase(folder_ + kFile);
    direct_->DbType = L"Access";
    direct_->Provider = kStandinProvider;
    direct_->UID = L"admin";
    direct_->DBFullPath = folder_ + kFile;
    direct_->Prepare();
    direct_->Execute(TableStatement());
    Reopen();
  }

  // The product started afresh.
  void Reopen() {
    product_ = std::make_unique<testing::Product>();
    product_->shared.gDatabase = CreateOleDbDatabase();
    product_->utility->AddFile(folder_ + kFile);
    product_->utility->AddFile(testing::kLocalIni,
                               "[Setup]\r\nPostroveDBPath=" + text::ToUtf8(folder_) +
                                   "\r\n[Database]\r\nProvider2=" + text::ToUtf8(kStandinProvider) +
                                   "\r\n");
    product_->Create();
  }

  postrove::Projects& Listed() { return product_->Data().projects; }

  // As the project information dialog does. `row.id` counts for an edited row only.
  bool Save(const Project& row, bool edited) { return Listed().ProjectInfoSave(row, edited); }

  const std::vector<Project>& List() {
    Listed().GetProjectList();
    return Listed().ProjectList;
  }

  // The whole table, as it lies in the file.
  std::vector<Project> Table() {
    std::vector<Project> table;
    for (const std::vector<Cell>& row : direct_->OpenRecordset(
             L"SELECT [Project Number], [Project Name], ProjFilePath, Active, ProjectID "
             L"FROM Project ORDER BY ProjectID")) {
      const auto text = [&row](std::size_t field) {
        const auto* const words = std::get_if<std::wstring>(&row[field]);
        return words ? *words : std::wstring();
      };
      table.push_back(
          {text(0), text(1), text(2), std::get<bool>(row[3]), std::get<std::int64_t>(row[4])});
    }
    return table;
  }

  Rows Schema() { return direct_->OpenRecordset(L"SELECT type, name, sql FROM sqlite_master"); }

  static constexpr wchar_t kFile[] = L"Postrove.mdb";

  const testing::LoadedProvider provider_;
  const TemporaryFolder temporary_;
  const std::wstring folder_ = temporary_.Path();
  const std::shared_ptr<clsDatabase> direct_ = CreateOleDbDatabase();
  std::unique_ptr<testing::Product> product_;

 private:
  // The one that makes the table of the sample database.
  static std::wstring TableStatement() {
    const std::string script = Bytes(WindowsPath(POSTROVE_SAMPLE_SCRIPT)).value_or(std::string());
    const std::size_t begin = script.find("CREATE TABLE Project");
    if (begin == std::string::npos) throw std::runtime_error("no table in the sample database");
    return text::FromUtf8(script.substr(begin, script.find(';', begin) - begin));
  }
};

TEST_F(Projects, AreAddedEditedAndListedAgainAfterReopening) {
  EXPECT_THAT(List(), IsEmpty());
  EXPECT_EQ(L"", Listed().GetNewProjectNumber());
  ASSERT_TRUE(Save({L"2204", L"St Mary's Hospital", L"C:\\Projects\\2204\\", true}, false));
  ASSERT_TRUE(Save({L"2199", L"Canal Street", L"", true}, false));
  ASSERT_TRUE(Save({L"2209", L"Quarry Haul Road", L"", false}, false));
  ASSERT_TRUE(Save({L"0", L"Not a project", L"", true}, false));

  const Project canal{L"2199", L"Canal Street", L"", true, 2};
  EXPECT_THAT(List(), ElementsAre(canal, Project{L"2204", L"St Mary's Hospital",
                                                 L"C:\\Projects\\2204\\", true, 1}));
  EXPECT_EQ(L"2300", [this] {
    EXPECT_TRUE(Save({L"2299", L"Zoo", L"", true}, false));
    return Listed().GetNewProjectNumber();
  }());

  const Project moved{L"2204-A", L"St Mary's \"Boiler\" House", L"D:\\2204", true, 1};
  ASSERT_TRUE(Save(moved, true));
  ASSERT_TRUE(Save({L"2299", L"Zoo", L"", false, 5}, true));
  EXPECT_THAT(List(), ElementsAre(canal, moved));

  Reopen();
  EXPECT_THAT(List(), ElementsAre(canal, moved));
  EXPECT_THAT(Table(), SizeIs(5));
}

// Half of the rows are added, the others written over one row each that was there before.
TEST_F(Projects, AnyTextEndsAsOneRowOrAsAnError) {
  const std::wstring kTexts[] = {
      L"O'Hara's",
      L"'",
      L"''",
      L"'); DROP TABLE Project; --",
      L"', '', '', True); DELETE FROM Project; --",
      L"' WHERE 1 = 1; /*",
      L"' || (SELECT max(ProjectID) FROM Project) || '",
      L"{d '2024-05-12'} :name @name $1 ? NULL \\' %_*[`\"",
      L"\t\r\n\x1B",
      L"e\u0301 \u041C\u043E\u0441\u0442 \uFF07 \U0001F468\u200D\U0001F680",
      std::wstring(1, L'\0'),  // ends the statement within a text
      std::wstring(5000, L'\u6A4B'),
      L""};
  constexpr std::int32_t kRows = 50;
  for (std::int32_t i = 0; i < kRows / 2; ++i)
    direct_->Execute(L"INSERT INTO Project ([Project Number], Active) VALUES ('Before', True)");
  std::vector<Project> expected = Table();
  const Rows schema = Schema();
  for (std::int32_t i = 0; i < kRows; ++i) {
    const auto text = [&](std::int32_t step) {
      return kTexts[static_cast<std::size_t>(i * step + i / 13) % std::size(kTexts)];
    };
    const bool edited = i % 2 == 1;
    const Project row{text(1), text(2), text(3), i % 4 > 0,
                      edited ? i / 2 + 1 : static_cast<std::int32_t>(expected.size()) + 1};
    const bool good = (row.number + row.name + row.filePath).find(L'\0') == std::wstring::npos;
    if (!good) product_->utility->ExpectMessage();
    ASSERT_EQ(good, Save(row, edited)) << ::testing::PrintToString(row);
    if (good && edited) expected[static_cast<std::size_t>(row.id) - 1] = row;
    if (good && !edited) expected.push_back(row);
  }
  EXPECT_EQ(schema, Schema());
  EXPECT_EQ(expected, Table());
}

// The stand-in for Jet is no milder than Jet with statements that end in another place.
TEST_F(Projects, TheStandInRunsOneStatementAndNothingBehindIt) {
  const std::pair<const wchar_t*, const wchar_t*> cases[] = {
      {L"DELETE FROM Project WHERE", L"incomplete input"},
      {L"DELETE FROM Project WHERE ProjFilePath = 'O'x'; ", L"unrecognized token"},
      {L"DELETE FROM Project WHERE ProjFilePath = 'O'; ' ", L"Characters found after end"},
      {L"SELECT 1; DELETE FROM Project", L"Characters found after end of SQL statement."},
      {L"DELETE FROM Project;; ", L"Characters found after end of SQL statement."},
      {L"DELETE FROM Project WHERE 'a;b' = \"c;\" OR [b] ; x", L"Characters found after end"},
      {L"DELETE FROM Project -- all", L"Syntax error"},
      {L"DELETE FROM Project /* all */", L"Syntax error"},
      {L"DELETE FROM Project WHERE ProjectID = ?", L"required parameters"},
  };
  ASSERT_TRUE(Save({L"1", L"One", L"", true}, false));
  for (const auto& [statement, reason] : cases) {
    try {
      direct_->Execute(statement);
      ADD_FAILURE() << "no error";
    } catch (const Error& error) {
      EXPECT_NE(error.Description().find(reason), std::wstring::npos);
    }
  }
  EXPECT_THAT(Table(), SizeIs(1));
  EXPECT_EQ((Rows{{std::wstring(L"a;'b--"), std::wstring(L"c/*")}}),
            direct_->OpenRecordset(L"SELECT 'a;''b--', 'c/*' AS [d--e]; \r\n"));
}

}  // namespace
}  // namespace postrove
