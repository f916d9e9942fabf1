// The product's database object by the rules of OLE DB, and against them: on the stand-in provider,
// which fails as a test plans.

#include <gmock/gmock.h>
#include <windows.h>

#include <psapi.h>

#include "oledb/com_object.h"
#include "shared/error.h"
#include "shared/text.h"
#include "shared/win32/OleDbDatabase.h"
#include "shared/win32/ole_db_command.h"
#include "shared/win32/system_error.h"
#include "standin_database.h"

template <>
inline constexpr const IID* standin::kIid<IErrorInfo> = &IID_IErrorInfo;
template <>
inline constexpr const IID* standin::kIid<IErrorRecords> = &IID_IErrorRecords;

namespace postrove {
namespace {

using Microsoft::WRL::ComPtr;
using ::testing::HasSubstr;
using testing::kStandinProvider;
using testing::RegistryName;

template <typename F>
Error ErrorOf(F&& run) {
  try {
    run();
  } catch (const Error& error) {
    return error;
  }
  ADD_FAILURE() << "there was no error";
  return Error(0, {}, {});
}

ComPtr<IErrorInfo> Information(const std::wstring& text) {
  ComPtr<ICreateErrorInfo> created;
  ComPtr<IErrorInfo> information;
  CreateErrorInfo(created.GetAddressOf());
  created->SetDescription(const_cast<LPOLESTR>(text.c_str()));
  created.As(&information);
  return information;
}

// Error records, whose own description is not the one to show.
class Records final : public standin::ComObject<IErrorInfo, IErrorRecords> {
 public:
  explicit Records(std::vector<std::wstring> texts) : texts_(std::move(texts)) {}

