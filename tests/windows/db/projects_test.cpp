// The project table through the product's own controller and database object, on a file of the
// stand-in's. The last database stays in the build folder, with a list of what it has to hold, for
// a reader that is not ours.

#include <gmock/gmock.h>

#include <random>

#include "shared/text.h"
#include "shared/win32/OleDbDatabase.h"
#include "standin_database.h"
#include "support/Product.h"

namespace postrove {

static bool operator==(const Project& one, const Project& other) {
  return one.number == other.number && one.name == other.name && one.filePath == other.filePath &&
         one.active == other.active && one.id == other.id;
}

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
  explicit Projects(std::wstring folder = {}) : folder_(std::move(folder)) {
    if (folder_.empty()) folder_ = temporary_.Path();
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
    product_->utility->AddFile(std::wstring(testing::kAppData) + L"\\Postrove\\Postrove.ini",
                               "[Setup]\r\nPostroveDBPath=" + text::ToUtf8(folder_) +
                                   "\r\n[Database]\r\nProvider2=" + text::ToUtf8(kStandinProvider) +
                                   "\r\n");
    product_->Create();
  }

  clsPostrove& Controller() { return product_->Controller(); }

  // As the project information dialog does. `row.id` counts for an edited row only.
  bool Save(const Project& row, bool edited) {
    Controller().ProjectNumber = row.number;
    Controller().ProjectName = row.name;
    Controller().ProjFilePath = row.filePath;
    Controller().Active = row.active;
    Controller().ProjectID = row.id;
    return Controller().ProjectInfoSave(edited);
  }

  const std::vector<Project>& List() {
    Controller().GetProjectList();
    return Controller().ProjectList;
  }

  // The whole table, as it lies in the file.
  std::vector<Project> Table() {
    std::vector<Project> table;
    for (const std::vector<Cell>& row : direct_->OpenRecordset(
             L"SELECT [Project Number], [Project Name], ProjFilePath, Active, ProjectID "
             L"FROM Project ORDER BY ProjectID")) {
      table.push_back({std::get<std::wstring>(row[0]), std::get<std::wstring>(row[1]),
                       std::get<std::wstring>(row[2]), std::get<bool>(row[3]),
                       static_cast<std::int32_t>(std::get<std::int64_t>(row[4]))});
    }
    return table;
  }

  Rows Schema() { return direct_->OpenRecordset(L"SELECT type, name, sql FROM sqlite_master"); }

  static constexpr wchar_t kFile[] = L"Postrove.mdb";

  const testing::LoadedProvider provider_;
  const TemporaryFolder temporary_;
  std::wstring folder_;  // with its backslash
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
  EXPECT_EQ(L"", Controller().GetNewProjectNumber());
  ASSERT_TRUE(Save({L"2204", L"St Mary's Hospital", L"C:\\Projects\\2204\\", true}, false));
  ASSERT_TRUE(Save({L"2199", L"Canal Street", L"", true}, false));
  ASSERT_TRUE(Save({L"2209", L"Quarry Haul Road", L"", false}, false));
  ASSERT_TRUE(Save({L"0", L"Not a project", L"", true}, false));

  const Project canal{L"2199", L"Canal Street", L"", true, 2};
  EXPECT_THAT(List(), ElementsAre(canal, Project{L"2204", L"St Mary's Hospital",
                                                 L"C:\\Projects\\2204\\", true, 1}));
  EXPECT_EQ(L"2300", [this] {
    EXPECT_TRUE(Save({L"2299", L"Zoo", L"", true}, false));
    return Controller().GetNewProjectNumber();
  }());

  const Project moved{L"2204-A", L"St Mary's \"Boiler\" House", L"D:\\2204", true, 1};
  ASSERT_TRUE(Save(moved, true));
  ASSERT_TRUE(Save({L"2299", L"Zoo", L"", false, 5}, true));
  EXPECT_THAT(List(), ElementsAre(canal, moved));

  Reopen();
  EXPECT_THAT(Controller().ProjectList, ElementsAre(canal, moved));
  EXPECT_THAT(Table(), SizeIs(5));
}

// Texts made of what means something to a database, a driver or a command line, from a fixed seed.
class HostileTexts {
 public:
  Project Row(std::int32_t id) {
    Project row;
    row.number = Text();
    row.name = Text();
    row.filePath = Text();
    row.active = Below(4) > 0;
    row.id = id;
    return row;
  }

 private:
  static constexpr std::size_t kLongest = 5000;

  std::size_t Below(std::size_t limit) { return random_() % limit; }

  std::wstring Text() {
    const std::size_t longest = Below(40) == 0 ? 1 + Below(kLongest) : Below(60);
    std::wstring text;
    for (;;) {
      const std::wstring piece = Piece();
      if (text.size() + piece.size() > longest) return text;
      text += piece;
    }
  }

