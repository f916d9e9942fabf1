#include <gmock/gmock.h>

#include "consumer.h"

namespace {

using consumer::ComPtr;
using consumer::ErrorText;
using consumer::Query;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr wchar_t kList[] =
    L"SELECT P.[Project Number], P.[Project Name], P.ProjFilePath, P.Active, P.ProjectID "
    L"FROM Project AS P WHERE P.[Project Number] <> '0' AND P.Active ORDER BY P.[Project Name]";

class Statement : public testing::Test {
 protected:
  HRESULT Execute(const wchar_t* text, DBROWCOUNT* affected = nullptr) {
    return consumer::Execute(session_.Get(), text, affected);
  }

  const consumer::Provider provider_;
  const consumer::DatabaseFile file_;
  const ComPtr<IDBCreateCommand> session_ = consumer::Open(provider_, file_.Path());
};

TEST_F(Statement, ListsActiveProjectsByName) {
  const auto rows = Query(session_.Get(), kList);
  ASSERT_EQ(35u, rows.size());
  EXPECT_THAT(rows.front(),
              ElementsAre(L"BSTR 2211", L"BSTR Airport Apron Drainage",
                          L"BSTR C:\\Projects\\2211 Apron Drainage\\", L"BOOL -1", L"I4 6"));
  EXPECT_THAT(rows, testing::Contains(ElementsAre(L"BSTR 2250", L"BSTR Γέφυρα Ποταμού",
                                                  L"BSTR C:\\Projects\\2250 Γέφυρα", L"BOOL -1",
                                                  testing::_)));
  EXPECT_THAT(rows, testing::Contains(ElementsAre(L"BSTR 2231", L"BSTR Harbour Bridge", L"BSTR ",
                                                  L"BOOL -1", testing::_)));
}

TEST_F(Statement, StoresAndChangesProjects) {
  DBROWCOUNT affected = 0;
  ASSERT_EQ(S_OK, Execute(L"INSERT INTO Project ([Project Number], [Project Name], ProjFilePath, "
                          L"[Active]) VALUES ('A''19', 'O''Hara; \"Б\" [x]', '', True);",
                          &affected));
  EXPECT_EQ(1, affected);
  EXPECT_THAT(Query(session_.Get(),
                    L"SELECT [Project Name], Active, ProjectID FROM Project "
                    L"WHERE [Project Number] = 'a''19'; "),
              ElementsAre(ElementsAre(L"BSTR O'Hara; \"Б\" [x]", L"BOOL -1", L"I4 41")));
  ASSERT_EQ(S_OK, Execute(L"UPDATE Project SET [Project Number] = '2300', [Project Name] = 'Z', "
                          L"[ProjFilePath] = 'C:\\', [Active] = False WHERE ProjectID = 41;",
                          &affected));
  EXPECT_EQ(1, affected);
  EXPECT_THAT(Query(session_.Get(),
                    L"SELECT [Project Number], Active FROM Project WHERE NOT Active "
                    L"AND [Project Name] = 'z'"),
              ElementsAre(ElementsAre(L"BSTR 2300", L"BOOL 0")));
  EXPECT_THAT(Query(session_.Get(), L"SELECT max([Project Number]) FROM Project;"),
              ElementsAre(ElementsAre(L"BSTR 2300")));
  ASSERT_EQ(S_OK, Execute(L"UPDATE Project SET Active = True WHERE ProjectID > 39", &affected));
  EXPECT_EQ(2, affected);
  EXPECT_EQ(nullptr, consumer::Rows(session_.Get(), L"DELETE FROM Project").Get());
  EXPECT_THAT(Query(session_.Get(), L"SELECT max([Project Number]) FROM Project;"),
              ElementsAre(ElementsAre(L"NULL")));
}

TEST_F(Statement, ReportsItsErrorsAndDoesNothing) {
  const struct {
    const wchar_t *text, *reason;
  } cases[] = {
      {L"SELECT Missing FROM Project", L"no such column"},
      {L"SELECT * FROM Projects", L"no such table: Projects"},
      {L"DELETE FROM Project WHERE", L"incomplete input"},
      {L"DELETE FROM Project WHERE [Project Number] = 'O'x'; ", L"unrecognized token"},
      {L"DELETE FROM Project WHERE [Project Number] = 'O'; ' ", L"Characters found after end"},
      {L"SELECT 1; DELETE FROM Project", L"Characters found after end of SQL statement."},
      {L"DELETE FROM Project;; ", L"Characters found after end of SQL statement."},
      {L"DELETE FROM Project WHERE 'a;b' = \"c;\" OR [Active] ; x", L"Characters found after end"},
      {L"DELETE FROM Project -- all", L"Syntax error"},
      {L"DELETE FROM Project /* all */", L"Syntax error"},
      {L"INSERT INTO Project (Active) VALUES (NULL)", L"NOT NULL constraint failed"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(DB_E_ERRORSINCOMMAND, Execute(c.text)) << testing::PrintToString(c.text);
    EXPECT_THAT(ErrorText(), HasSubstr(c.reason)) << testing::PrintToString(c.text);
  }
  EXPECT_EQ(DB_E_PARAMNOTOPTIONAL, Execute(L"DELETE FROM Project WHERE ProjectID = ?"));
  EXPECT_THAT(ErrorText(), HasSubstr(L"required parameters"));
  EXPECT_EQ(DB_E_NOCOMMAND, Execute(L""));
  EXPECT_EQ(DB_E_ERRORSINCOMMAND, Execute(L"DELETE"));
  EXPECT_EQ(40u, Query(session_.Get(), L"SELECT 1 FROM Project").size());
  EXPECT_EQ(L"", ErrorText()) << "a success leaves no error behind";
}

TEST_F(Statement, SemicolonsAndCommentsInTextsAreText) {
  EXPECT_THAT(Query(session_.Get(), L"SELECT 'a;''b--', 'c/*' AS [d--e]; \r\n"),
              ElementsAre(ElementsAre(L"BSTR a;'b--", L"BSTR c/*")));
}

TEST_F(Statement, CommandsKnowWhatTheyAre) {
  const ComPtr<ICommandText> command = consumer::CreateCommand(session_.Get(), L"SELECT 1");
  EXPECT_EQ(DB_E_DIALECTNOTSUPPORTED, command->SetCommandText(IID_IUnknown, L"SELECT 2"));
  EXPECT_TRUE(consumer::As<ICommand>(command.Get(), IID_ICommand));
  LPOLESTR text = nullptr;
  ASSERT_EQ(S_OK, command->GetCommandText(nullptr, &text));
  EXPECT_STREQ(L"SELECT 1", text);
  CoTaskMemFree(text);
  ComPtr<IUnknown> owner;
  ASSERT_EQ(S_OK, command->GetDBSession(IID_IUnknown, owner.GetAddressOf()));
  const auto session = consumer::As<IUnknown>(session_.Get(), IID_IUnknown);
  EXPECT_EQ(session.Get(), owner.Get());
  EXPECT_EQ(E_INVALIDARG, command->Execute(nullptr, IID_IRowset, nullptr, nullptr, nullptr));
  EXPECT_EQ(DB_E_NOAGGREGATION, command->Execute(owner.Get(), IID_NULL, nullptr, nullptr, nullptr));
}

}  // namespace
