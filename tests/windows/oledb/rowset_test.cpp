#include <windows.h>

#include <gmock/gmock.h>
#include <oleauto.h>

#include "consumer.h"

namespace {

using consumer::Bind;
using consumer::ComPtr;
using consumer::Query;
using testing::ElementsAre;

constexpr DBROWCOUNT kAll = 100;

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

  const auto columns = consumer::As<IColumnsInfo>(
      Rows(L"SELECT t, i AS [The i], b, r FROM Kinds").Get(), IID_IColumnsInfo);
  DBORDINAL count = 0;
  DBCOLUMNINFO* info = nullptr;
  OLECHAR* names = nullptr;
  ASSERT_EQ(S_OK, columns->GetColumnInfo(&count, &info, &names));
  ASSERT_EQ(4u, count);
  const struct {
    const wchar_t* name;
    DBTYPE type;
  } wanted[] = {{L"t", DBTYPE_WSTR}, {L"The i", DBTYPE_I4}, {L"b", DBTYPE_BOOL}, {L"r", DBTYPE_R8}};
  for (DBORDINAL i = 0; i < count; ++i) {
    EXPECT_STREQ(wanted[i].name, info[i].pwszName);
    EXPECT_EQ(wanted[i].type, info[i].wType);
    EXPECT_EQ(i + 1, info[i].iOrdinal);
  }
  CoTaskMemFree(info);
  CoTaskMemFree(names);
}

TEST_F(RowsetTest, KeepsLongTextsWhole) {
  std::wstring text(5000, L'x');
  for (size_t i = 0; i < text.size(); i += 3) text[i] = L'Ж';
  ASSERT_EQ(
      S_OK,
      consumer::Execute(
          session_.Get(),
          (L"UPDATE Project SET [Project Name] = '" + text + L"' WHERE ProjectID = 1").c_str()));
  EXPECT_THAT(Query(session_.Get(), L"SELECT [Project Name] FROM Project WHERE ProjectID = 1"),
              ElementsAre(ElementsAre(L"BSTR " + text)));
}

TEST_F(RowsetTest, ComesInBlocksOfAnySize) {
  const wchar_t kStatement[] = L"SELECT ProjectID FROM Project ORDER BY ProjectID";
  const auto once = consumer::ReadAll(Rows(kStatement).Get(), kAll);
  ASSERT_EQ(40u, once.size());
  // 1: every row by itself; 8, 40: the end comes with an empty block; 39, 41: with a short one.
  for (const DBROWCOUNT block : {1, 8, 39, 40, 41}) {
    EXPECT_EQ(once, consumer::ReadAll(Rows(kStatement).Get(), block)) << block;
  }
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

  HROW row = 0;
  HROW* ownMemory = &row;
  ASSERT_EQ(S_OK, rowset->GetNextRows(DB_NULL_HCHAPTER, 36, 1, &got, &ownMemory));
  EXPECT_EQ(DB_E_BADACCESSORHANDLE, rowset->GetData(row, accessor + 1, &id));
  ASSERT_EQ(S_OK, rowset->GetData(row, accessor, &id));
  EXPECT_EQ(40, id) << "one, then 36 were skipped";
  rowset->ReleaseRows(1, &row, nullptr, nullptr, nullptr);
  EXPECT_EQ(DB_E_CANTFETCHBACKWARDS,
            rowset->GetNextRows(DB_NULL_HCHAPTER, 0, -1, &got, &ownMemory));
  EXPECT_EQ(DB_E_CANTSCROLLBACKWARDS,
            rowset->GetNextRows(DB_NULL_HCHAPTER, -1, 1, &got, &ownMemory));
  EXPECT_EQ(DB_S_ENDOFROWSET, rowset->GetNextRows(DB_NULL_HCHAPTER, 0, 1, &got, &ownMemory));
  EXPECT_EQ(0u, got);
  EXPECT_EQ(DB_E_CANNOTRESTART, rowset->RestartPosition(DB_NULL_HCHAPTER));
}

TEST_F(RowsetTest, HoldsRowsAndTheCommandWhenAsked) {
  const ComPtr<ICommandText> command =
      consumer::CreateCommand(session_.Get(), L"SELECT ProjectID FROM Project");
  const auto properties = consumer::As<ICommandProperties>(command.Get(), IID_ICommandProperties);
  DBPROP hold{};
  hold.dwPropertyID = DBPROP_CANHOLDROWS;
  V_VT(&hold.vValue) = VT_BOOL;
  V_BOOL(&hold.vValue) = VARIANT_TRUE;
  DBPROP back = hold;
  back.dwPropertyID = DBPROP_CANFETCHBACKWARDS;
  DBPROP both[] = {hold, back};
  DBPROPSET set{both, 2, {0xc8b522be, 0x5cf3, 0x11ce, {0xad, 0xe5, 0, 0xaa, 0, 0x44, 0x77, 0x3d}}};
  EXPECT_EQ(DB_S_ERRORSOCCURRED, properties->SetProperties(1, &set));
  EXPECT_EQ(static_cast<DBPROPSTATUS>(DBPROPSTATUS_NOTSETTABLE), both[1].dwStatus);

  ComPtr<IRowset> rowset;
  ASSERT_EQ(S_OK, command->Execute(nullptr, IID_IRowset, nullptr, nullptr,
                                   reinterpret_cast<IUnknown**>(rowset.GetAddressOf())));
  EXPECT_EQ(DB_E_OBJECTOPEN, properties->SetProperties(1, &set));
  EXPECT_EQ(DB_E_OBJECTOPEN, command->SetCommandText(GUID{}, L"SELECT 1"));
  for (int i = 0; i < 2; ++i) {
    HROW row = 0;
    HROW* rows = &row;
    DBCOUNTITEM got = 0;
    EXPECT_EQ(S_OK, rowset->GetNextRows(DB_NULL_HCHAPTER, 0, 1, &got, &rows));
  }
}