  std::wstring Piece() {
    static constexpr std::wstring_view kLetters = L"'\"`[];#%_*?\\{}&|0 \u200F\uFF07\u6A4B\x7F";
    static const std::wstring kWords[] = {L"''",    L"--", L"/*",   L"*/",   L"\\'",    L":name",
                                          L"@name", L"$1", L"NULL", L"\r\n", L"e\u0301"};
    static const std::wstring kStatements[] = {
        L"'); DROP TABLE Project; --", L"', '', '', True); DELETE FROM Project; --",
        L"' WHERE 1 = 1; --",          L"' || (SELECT max(ProjectID) FROM Project) || '",
        L"{d '2024-05-12'}",           L"C:\\Projects\\",
        L"\u041C\u043E\u0441\u0442",   L"\U0001F468\u200D\U0001F680"};
    switch (Below(8)) {
      case 0:
        return kStatements[Below(std::size(kStatements))];
      case 1:
      case 2:
        return kWords[Below(std::size(kWords))];
      case 3:  // a control character; none but the zero is more than a statement can carry
        return std::wstring(1, static_cast<wchar_t>(Below(100) == 0 ? 0 : 1 + Below(31)));
      default:
        return std::wstring(1, kLetters[Below(kLetters.size())]);
    }
  }

  std::mt19937 random_{20240512};
};

bool HasZero(const Project& row) {
  return (row.number + row.name + row.filePath).find(L'\0') != std::wstring::npos;
}

std::wstring WithoutBlanksAtEnd(std::wstring text) {
  while (text.ends_with(L' ')) text.pop_back();
  return text;
}

// As the list shows it.
Project Listed(Project row) {
  row.number = WithoutBlanksAtEnd(row.number);
  row.name = WithoutBlanksAtEnd(row.name);
  row.filePath = WithoutBlanksAtEnd(row.filePath);
  return row;
}

// A row as a line of UTF-8, in which backslashes, tabs and line feeds are written \\, \t and \n.
std::string Line(const Project& row) {
  std::wstring line = text::FromNumber(row.id);
  for (const std::wstring& field : {row.number, row.name, row.filePath}) {
    std::wstring escaped = text::Replace(field, L"\\", L"\\\\");
    escaped = text::Replace(escaped, L"\t", L"\\t");
    line += L"\t" + text::Replace(escaped, L"\n", L"\\n");
  }
  return text::ToUtf8(line + (row.active ? L"\t1\n" : L"\t0\n"));
}

// What stays in the build folder.
class LeftProjects : public Projects {
 protected:
  LeftProjects() : Projects(Folder()) {}

  static std::wstring Folder() {
    const std::wstring folder = WindowsPath(POSTROVE_LEFT_PROJECTS) + L"\\";
    CreateDirectoryW(folder.c_str(), nullptr);
    DeleteFileW((folder + kList).c_str());
    return folder;
  }

  static constexpr wchar_t kList[] = L"projects.txt";
};

// Half of the rows are added, the others written over one row each that was there before.
TEST_F(LeftProjects, AnyTextEndsAsOneRowOrAsAnError) {
  constexpr std::int32_t kRows = 10000, kEdited = kRows / 2;
  direct_->Execute(
      L"WITH RECURSIVE N(I) AS (SELECT 1 UNION ALL SELECT I + 1 FROM N WHERE I < 5000) INSERT INTO "
      L"Project ([Project Number], [Project Name], ProjFilePath, Active) SELECT I, 'Before', '', "
      L"True FROM N");
  std::vector<Project> expected = Table();
  ASSERT_THAT(expected, SizeIs(kEdited));
  const Rows schema = Schema();

  HostileTexts texts;
  int refused = 0;
  for (std::int32_t i = 0; i < kRows; ++i) {
    const bool edited = i % 2 == 1;
    const Project row =
        texts.Row(edited ? i / 2 + 1 : static_cast<std::int32_t>(expected.size()) + 1);
    // A statement ends at a zero: in the middle of a text, which is an error.
    const bool good = !HasZero(row);
    if (!good) {
      product_->utility->ExpectMessage();
      ++refused;
    }
    ASSERT_EQ(good, Save(row, edited)) << ::testing::PrintToString(row);
    if (good && edited) expected[static_cast<std::size_t>(row.id) - 1] = row;
    if (good && !edited) expected.push_back(row);
  }
  EXPECT_GT(refused, 10);
  EXPECT_LT(refused, kRows / 10);

  EXPECT_EQ(schema, Schema());
  const std::vector<Project> table = Table();
  ASSERT_EQ(expected.size(), table.size());
  for (std::size_t i = 0; i < table.size(); ++i) ASSERT_EQ(expected[i], table[i]);

  Reopen();
  std::vector<Project> list = Controller().ProjectList;
  std::sort(list.begin(), list.end(),
            [](const Project& one, const Project& other) { return one.id < other.id; });
  std::string lines;
  std::size_t listed = 0;
  for (const Project& row : expected) {
    lines += Line(row);
    if (!row.active || row.number == L"0") continue;
    ASSERT_LT(listed, list.size());
    ASSERT_EQ(Listed(row), list[listed++]);
  }
  EXPECT_EQ(listed, list.size());
  MakeFile(folder_ + kList, lines);
}

}  // namespace
}  // namespace postrove
