#include <windows.h>

#include <gmock/gmock.h>
#include <oleauto.h>

#include "consumer.h"

namespace {

using consumer::Bind;
using consumer::ComPtr;
using consumer::Query;
using testing::ElementsAre;

class RowsetTest : public testing::Test {
 protected:
  ~RowsetTest() override {
    session_.Reset();
    EXPECT_EQ(0, provider_.OpenObjects());
  }

  ComPtr<IRowset> Rows(const wchar_t* text) { return consumer::Rows(session_.Get(), text); }

  HACCESSOR Accessor(IRowset* rowset, std::vector<DBBINDING> bindings) {
    const auto accessors = consumer::As<IAccessor>(rowset, IID_IAccessor);
    HACCESSOR accessor = 0;
    EXPECT_EQ(S_OK, accessors->CreateAccessor(DBACCESSOR_ROWDATA, bindings.size(), bindings.data(),
                                              0, &accessor, nullptr));
    return accessor;
  }

  const consumer::Provider provider_;
  const consumer::DatabaseFile file_;
  ComPtr<IDBCreateCommand> session_ = consumer::Open(provider_, file_.Path());
};

TEST_F(RowsetTest, GivesJetsTypes) {
  ASSERT_EQ(S_OK, consumer::Execute(session_.Get(),
                                    L"CREATE TABLE Kinds (t TEXT, i INTEGER, b BOOLEAN, r REAL)"));
  ASSERT_EQ(S_OK,
            consumer::Execute(session_.Get(),
                              L"INSERT INTO Kinds VALUES ('Ö€ж\U0001F309', 2147483647, True, "
                              L"0.5), ('', -2147483648, False, -2), (NULL, NULL, NULL, NULL), "
                              L"('007', 2147483648, 1, 1e10)"));
  const auto rows = Query(session_.Get(), L"SELECT t, i, b, r FROM Kinds ORDER BY rowid");
  EXPECT_THAT(
      rows, ElementsAre(
                ElementsAre(L"BSTR Ö€ж\U0001F309", L"I4 2147483647", L"BOOL -1", L"R8 0.500000"),
                ElementsAre(L"BSTR ", L"I4 -2147483648", L"BOOL 0", L"R8 -2.000000"),
                ElementsAre(L"NULL", L"NULL", L"NULL", L"NULL"),
                ElementsAre(L"BSTR 007", L"I8 2147483648", L"BOOL -1", L"R8 10000000000.000000")));
}

TEST_F(RowsetTest, HasRowsThatMustBeReleased) {
  const ComPtr<IRowset> rowset = Rows(L"SELECT ProjectID FROM Project ORDER BY ProjectID");
  HROW* rows = nullptr;
  DBCOUNTITEM got = 0;
  ASSERT_EQ(S_OK, rowset->GetNextRows(DB_NULL_HCHAPTER, 1, 2, &got, &rows));
  ASSERT_EQ(2u, got);
  HROW* more = nullptr;
  DBCOUNTITEM moreGot = 0;
  EXPECT_EQ(DB_E_ROWSNOTRELEASED, rowset->GetNextRows(DB_NULL_HCHAPTER, 0, 1, &moreGot, &more));
  EXPECT_EQ(DB_E_ROWSNOTRELEASED, rowset->RestartPosition(DB_NULL_HCHAPTER));

  DBREFCOUNT references[2] = {};
  DBROWSTATUS status[2] = {};
  EXPECT_EQ(S_OK, rowset->AddRefRows(1, rows, references, nullptr));
  EXPECT_EQ(2u, references[0]);
  EXPECT_EQ(S_OK, rowset->ReleaseRows(2, rows, nullptr, references, status));
  EXPECT_THAT(references, ElementsAre(1u, 0u));
  EXPECT_EQ(DB_S_ERRORSOCCURRED, rowset->ReleaseRows(2, rows, nullptr, references, status));
  EXPECT_THAT(status, ElementsAre(static_cast<DBROWSTATUS>(DBROWSTATUS_S_OK),
                                  static_cast<DBROWSTATUS>(DBROWSTATUS_E_INVALID)));
  LONG id = 0;
  const HACCESSOR accessor = Accessor(rowset.Get(), {Bind(1, DBTYPE_I4, 0)});
  EXPECT_EQ(DB_E_BADROWHANDLE, rowset->GetData(rows[0], accessor, &id));
  CoTaskMemFree(rows);
}

TEST_F(RowsetTest, RefusesBadBindings) {
  const ComPtr<IRowset> rowset = Rows(L"SELECT ProjectID, [Project Name] FROM Project");
  const auto accessors = consumer::As<IAccessor>(rowset.Get(), IID_IAccessor);
  HACCESSOR accessor = 0;
  const DBBINDING good = Bind(1, DBTYPE_VARIANT, 0);
  EXPECT_EQ(DB_E_BADACCESSORFLAGS,
            accessors->CreateAccessor(DBACCESSOR_PARAMETERDATA, 1, &good, 0, &accessor, nullptr));
  DBBINDING noPart = good, providerOwned = good;
  noPart.dwPart = 0;
  providerOwned.dwMemOwner = DBMEMOWNER_PROVIDEROWNED;
  const DBBINDING bindings[] = {
      good,   Bind(0, DBTYPE_I4, 0), Bind(3, DBTYPE_I4, 0), Bind(1, DBTYPE_IUNKNOWN, 0),
      noPart, providerOwned};
  DBBINDSTATUS status[6] = {};
  EXPECT_EQ(DB_E_ERRORSOCCURRED,
            accessors->CreateAccessor(DBACCESSOR_ROWDATA, 6, bindings, 0, &accessor, status));
  EXPECT_THAT(status, ElementsAre(DBBINDSTATUS_OK, DBBINDSTATUS_BADORDINAL, DBBINDSTATUS_BADORDINAL,
                                  DBBINDSTATUS_UNSUPPORTEDCONVERSION, DBBINDSTATUS_BADBINDINFO,
                                  DBBINDSTATUS_BADBINDINFO));

  ASSERT_EQ(S_OK, accessors->CreateAccessor(DBACCESSOR_ROWDATA, 1, &good, 0, &accessor, nullptr));
  DBREFCOUNT references = 0;
  EXPECT_EQ(S_OK, accessors->AddRefAccessor(accessor, &references));
  EXPECT_EQ(2u, references);
  EXPECT_EQ(S_OK, accessors->ReleaseAccessor(accessor, nullptr));
  EXPECT_EQ(S_OK, accessors->ReleaseAccessor(accessor, &references));
  EXPECT_EQ(0u, references);
  EXPECT_EQ(DB_E_BADACCESSORHANDLE, accessors->ReleaseAccessor(accessor, nullptr));
}

TEST_F(RowsetTest, SaysWhatDoesNotFit) {
  struct Row {
    wchar_t start[8];
    DBSTATUS status[3];
    LONG notANumber;
    wchar_t null[4];
  } row{};
  const ComPtr<IRowset> rowset =
      Rows(L"SELECT [Project Name], NULL FROM Project WHERE [Project Number] = '2231'");
  std::vector<DBBINDING> bindings{Bind(1, DBTYPE_WSTR, offsetof(Row, start), sizeof row.start),
                                  Bind(1, DBTYPE_I4, offsetof(Row, notANumber)),
                                  Bind(2, DBTYPE_WSTR, offsetof(Row, null), sizeof row.null)};
  for (std::size_t i = 0; i < bindings.size(); ++i) {
    bindings[i].dwPart |= DBPART_STATUS;
    bindings[i].obStatus = offsetof(Row, status) + i * sizeof(DBSTATUS);
  }
  const HACCESSOR accessor = Accessor(rowset.Get(), bindings);
  HROW handle = 0;
  HROW* rows = &handle;
  DBCOUNTITEM got = 0;
  ASSERT_EQ(S_OK, rowset->GetNextRows(DB_NULL_HCHAPTER, 0, 1, &got, &rows));
  EXPECT_EQ(DB_S_ERRORSOCCURRED, rowset->GetData(handle, accessor, &row));
  rowset->ReleaseRows(1, &handle, nullptr, nullptr, nullptr);
  EXPECT_STREQ(L"Harbour", row.start);
  EXPECT_THAT(row.status, ElementsAre(static_cast<DBSTATUS>(DBSTATUS_S_TRUNCATED),
                                      static_cast<DBSTATUS>(DBSTATUS_E_CANTCONVERTVALUE),
                                      static_cast<DBSTATUS>(DBSTATUS_S_ISNULL)));
}

}  // namespace