  HRESULT STDMETHODCALLTYPE GetGUID(GUID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetSource(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetDescription(BSTR* text) override {
    *text = SysAllocString(L"the records as a whole");
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE AddErrorRecord(ERRORINFO*, DWORD, DISPPARAMS*, IUnknown*,
                                           DWORD) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetBasicErrorInfo(ULONG, ERRORINFO*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetCustomErrorObject(ULONG, REFIID, IUnknown**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetErrorInfo(ULONG i, LCID, IErrorInfo** information) override {
    return Information(texts_.at(i)).CopyTo(information);
  }
  HRESULT STDMETHODCALLTYPE GetErrorParameters(ULONG, DISPPARAMS*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetRecordCount(ULONG* count) override {
    *count = static_cast<ULONG>(texts_.size());
    return S_OK;
  }

 private:
  const std::vector<std::wstring> texts_;
};

// A method fails: with one text as plain error information, with more as records.
std::function<HRESULT()> Failing(HRESULT result, std::vector<std::wstring> texts = {}) {
  return [=] {
    if (texts.size() == 1) SetErrorInfo(0, Information(texts[0]).Get());
    if (texts.size() > 1) SetErrorInfo(0, ComPtr<Records>(new Records(texts)).Get());
    return result;
  };
}

class OleDb : public ::testing::Test {
 protected:
  OleDb() {
    testing::MakeEmptyDatabase(file_);
    database_->DbType = L"Access";
    database_->Provider = kStandinProvider;
    database_->UID = L"admin";
    database_->DBFullPath = file_;
    database_->Prepare();
    database_->Execute(L"CREATE TABLE T (I INTEGER, S VARCHAR(70000), M MEMO, X XML, B BLOB)");
    database_->Execute(
        L"WITH RECURSIVE N(I) AS (SELECT 1 UNION ALL SELECT I + 1 FROM N WHERE I < 1000) "
        L"INSERT INTO T (I, S) SELECT I, 'Project ' || I FROM N");
  }

  // Error 13 in place of the values of a column.
  void ExpectUnreadable(const std::wstring& columns, const wchar_t* named) {
    const Error error =
        ErrorOf([&] { database_->OpenRecordset(L"SELECT " + columns + L" FROM T"); });
    EXPECT_EQ(kTypeMismatch, error.Number());
    EXPECT_THAT(error.Description(), HasSubstr(named));
  }

  testing::LoadedProvider provider_;
  const TemporaryFolder folder_;
  const std::wstring file_ = folder_ / L"Postrove.mdb";
  const std::shared_ptr<clsDatabase> database_ = CreateOleDbDatabase();
};

#define POSTROVE_VALUE(type, member, value) \
  [](VARIANT& out) {                        \
    out.vt = type;                          \
    out.member = value;                     \
  }
TEST_F(OleDb, EveryTypeOfValueArrives) {
  const struct {
    void (*write)(VARIANT& out);
    Cell expected;
  } kCases[] = {
      {[](VARIANT& out) { out.vt = VT_NULL; }, {}},
      {[](VARIANT& out) { out.vt = VT_EMPTY; }, {}},
      {POSTROVE_VALUE(VT_BOOL, boolVal, VARIANT_TRUE), true},
      {POSTROVE_VALUE(VT_BOOL, boolVal, VARIANT_FALSE), false},
      {POSTROVE_VALUE(VT_I1, cVal, -7), std::int64_t{-7}},
      {POSTROVE_VALUE(VT_UI1, bVal, 200), std::int64_t{200}},
      {POSTROVE_VALUE(VT_I2, iVal, -32768), std::int64_t{-32768}},
      {POSTROVE_VALUE(VT_UI2, uiVal, 65535), std::int64_t{65535}},
      {POSTROVE_VALUE(VT_I4, lVal, -2147483647), std::int64_t{-2147483647}},
      {POSTROVE_VALUE(VT_UI4, ulVal, 4294967295u), std::int64_t{4294967295}},
      {POSTROVE_VALUE(VT_I8, llVal, 9007199254740993), std::int64_t{9007199254740993}},
      {POSTROVE_VALUE(VT_UI8, ullVal, 9007199254740993u), std::int64_t{9007199254740993}},
      {POSTROVE_VALUE(VT_UI8, ullVal, 18446744073709551615u), 18446744073709551615.0},
      {POSTROVE_VALUE(VT_R4, fltVal, 0.5f), 0.5},
      {POSTROVE_VALUE(VT_R8, dblVal, -1e300), -1e300},
      {POSTROVE_VALUE(VT_CY, cyVal.int64, 1234567), 123.4567},
      {[](VARIANT& out) {
         out.decVal.Lo64 = 123456;
         out.decVal.scale = 3;
         out.decVal.sign = DECIMAL_NEG;
         out.vt = VT_DECIMAL;
       },
       -123.456},
      {POSTROVE_VALUE(VT_DATE, date, 38718.75), 38718.75},
      {POSTROVE_VALUE(VT_BSTR, bstrVal, nullptr), std::wstring()},
      {POSTROVE_VALUE(VT_BSTR, bstrVal, SysAllocStringLen(L"a\0b", 3)), std::wstring(L"a\0b", 3)},
  };
  std::wstring statement = L"SELECT 0";
  std::vector<Cell> expected;
  for (const auto& c : kCases) expected.push_back(c.expected);
  for (std::size_t i = 1; i < std::size(kCases); ++i) statement += L", 0";
  provider_.give = [&](DBORDINAL column, VARIANT& value, DBSTATUS&) {
    VariantClear(&value);
    kCases[column - 1].write(value);
  };
  EXPECT_THAT(database_->OpenRecordset(statement), ::testing::ElementsAre(expected));
}
#undef POSTROVE_VALUE

TEST_F(OleDb, RowsArriveInTheirOrderAcrossBlocks) {
  for (const long count : {0, 1, 255, 256, 257, 512, 1000}) {
    Rows expected;
    for (long i = 1; i <= count; ++i) {
      expected.push_back({std::int64_t{i}, L"Project " + text::FromNumber(i)});
    }
    EXPECT_EQ(expected, database_->OpenRecordset(L"SELECT I, S FROM T WHERE I <= " +
                                                 text::FromNumber(count) + L" ORDER BY I"))
        << count << " rows";
  }
}

TEST_F(OleDb, LongColumnsAndThoseThatAreTextsOnlyArriveWhole) {
  const std::wstring is = L"B\u00FCro \u0141\u00F3d\u017A \u6771\u4EAC \U0001F309";
  const std::wstring isLong(70000, L'x');
  database_->Execute(L"UPDATE T SET S = '" + isLong + L"', M = '" + isLong + L"', X = '" + is +
                     L"' WHERE I = 1");
  EXPECT_EQ((Rows{{isLong, isLong, std::int64_t{1}, is}, {L"Project 2", {}, std::int64_t{2}, {}}}),
            database_->OpenRecordset(L"SELECT S, M, I, X FROM T WHERE I < 3 ORDER BY I"));
  provider_.calls.clear();
  database_->OpenRecordset(L"SELECT M FROM T");
  EXPECT_EQ(1, provider_.calls["CreateAccessor"]) << "a long column is not asked for as a VARIANT";
}

TEST_F(OleDb, AValueThatCannotBeReadIsAnErrorThatNamesItsColumn) {
  ExpectUnreadable(L"I, B", L"\"B\"");
  for (const DBSTATUS state :
       {DBSTATUS_E_CANTCONVERTVALUE, DBSTATUS_E_UNAVAILABLE, DBSTATUS_S_TRUNCATED}) {
    int rows = 0;
    provider_.give = [&](DBORDINAL column, VARIANT&, DBSTATUS& status) {
      if (column == 2 && ++rows == 300) status = state;
    };
    for (const wchar_t* second : {L"S", L"M"}) {
      rows = 0;
      ExpectUnreadable(std::wstring(L"I, ") + second,
                       (L"\"" + std::wstring(second) + L"\" cannot be read (status " +
                        text::FromNumber(state) + L")")
                           .c_str());
    }
  }
  provider_.give = [](DBORDINAL, VARIANT& value, DBSTATUS&) {
    VariantClear(&value);
    value.vt = VT_ARRAY | VT_UI1;
    value.parray = SafeArrayCreateVector(VT_UI1, 0, 4);
  };
  ExpectUnreadable(L"I", L"\"I\"");
}

TEST_F(OleDb, AListThatIsCutShortIsAnError) {
  const std::pair<const char*, HRESULT> kCases[] = {{"Execute", DB_S_STOPLIMITREACHED},
                                                    {"GetNextRows", DB_S_STOPLIMITREACHED},
                                                    {"GetNextRows", DB_S_ROWLIMITEXCEEDED}};
  for (const auto& [method, result] : kCases) {
    provider_.plan = {{method, Failing(result)}};
    EXPECT_EQ(L"The database stopped before the last row.",
              ErrorOf([&] { database_->OpenRecordset(L"SELECT I FROM T"); }).Description())
        << method;
  }
}

TEST_F(OleDb, AFailureAnywhereIsReportedInTheProvidersWords) {
  for (const char* method :
       {"Initialize", "CreateSession", "CreateCommand", "SetCommandText", "Execute",
        "GetColumnInfo", "CreateAccessor", "GetNextRows", "GetData"}) {
    provider_.plan = {{method, Failing(DB_E_NOTABLE, {L"There is no table \"Proj\u00E9t\"."})}};
    const Error error = ErrorOf([&] { database_->OpenRecordset(L"SELECT I FROM T"); });
    EXPECT_EQ(DB_E_NOTABLE, error.Number()) << method;
    EXPECT_EQ(L"clsDatabase.OpenRecordset()", error.Source()) << method;
    EXPECT_EQ(L"There is no table \"Proj\u00E9t\".", error.Description()) << method;
  }
  provider_.plan = {{"Execute", Failing(DB_E_NOTABLE, {L"no table"})}};
  EXPECT_EQ(L"clsDatabase.Execute()", ErrorOf([&] { database_->Execute(L"INSERT"); }).Source());
}

TEST_F(OleDb, ErrorRecordsAndMissingTextsAreToldAsWell) {
  const struct {
    HRESULT result;
    std::vector<std::wstring> texts;
    std::wstring expected;
  } kCases[] = {
      {E_FAIL, {L"Second.\r\n", L"First."}, L"Second.\r\nFirst."},
      {E_FAIL, {L"Same.", L"", L"Same."}, L"Same."},
      {E_FAIL, {L"", L""}, L"the records as a whole"},
      {E_ACCESSDENIED, {}, SystemMessage(static_cast<DWORD>(E_ACCESSDENIED))},
      {DB_E_ERRORSINCOMMAND, {}, L"Error 0x80040E14"},
  };
  for (const auto& c : kCases) {
    provider_.plan = {{"Execute", Failing(c.result, c.texts)}};
    const Error error = ErrorOf([&] { database_->Execute(L"INSERT"); });
    EXPECT_EQ(c.result, error.Number());
    EXPECT_EQ(c.expected, error.Description());
  }
}

TEST_F(OleDb, AnEarlierErrorIsNotTakenForTheReason) {
  const auto description = [this] {
    SetErrorInfo(0, Information(L"Something else.").Get());
    return ErrorOf([this] { database_->OpenRecordset(L"SELECT I FROM T"); }).Description();
  };
  provider_.plan = {{"Initialize", Failing(DB_E_NOTFOUND)}};
  EXPECT_EQ(L"Error 0x80040E19", description());

  // The time limit and a first way to read are refused with texts, which nobody hears of.
  provider_.plan = {{"SetProperties",
                     [this] {
                       const bool limit = provider_.calls["CreateCommand"] > 0;
                       return limit ? Failing(DB_E_ERRORSOCCURRED, {L"No limit."})() : S_OK;
                     }},
                    {"Execute", Failing(DB_E_ERRORSINCOMMAND)}};
  provider_.calls.clear();
  EXPECT_EQ(L"Error 0x80040E14", description());
  provider_.plan = {{"CreateAccessor", [this] {
                       if (provider_.calls["CreateAccessor"] > 1) return DB_E_ERRORSOCCURRED;
                       return Failing(DB_E_ERRORSOCCURRED, {L"No VARIANT."})();
                     }}};
  provider_.calls.clear();
  EXPECT_EQ(L"Error 0x80040E21", description());
}

TEST_F(OleDb, TheTextsOfARowGoWithIt) {
  provider_.give = [](DBORDINAL, VARIANT& value, DBSTATUS& status) {
    VariantClear(&value);
    value.vt = VT_BSTR;
    value.bstrVal = SysAllocString(std::wstring(1 << 18, L'x').c_str());
    status = DBSTATUS_S_OK;
  };
  const auto used = [] {
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
  };
  for (const wchar_t* column : {L"S", L"M"}) {
    const std::size_t before = used();
    database_->ReadRecordset(std::wstring(L"SELECT ") + column + L" FROM T WHERE I <= 200",
                             [](Row& row) { EXPECT_EQ(1u, row.size()); });
    EXPECT_LT(used(), before + (30 << 20)) << "of the 100 MB of the column ";
  }
}

TEST_F(OleDb, AStatementTellsHowManyRowsItChanged) {
  provider_.calls.clear();
  EXPECT_EQ(2, database_->Execute(L"UPDATE T SET S = 'it''s' WHERE I < 3"));
  EXPECT_EQ(0, database_->Execute(L"UPDATE T SET S = '' WHERE I = 1001"));
  EXPECT_EQ(-1, database_->Execute(L"SELECT I FROM T"));
  EXPECT_EQ(Rows(), database_->OpenRecordset(L"DELETE FROM T"));
  EXPECT_EQ(4, provider_.calls["Initialize"]) << "each operation has a connection of its own";
  EXPECT_EQ(L"30", provider_.properties[DBPROP_COMMANDTIMEOUT]);
}

TEST_F(OleDb, ThePropertiesArriveWhole) {
  provider_.plan = {{"Initialize", Failing(E_FAIL)}};
  // Wine's reader knows no doubled quotes, so no text has both kinds.
  for (const wchar_t* text :
       {L"C:\\O'Neil; A=B\\Postrove.mdb", L"\\\\server\\B\u00FCro {M\u00FCller}\\\u6771\u4EAC.mdb",
        L";Provider=Other", L"say \"so\"", L"\"", L"'", L" blanks  two ", L"="}) {
    database_->DBFullPath = database_->UID = database_->Pwd = text;
    EXPECT_NE(text, provider_.properties[DBPROP_INIT_DATASOURCE]) << "not prepared";
    database_->Prepare();
    EXPECT_THROW(database_->Execute(L"INSERT"), Error);
    for (const DBPROPID id : {DBPROP_INIT_DATASOURCE, DBPROP_AUTH_USERID, DBPROP_AUTH_PASSWORD}) {
      EXPECT_EQ(text, provider_.properties[id]);
    }
  }
  const std::shared_ptr<clsDatabase> fresh = CreateOleDbDatabase();
  EXPECT_FALSE(fresh->IsReady());
  EXPECT_EQ(kObjectNotSet, ErrorOf([&] { fresh->Execute(L"INSERT"); }).Number());
}

TEST_F(OleDb, ProvidersThatAreNotThereArePassedOver) {
  const std::pair<std::wstring, std::wstring> provider{L"OLE DB Provider", L"A test's"};
  const RegistryName classless(L"Postrove.Test.Classless",
                               L"{5C2D6A5E-0F0B-4B6A-9C55-3E0C52B7A1D5}", {});
  const RegistryName libraryless(L"Postrove.Test.NoLibrary",
                                 L"{5C2D6A5E-0F0B-4B6A-9C55-3E0C52B7A1D6}",
                                 {provider, {L"InprocServer32", L"C:\\no such\\provider.dll"}});
  const wchar_t* const kMissing[] = {L"Postrove.Test.Unknown", L"Postrove.Test.Classless",
                                     L"Postrove.Test.NoLibrary"};
  std::vector<ConnectionCandidate> candidates;
  const auto add = [&](const std::wstring& name) {
    candidates.push_back({name, {{L"Provider=" + name + L";Data Source=" + file_, {}}}});
  };
  for (const wchar_t* missing : kMissing) add(missing);
  const Error error = ErrorOf([&] { ole_db::CreateCommand(candidates, L"SELECT", L"Source"); });
  EXPECT_TRUE(FAILED(error.Number()));
  EXPECT_EQ(L"Source", error.Source());
  for (const wchar_t* missing : kMissing) EXPECT_THAT(error.Description(), HasSubstr(missing));
  EXPECT_THAT(error.Description(), HasSubstr(sizeof(void*) == 8 ? L"64-bit" : L"32-bit"));

  add(kStandinProvider);
  EXPECT_TRUE(ole_db::CreateCommand(candidates, L"SELECT", L"Source"));
  provider_.plan = {{"Initialize", Failing(REGDB_E_CLASSNOTREG, {L"Not this file."})}};
  add(kStandinProvider);
  EXPECT_EQ(L"Not this file.",
            ErrorOf([&] { ole_db::CreateCommand(candidates, L"SELECT", L""); }).Description());
}

// What stands in the settings as a provider could be the name of any class.
TEST_F(OleDb, NothingIsLoadedThatIsNotRegisteredAsAProvider) {
  const RegistryName other(L"Postrove.Test.Other", L"{5C2D6A5E-0F0B-4B6A-9C55-3E0C52B7A1D7}",
                           {{L"InprocServer32", L"msxml3.dll"}});
  ASSERT_FALSE(GetModuleHandleW(L"msxml3"));
  database_->Provider = L"Postrove.Test.Other";
  database_->Prepare();
  EXPECT_THAT(ErrorOf([&] { database_->Execute(L"INSERT"); }).Description(),
              HasSubstr(L"Tried: Postrove.Test.Other."));
  EXPECT_FALSE(GetModuleHandleW(L"msxml3"));
}

TEST_F(OleDb, ADatabaseThatRefusesALoginIsTriedWithTheNext) {
  const struct {
    const wchar_t* user;
    const wchar_t* password;
    const char* logins;  // what the database knows; null is Admin only
    int tries;           // 0: all are refused
  } kCases[] = {
      {L"QLN", L"xbt", "[Users]\r\nQLN=xbt\r\n", 1},
      {L"aDMIN", L"", nullptr, 1},
      {L"QLN", L"x b;t", "[Database]\r\nPassword=x b;t\r\n", 2},
      {L"QLN", L"xbt", "[Users]\r\nQLN=other\r\n", 2},
      {L"QLN", L"xbt", nullptr, 2},
      {L"QLN", L"", nullptr, 2},
      {L"Admin", L"xbt", nullptr, 2},
      {L"QLN", L"xbt", "[Users]\r\nAdmin=other\r\n", 0},
      {L"QLN", L"xbt", "[Database]\r\nPassword=other\r\n", 0},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(&c - kCases);
    DeleteFileW((file_ + L".logins").c_str());
    if (c.logins) MakeFile(file_ + L".logins", c.logins);
    database_->UID = c.user;
    database_->Pwd = c.password;
    database_->Prepare();
    provider_.calls.clear();
    if (c.tries > 0) {
      EXPECT_EQ(1000u, database_->OpenRecordset(L"SELECT I FROM T").size());
      EXPECT_EQ(c.tries, provider_.calls["Initialize"]);
      database_->OpenRecordset(L"SELECT I FROM T");
      EXPECT_EQ(c.tries + 1, provider_.calls["Initialize"]) << "the accepted login comes first";
      continue;
    }
    const Error error = ErrorOf([&] { database_->OpenRecordset(L"SELECT I FROM T"); });
    EXPECT_EQ(DB_SEC_E_AUTH_FAILED, error.Number());
    for (const wchar_t* told : {L"\r\n- the user \"QLN\" with a password: ",
                                L"\r\n- Admin, with that password as the database's: Not a valid ",
                                L"\r\n- Admin without a password: Not a valid "}) {
      EXPECT_THAT(error.Description(), HasSubstr(told));
    }
  }
  provider_.calls.clear();
  provider_.plan = {{"Initialize", Failing(E_FAIL, {L"Disk error."})}};
  EXPECT_EQ(L"Disk error.", ErrorOf([&] { database_->Execute(L"DELETE FROM T"); }).Description());
  EXPECT_EQ(1, provider_.calls["Initialize"]) << "that was no refused login";

  database_->UID = L"admin";
  database_->Pwd.clear();
  database_->Prepare();
  provider_.plan = {{"Initialize", Failing(DB_SEC_E_AUTH_FAILED, {L"Not a valid password."})}};
  EXPECT_EQ(L"Not a valid password.",
            ErrorOf([&] { database_->Execute(L"DELETE FROM T"); }).Description());
}

}  // namespace
}  // namespace postrove
