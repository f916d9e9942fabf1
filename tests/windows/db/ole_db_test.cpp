#include <gmock/gmock.h>

#include "scripted_provider.h"
#include "shared/error.h"
#include "shared/text.h"
#include "shared/win32/OleDbDatabase.h"
#include "shared/win32/ole_db_command.h"
#include "shared/win32/system_error.h"

namespace postrove {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::RegisteredProvider;
using testing::RegistryName;
using testing::Script;
using testing::ScriptedFailure;
using testing::ScriptedValue;

constexpr wchar_t kProvider[] = L"Postrove.Test.Provider";

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

ScriptedValue Number(long value) {
  return {[value](VARIANT& out) {
    out.vt = VT_I4;
    out.lVal = value;
  }};
}

ScriptedValue Text(const std::wstring& value) {
  return {[value](VARIANT& out) {
    out.vt = VT_BSTR;
    out.bstrVal = SysAllocStringLen(value.data(), static_cast<UINT>(value.size()));
  }};
}

class OleDb : public ::testing::Test {
 protected:
  OleDb() {
    database_->DbType = L"Access";
    database_->Provider = kProvider;
    database_->UID = L"admin";
    database_->DBFullPath = L"C:\\Postrove.mdb";
    database_->Prepare();
  }
  ~OleDb() override { EXPECT_EQ(0, script_.objects) << "objects of the provider are left"; }