TEST_F(RowsetTest, RefusesBadBindings) {
  const ComPtr<IRowset> rowset = Rows(L"SELECT ProjectID, [Project Name] FROM Project");
  const auto accessors = consumer::As<IAccessor>(rowset.Get(), IID_IAccessor);
  HACCESSOR accessor = 0;
  const DBBINDING good = Bind(1, DBTYPE_VARIANT, 0);
  EXPECT_EQ(DB_E_BADACCESSORFLAGS,
            accessors->CreateAccessor(DBACCESSOR_PARAMETERDATA, 1, &good, 0, &accessor, nullptr));
  EXPECT_EQ(DB_E_BYREFACCESSORNOTSUPPORTED,
            accessors->CreateAccessor(DBACCESSOR_ROWDATA | DBACCESSOR_PASSBYREF, 1, &good, 0,
                                      &accessor, nullptr));
  EXPECT_EQ(DB_E_NULLACCESSORNOTSUPPORTED,
            accessors->CreateAccessor(DBACCESSOR_ROWDATA, 0, nullptr, 0, &accessor, nullptr));

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

TEST_F(RowsetTest, ConvertsColumnByColumn) {
  struct Row {
    LONG id;
    wchar_t start[8];
    DBLENGTH startLength;
    DBSTATUS startStatus;
    wchar_t* whole;
    LONG notANumber;
    DBSTATUS notANumberStatus;
    SHORT small;
    DBSTATUS smallStatus;
    wchar_t null[4];
    DBSTATUS nullStatus;
    BSTR active;
  } row{};
  const ComPtr<IRowset> rowset = Rows(
      L"SELECT ProjectID, [Project Name], 70000 + 0, NULL, Active FROM Project "
      L"WHERE [Project Number] = '2231'");
  const auto with = [](DBBINDING binding, DBBYTEOFFSET status) {
    binding.dwPart |= DBPART_STATUS;
    binding.obStatus = status;
    return binding;
  };
  DBBINDING start = with(Bind(2, DBTYPE_WSTR, offsetof(Row, start), sizeof row.start),
                         offsetof(Row, startStatus));
  start.dwPart |= DBPART_LENGTH;
  start.obLength = offsetof(Row, startLength);
  const HACCESSOR accessor = Accessor(
      rowset.Get(),
      {Bind(1, DBTYPE_I4, offsetof(Row, id)), start,
       Bind(2, DBTYPE_WSTR | DBTYPE_BYREF, offsetof(Row, whole)),
       with(Bind(2, DBTYPE_I4, offsetof(Row, notANumber)), offsetof(Row, notANumberStatus)),
       with(Bind(3, DBTYPE_I2, offsetof(Row, small)), offsetof(Row, smallStatus)),
       with(Bind(4, DBTYPE_WSTR, offsetof(Row, null), sizeof row.null), offsetof(Row, nullStatus)),
       Bind(5, DBTYPE_BSTR, offsetof(Row, active))});
  HROW handle = 0;
  HROW* rows = &handle;
  DBCOUNTITEM got = 0;
  ASSERT_EQ(S_OK, rowset->GetNextRows(DB_NULL_HCHAPTER, 0, 1, &got, &rows));
  EXPECT_EQ(DB_S_ERRORSOCCURRED, rowset->GetData(handle, accessor, &row));
  rowset->ReleaseRows(1, &handle, nullptr, nullptr, nullptr);

  EXPECT_EQ(16, row.id);
  EXPECT_STREQ(L"Harbour", row.start);
  EXPECT_EQ(sizeof(wchar_t) * 14, row.startLength) << "of the whole text";
  EXPECT_EQ(static_cast<DBSTATUS>(DBSTATUS_S_TRUNCATED), row.startStatus);
  EXPECT_STREQ(L"Harbour Bridge", row.whole);
  EXPECT_EQ(static_cast<DBSTATUS>(DBSTATUS_E_CANTCONVERTVALUE), row.notANumberStatus);
  EXPECT_EQ(static_cast<DBSTATUS>(DBSTATUS_E_DATAOVERFLOW), row.smallStatus);
  EXPECT_EQ(static_cast<DBSTATUS>(DBSTATUS_S_ISNULL), row.nullStatus);
  EXPECT_STREQ(L"True", row.active);
  CoTaskMemFree(row.whole);
  SysFreeString(row.active);
}

}  // namespace
