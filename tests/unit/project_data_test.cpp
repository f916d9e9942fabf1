// The table Project: statements, list, next number, duplicates, saving; and the label file.

#include "data/label_file.h"
#include "data/project_sql.h"
#include "gtest/gtest.h"
#include "memory/Product.h"

namespace postrove::testing {
namespace {

TEST(ProjectSql, StatementsToTheLetter) {
  const std::wstring head =
      L"SELECT P.[Project Number], P.[Project Name], P.ProjFilePath, P.Active, P.ProjectID FROM "
      L"Project AS P WHERE P.[Project Number] <> '0' ";
  EXPECT_EQ(sql::ListProjects(L"Access"), head + L"AND P.Active ORDER BY P.[Project Name]");
  EXPECT_EQ(sql::ListProjects(L"sqlserver"),
            head + L"AND P.Active = 'true' ORDER BY P.[Project Name]");
  EXPECT_EQ(sql::GreatestProjectNumber(), L"SELECT max([Project Number]) FROM Project;");
  EXPECT_EQ(sql::FindProjectNumber(L"O'1"),
            L"SELECT [Project Number] FROM Project WHERE [Project Number] = 'O'1'; ");
  const std::wstring insert =
      L"INSERT INTO Project ([Project Number], [Project Name], ProjFilePath, [Active]) "
      L"VALUES ('1''2', 'O''''Hara', 'P:\\x''', ";
  const std::wstring update =
      L"UPDATE Project SET [Project Number] = '1', [Project Name] = 'Mill', [ProjFilePath] = '', "
      L"[Active] = ";
  for (const bool server : {false, true}) {
    const std::wstring type = server ? L"sqlserver" : L"Access";
    EXPECT_EQ(sql::InsertProject({L"1'2", L"O''Hara", L"P:\\x'", true}, type),
              insert + (server ? L"'True');" : L"True);"));
    EXPECT_EQ(sql::UpdateProject({L"1", L"Mill", L"", false}, 42, type),
              update + (server ? L"'False'" : L"False") + L" WHERE ProjectID = 42;");
  }
}

TEST(ProjectSql, NextNumber) {
  const wchar_t* const cases[][2] = {{L"", L""},          {L"2024-07", L"2024-08"},
                                     {L"A19", L"A20"},    {L"A099", L"A100"},
                                     {L"A-99", L""},      {L"A", L""},
                                     {L"12a", L""},       {L"9", L"10"},
                                     {L"99", L"100"},     {L"999", L""},
                                     {L"A998", L"A999"},  {L"A999", L""},
                                     {L"X9", L""},        {L"2231", L"2232"},
                                     {L"A09", L"A10"},    {L"04-129", L"04-130"},
                                     {L"1099", L"1100"},  {L"B 07", L"B 08"},
                                     {L"5 199", L"5200"}, {L"0", L"1"}};
  for (const auto& one : cases) {
    EXPECT_EQ(sql::NextProjectNumber(one[0]), one[1]) << text::ToUtf8(one[0]);
  }
}

class ProjectData : public ::testing::Test {
 protected:
  ProjectData() { product_.Start(); }
  const std::wstring list_ = sql::ListProjects(L"Access");
  Product product_;
};

TEST_F(ProjectData, ReadsWhateverTheColumnsHold) {
  product_.database->SetRows(list_, {{L"2231", L"Mill", L"P:\\Mill", true, std::int64_t{7}},
                                     {std::int64_t{17}, L"Padded   ", Cell(), std::int64_t{1}, 8.0},
                                     {Cell(), L"\x0395\x03C1\x03B3\x03BF", L"", L"true", L"9"},
                                     {L"", L"", L"", -1.0, std::int64_t{0x100000001}},
                                     {L"", L"", L"", true, L"12-A"},
                                     {L"", L"", L"", true, Cell()},
                                     {L"", L"", L"", true, 1e300}});
  product_.Data().projects.GetProjectList();
  const std::vector<Project>& list = product_.Data().projects.ProjectList;
  const std::int64_t kKeys[] = {7, 8, 9, 0x100000001, 0, 0, 0};
  ASSERT_EQ(list.size(), std::size(kKeys));
  EXPECT_EQ(list[0].filePath, L"P:\\Mill");
  EXPECT_EQ(list[1].number + L"|" + list[1].name + L"|" + list[1].filePath, L"17|Padded|");
  EXPECT_EQ(list[2].number, L"");
  for (std::size_t row = 0; row < list.size(); ++row) {
    EXPECT_TRUE(list[row].active);
    EXPECT_EQ(list[row].id, kKeys[row]);
  }
}

TEST_F(ProjectData, FailuresAreReportedOnceAndNothingIsSaved) {
  Projects& projects = product_.Data().projects;
  product_.database->SetHandler([](const RanStatement&) -> Rows {
    throw Error(static_cast<long>(0x80004005), L"Test", L"The server does not answer.");
  });
  const auto reported = [&](const wchar_t* procedure, const std::function<void()>& body) {
    const std::size_t before = product_.utility->Messages().size();
    product_.utility->ExpectMessage();
    body();
    ASSERT_EQ(product_.utility->Messages().size(), before + 1);
    EXPECT_NE(product_.utility->Messages().back().text.find(procedure), std::wstring::npos);
  };
  projects.ProjectList = {{L"1", L"old", L"", true, 1}};
  reported(L"GetProjectList()", [&] { projects.GetProjectList(); });
  EXPECT_TRUE(projects.ProjectList.empty());
  reported(L"GetNewProjectNumber()", [&] { EXPECT_EQ(projects.GetNewProjectNumber(), L""); });
  reported(L"IsExisitingProjectNumber()",
           [&] { EXPECT_FALSE(projects.IsExisitingProjectNumber(L"1")); });
  reported(L"ProjectInfoSave()", [&] { EXPECT_FALSE(projects.ProjectInfoSave({}, false)); });
}

TEST_F(ProjectData, DuplicateNumbersAreAskedAbout) {
  Projects& projects = product_.Data().projects;
  product_.Data().settings.WorkUnit = L"Job";
  product_.database->SetRows(sql::FindProjectNumber(L"7"), {{L"7"}});
  EXPECT_FALSE(projects.IsExisitingProjectNumber(L"8"));
  // Never part of a statement: some servers run a second one.
  const std::size_t ran = product_.database->Statements().size();
  product_.utility->ExpectMessage();
  EXPECT_FALSE(projects.IsExisitingProjectNumber(L"7'; DROP TABLE Project; --"));
  EXPECT_EQ(product_.database->Statements().size(), ran);
  for (const MessageAnswer answer : {MessageAnswer::Yes, MessageAnswer::No}) {
    product_.utility->ExpectMessage(answer);
    EXPECT_EQ(projects.IsExisitingProjectNumber(L"7"), answer == MessageAnswer::No);
    EXPECT_EQ(
        product_.utility->Messages().back(),
        (ShownMessage{L"The Job Number already exists. Do you want to add a duplicate?",
                      L"Existing Job Number", MessageButtons::YesNo, MessageIcon::Information}));
  }
}

constexpr wchar_t kLabels[] =
    L"3\r\nheading\r\n"
    L"a|Choose a <workunit>|really\r\nno bar\r\nempty|\r\n[Form]\r\n"
    L"own|own text\r\nshared|shared text\r\nb|If the \"Use Group Settings\" box is checked, it is "
    L"recommended that you do not change this setting.  The rest\r\n[Form] end\r\n"
    L"[Form]\r\n";

TEST(LabelFile, BlocksVariantsAndPlaceholders) {
  const LabelTable own = ReadLabelFile(TextStream(kLabels), L"Job", false);
  ASSERT_EQ(own.size(), 3u);
  EXPECT_EQ(own[0], (std::vector<std::wstring>{L"Choose a Job|really", L"no bar", L""}));
  EXPECT_EQ(own[1][0], L"own text");
  EXPECT_EQ(own[1].size(), 2u);
  EXPECT_TRUE(own[1][1].starts_with(L"If the"));
  EXPECT_TRUE(own[2].empty());
  const LabelTable shared = ReadLabelFile(TextStream(kLabels), L"Job", true);
  EXPECT_EQ(shared[1], (std::vector<std::wstring>{L"shared text", L"The rest"}));
}

TEST(LabelFile, DamagedFilesAreErrors) {
  const struct {
    std::wstring text;
    long number;
  } cases[] = {{L"", kInputPastEnd},
               {L"0\r\nx\r\n", kSubscriptOutOfRange},
               {L"many\r\nx\r\n", kSubscriptOutOfRange},
               {L"-1\r\nx\r\n", kSubscriptOutOfRange},
               {L"1", kInputPastEnd},
               {L"1\r\nx\r\na|b\r\n", kInputPastEnd},
               {L"4" + std::wstring(kLabels).substr(1), kInputPastEnd},
               {L"2\r\nx\r\n[Form]\r\nonly|one variant", kInputPastEnd},
               {L"99999999999\r\nx\r\n", kSubscriptOutOfRange}};
  for (const auto& one : cases) {
    for (const bool shared : {false, true}) {
      try {
        ReadLabelFile(TextStream(one.text), L"Job", shared);
        ADD_FAILURE() << text::ToUtf8(one.text);
      } catch (const Error& error) {
        EXPECT_EQ(error.Number(), one.number) << text::ToUtf8(one.text);
      }
    }
  }
}

TEST_F(ProjectData, LabelsReachTheDialogAndADamagedFileCostsNothingElse) {
  const std::wstring folder = std::wstring(kAppData) + L"\\Postrove\\";
  product_.utility->AddFile(folder + L"Postrove.cnt",
                            "1\r\nh\r\na|The <WorkUnit>\r\nb|f\r\nc|n\r\nd|In &Folder: \r\n"
                            "e|Call it: \r\n[Form]\r\n");
  product_.utility->AddFile(folder + L"Postrove.ini", "[Setup]\r\nWorkUnit=Job\r\n");
  product_.Start();
  product_.utility->Remove(folder + L"Postrove.cnt");
  product_.Data().LocateSettingsFile();  // a missing file leaves the labels as they are
  product_.utility->AddFile(folder + L"Postrove.cnt", "2\r\nh\r\na|x\r\n[Form]\r\n");
  product_.utility->ExpectMessage();
  const std::size_t lists = product_.database->Statements().size();
  for (const std::size_t change : {1u, 2u}) {  // told at the first only
    EXPECT_TRUE(product_.Data().PostroveDefaultsSave(0, L"P:\\"));
    EXPECT_EQ(product_.database->Statements().size(), lists + change);
  }
  product_.forms->Expect([](forms::Form& form) {
    auto& dialog = dynamic_cast<forms::frmPostrove&>(form);
    EXPECT_EQ(dialog.lblFolderLabel.Text() + dialog.lblNameLabel.Text(), L"In &Folder: Call it: ");
    dialog.cboPostrove.UserEntered();
    EXPECT_EQ(dialog.rtfFieldHints.Text(), L"\r\nHint:The Job");
    dialog.txtSaveFolder.UserEntered();
    EXPECT_EQ(dialog.rtfFieldHints.Text(), L"\r\nHint:f");
    dialog.txtSaveAsName.UserEntered();
    EXPECT_EQ(dialog.rtfFieldHints.Text(), L"\r\nHint:n");
    dialog.UserClosed();
  });
  product_.Click();

  product_.Start();  // tells nothing
  EXPECT_EQ(product_.utility->Messages().size(), 1u);
  product_.utility->ExpectMessage();
  product_.forms->Expect([](forms::Form& form) { form.Unload(); });
  product_.Click();
}

}  // namespace
}  // namespace postrove::testing