  Script script_;
  const RegisteredProvider provider_{kProvider, script_};
  const std::shared_ptr<clsDatabase> database_ = CreateOleDbDatabase();
};

TEST_F(OleDb, EveryTypeOfValueArrives) {
  const auto decimal = [](VARIANT& out) {
    out.decVal.Lo64 = 123456;
    out.decVal.scale = 3;
    out.decVal.sign = DECIMAL_NEG;
    out.vt = VT_DECIMAL;
  };
#define POSTROVE_VALUE(type, member, value) \
  {                                         \
    [](VARIANT& out) {                      \
      out.vt = type;                        \
      out.member = value;                   \
    }                                       \
  }
  const struct {
    ScriptedValue value;
    Cell expected;
  } kCases[] = {
      {{{}, DBSTATUS_S_ISNULL}, {}},
      {{[](VARIANT& out) { out.vt = VT_NULL; }}, {}},
      {{}, {}},
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
      {{decimal}, -123.456},
      {POSTROVE_VALUE(VT_DATE, date, 38718.75), 38718.75},
      {POSTROVE_VALUE(VT_BSTR, bstrVal, nullptr), std::wstring()},
      {Text(L""), std::wstring()},
      {Text(L"B\u00FCro \u0141\u00F3d\u017A \u6771\u4EAC"),
       std::wstring(L"B\u00FCro \u0141\u00F3d\u017A \u6771\u4EAC")},
      {Text(std::wstring(L"a\0b", 3)), std::wstring(L"a\0b", 3)},
      {Text(std::wstring(70000, L'x')), std::wstring(70000, L'x')},
  };
#undef POSTROVE_VALUE
  std::vector<Cell> expected;
  for (const auto& c : kCases) {
    script_.columns.push_back(L"C");
    expected.push_back(c.expected);
  }
  script_.rows.resize(1);
  for (const auto& c : kCases) script_.rows[0].push_back(c.value);
  const Rows rows = database_->OpenRecordset(L"SELECT everything");
  ASSERT_EQ(1u, rows.size());
  ASSERT_EQ(expected.size(), rows[0].size());
  for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_EQ(expected[i], rows[0][i]) << i;
}

TEST_F(OleDb, RowsArriveInTheirOrderAcrossBlocks) {
  script_.columns = {L"Number", L"Name"};
  for (const bool bookmark : {false, true}) {
    script_.bookmark = bookmark;
    for (const long count : {0, 1, 255, 256, 257, 512, 1000}) {
      script_.rows.clear();
      Rows expected;
      for (long i = 0; i < count; ++i) {
        const std::wstring name = L"Project " + text::FromNumber(i);
        script_.rows.push_back({Number(i), Text(name)});
        expected.push_back({std::int64_t{i}, name});
      }
      EXPECT_EQ(expected, database_->OpenRecordset(L"SELECT")) << count << " rows";
    }
  }
}

TEST_F(OleDb, AValueThatCannotBeReadIsAnErrorThatNamesItsColumn) {
  script_.columns = {L"Name", L"Picture"};
  const ScriptedValue kUnreadable[] = {
      {{}, DBSTATUS_E_CANTCONVERTVALUE},
      {{}, DBSTATUS_E_UNAVAILABLE},
      {[](VARIANT& out) {
        out.vt = VT_ARRAY | VT_UI1;
        out.parray = SafeArrayCreateVector(VT_UI1, 0, 4);
      }},
  };
  for (const ScriptedValue& unreadable : kUnreadable) {
    for (const bool others : {true, false}) {
      script_.rows.assign(300, {Text(L"A"), Number(1)});
      script_.rows[299] = {others ? Text(L"A") : unreadable, unreadable};
      const Error error = ErrorOf([&] { database_->OpenRecordset(L"SELECT"); });
      EXPECT_EQ(kTypeMismatch, error.Number());
      EXPECT_THAT(error.Description(), HasSubstr(others ? L"\"Picture\"" : L"\"Name\""));
      EXPECT_EQ(0, script_.objects);
    }
  }
}

TEST_F(OleDb, AFailureAnywhereIsReportedInTheProvidersWords) {
  script_.columns = {L"Number"};
  script_.rows.assign(300, {Number(1)});
  for (const char* method :
       {"Initialize", "CreateSession", "CreateCommand", "SetCommandText", "Execute",
        "GetColumnInfo", "CreateAccessor", "GetNextRows", "GetData"}) {
    script_.failures = {{method, {DB_E_NOTABLE, {L"There is no table \"Proj\u00E9t\"."}}}};
    const Error error = ErrorOf([&] { database_->OpenRecordset(L"SELECT"); });
    EXPECT_EQ(DB_E_NOTABLE, error.Number()) << method;
    EXPECT_EQ(L"clsDatabase.OpenRecordset()", error.Source()) << method;
    EXPECT_EQ(L"There is no table \"Proj\u00E9t\".", error.Description()) << method;
    EXPECT_EQ(0, script_.objects) << method;
  }
  script_.failures = {{"Execute", {DB_E_NOTABLE, {L"no table"}}}};
  const Error error = ErrorOf([&] { database_->Execute(L"INSERT"); });
  EXPECT_EQ(L"clsDatabase.Execute()", error.Source());
  EXPECT_EQ(L"no table", error.Description());
}

TEST_F(OleDb, ErrorRecordsAndMissingTextsAreToldAsWell) {
  const struct {
    const char* name;
    ScriptedFailure failure;
    std::wstring expected;
  } kCases[] = {
      {"every record", {E_FAIL, {L"Second.\r\n", L"First."}}, L"Second.\r\nFirst."},
      {"each text once", {E_FAIL, {L"Same.", L"", L"Same."}}, L"Same."},
      {"records without a text", {E_FAIL, {L"", L""}}, L"the records as a whole"},
      {"the system's text",
       {E_ACCESSDENIED, {}},
       SystemMessage(static_cast<DWORD>(E_ACCESSDENIED))},
      {"no text at all", {DB_E_ERRORSINCOMMAND, {}}, L"Error 0x80040E14"},
  };
  for (const auto& c : kCases) {
    script_.failures = {{"Execute", c.failure}};
    const Error error = ErrorOf([&] { database_->Execute(L"INSERT"); });
    EXPECT_EQ(c.failure.result, error.Number()) << c.name;
    EXPECT_EQ(c.expected, error.Description()) << c.name;
  }
}

TEST_F(OleDb, AnEarlierErrorIsNotTakenForTheReason) {
  // The time limit is refused with a text, which nobody hears of.
  script_.failures = {{"SetProperties", {DB_E_ERRORSOCCURRED, {L"No such property."}}}};
  database_->Execute(L"INSERT");
  script_.failures["Execute"] = {DB_E_ERRORSINCOMMAND, {}};
  EXPECT_EQ(L"Error 0x80040E14", ErrorOf([&] { database_->Execute(L"INSERT"); }).Description());

  Script(script_).Enter("SetProperties");
  script_.failures = {{"Initialize", {DB_E_NOTFOUND, {}}}};
  EXPECT_EQ(L"Error 0x80040E19", ErrorOf([&] { database_->Execute(L"INSERT"); }).Description());
}

TEST_F(OleDb, AStatementRunsAsItWasGiven) {
  const std::wstring insert = L"INSERT INTO Project VALUES ('M\u00FCller''s; \"A\"')";
  script_.columns = {L"Number"};
  database_->Execute(insert);
  script_.columns.clear();
  EXPECT_EQ(Rows(), database_->OpenRecordset(L"UPDATE Project"));
  EXPECT_THAT(script_.statements, ElementsAre(insert, L"UPDATE Project"));
  EXPECT_THAT(script_.askedForRows, ElementsAre(false, true));
  EXPECT_EQ(2, script_.connections) << "each operation has a connection of its own";
  EXPECT_EQ(30, script_.timeout);

  script_.commandProperties = false;
  database_->Execute(insert);
  EXPECT_EQ(3u, script_.statements.size());
}

TEST_F(OleDb, ThePropertiesArriveWhole) {
  // Wine's reader knows no doubled quotes, so no text has both kinds.
  for (const wchar_t* text :
       {L"C:\\My Data\\Postrove.mdb", L"C:\\O'Neil; A=B\\Postrove.mdb",
        L"\\\\server\\B\u00FCro {M\u00FCller}\\\u6771\u4EAC.mdb", L";Provider=Other", L"a;b=c",
        L"say \"so\"", L"\"", L"'", L" blanks  two ", L"{brace};x", L"="}) {
    database_->DBFullPath = database_->UID = database_->Pwd = text;
    database_->Prepare();
    database_->Execute(L"INSERT");
    EXPECT_EQ(text, script_.properties[DBPROP_INIT_DATASOURCE]);
    EXPECT_EQ(text, script_.properties[DBPROP_AUTH_USERID]);
    EXPECT_EQ(text, script_.properties[DBPROP_AUTH_PASSWORD]);
  }
}

TEST_F(OleDb, PrepareTakesThePropertiesAsTheyAre) {
  const std::shared_ptr<clsDatabase> fresh = CreateOleDbDatabase();
  EXPECT_FALSE(fresh->IsReady());
  EXPECT_EQ(kObjectNotSet, ErrorOf([&] { fresh->Execute(L"INSERT"); }).Number());

  ASSERT_TRUE(database_->IsReady());
  database_->DBFullPath = L"C:\\Other.mdb";
  database_->Execute(L"INSERT");
  EXPECT_EQ(L"C:\\Postrove.mdb", script_.properties[DBPROP_INIT_DATASOURCE]);
  database_->Prepare();
  database_->Execute(L"INSERT");
  EXPECT_EQ(L"C:\\Other.mdb", script_.properties[DBPROP_INIT_DATASOURCE]);
}

ConnectionCandidate Candidate(const std::wstring& provider) {
  return {provider, L"Provider=" + provider + L";Data Source=x"};
}

TEST_F(OleDb, ProvidersThatAreNotThereArePassedOver) {
  const RegistryName classless(L"Postrove.Test.Unregistered",
                               L"{5C2D6A5E-0F0B-4B6A-9C55-3E0C52B7A1D5}");
  const RegistryName libraryless(L"Postrove.Test.NoLibrary",
                                 L"{5C2D6A5E-0F0B-4B6A-9C55-3E0C52B7A1D6}",
                                 L"C:\\no such folder\\provider.dll");
  const std::wstring kMissing[] = {L"Postrove.Test.Unknown", L"Postrove.Test.Unregistered",
                                   L"Postrove.Test.NoLibrary"};
  std::vector<ConnectionCandidate> candidates;
  for (const std::wstring& missing : kMissing) candidates.push_back(Candidate(missing));

  const Error error = ErrorOf([&] { ole_db::CreateCommand(candidates, L"SELECT", L"Source"); });
  EXPECT_TRUE(FAILED(error.Number()));
  EXPECT_EQ(L"Source", error.Source());
  EXPECT_THAT(error.Description(),
              HasSubstr(kMissing[0] + L", " + kMissing[1] + L", " + kMissing[2]));
  EXPECT_THAT(error.Description(), HasSubstr(sizeof(void*) == 8 ? L"64-bit" : L"32-bit"));

  candidates.push_back(Candidate(kProvider));
  ole_db::CreateCommand(candidates, L"SELECT", L"Source");
  EXPECT_EQ(1, script_.connections);
}

TEST_F(OleDb, AProviderThatRefusesIsNotPassedOver) {
  const std::vector<ConnectionCandidate> candidates{Candidate(kProvider), Candidate(kProvider)};
  for (const HRESULT result : {DB_E_NOTFOUND, REGDB_E_CLASSNOTREG, DB_SEC_E_AUTH_FAILED}) {
    script_.failures = {{"Initialize", {result, {L"Not this file."}}}};
    const Error error = ErrorOf([&] { ole_db::CreateCommand(candidates, L"SELECT", L""); });
    EXPECT_EQ(result, error.Number());
    EXPECT_EQ(L"Not this file.", error.Description());
  }
}

}  // namespace
}  // namespace postrove
