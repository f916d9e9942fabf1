#include <gmock/gmock.h>

#include "consumer.h"

namespace {

using consumer::ComPtr;
using consumer::ErrorText;
using consumer::Query;
using testing::ElementsAre;
using testing::HasSubstr;

class Statement : public testing::Test {
 protected:
  HRESULT Execute(const wchar_t* text, DBROWCOUNT* affected = nullptr) {
    return consumer::Execute(session_.Get(), text, affected);
  }

  const consumer::Provider provider_;
  const consumer::DatabaseFile file_;
  const ComPtr<IDBCreateCommand> session_ = consumer::Open(provider_, file_.Path());
};

TEST_F(Statement, ComparesAndCountsAsJetDoes) {
  ASSERT_EQ(S_OK, Execute(L"INSERT INTO Project ([Project Number], [Project Name], ProjFilePath, "
                          L"[Active]) VALUES ('A''19', 'O''Hara; \"Б\" [x]', '', True);"));
  EXPECT_THAT(Query(session_.Get(),
                    L"SELECT [Project Name], Active, ProjectID FROM Project "
                    L"WHERE [Project Number] = 'a''19'; "),
              ElementsAre(ElementsAre(L"BSTR O'Hara; \"Б\" [x]", L"BOOL -1", L"I4 41")));
  DBROWCOUNT affected = 0;
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

}  // namespace
