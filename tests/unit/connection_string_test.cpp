#include "data/connection_string.h"

#include <gmock/gmock.h>

#include "shared/text.h"
#include "support/FakeDatabase.h"

namespace postrove {
namespace {

using testing::FakeDatabase;
using ::testing::HasSubstr;
using ::testing::StartsWith;

FakeDatabase Access(const std::wstring& provider = L"Microsoft.Jet.OLEDB.4.0") {
  FakeDatabase database;
  database.DbType = L"Access";
  database.Provider = provider;
  database.DbName = L"Postrove.mdb";
  database.UID = L"admin";
  database.DBPath = L"C:\\Data\\";
  database.DBFullPath = L"C:\\Data\\Postrove.mdb";
  database.DBServer = database.DBFullPath;
  return database;
}

FakeDatabase SqlServer(const std::wstring& provider) {
  FakeDatabase database;
  database.DbType = L"SQLServer";
  database.Provider = provider;
  database.DbName = L"Quillion";
  database.UID = L"QLN";
  database.Pwd = L"xbt";
  database.DBPath = L"SERVER\\INSTANCE";
  database.DBFullPath = L"Quillion.mdb";
  database.DBServer = database.DBFullPath;
  return database;
}

TEST(ConnectionString, TheProviderDecidesWhichOthersFollow) {
  const struct {
    std::wstring type;
    std::wstring configured;
    std::vector<std::wstring> expected;
  } kCases[] = {
      {L"Access",
       L"Microsoft.Jet.OLEDB.4.0",
       {L"Microsoft.Jet.OLEDB.4.0", L"Microsoft.ACE.OLEDB.16.0", L"Microsoft.ACE.OLEDB.12.0"}},
      {L"access",
       L" microsoft.jet.oledb.4.0 ",
       {L"microsoft.jet.oledb.4.0", L"Microsoft.ACE.OLEDB.16.0", L"Microsoft.ACE.OLEDB.12.0"}},
      {L"",
       L"",
       {L"Microsoft.Jet.OLEDB.4.0", L"Microsoft.ACE.OLEDB.16.0", L"Microsoft.ACE.OLEDB.12.0"}},
      {L"Access", L"Microsoft.ACE.OLEDB.12.0", {L"Microsoft.ACE.OLEDB.12.0"}},
      {L"SQLServer", L"Microsoft.Jet.OLEDB.4.0", {L"MSOLEDBSQL", L"SQLOLEDB"}},
      {L"sqlserver", L"", {L"MSOLEDBSQL", L"SQLOLEDB"}},
      {L"SQLSERVER", L"SQLOLEDB", {L"SQLOLEDB"}},
      {L"SQLServer", L"MSOLEDBSQL19", {L"MSOLEDBSQL19"}},
  };
  for (const auto& c : kCases) {
    FakeDatabase database = Access(c.configured);
    database.DbType = c.type;
    std::vector<std::wstring> providers;
    for (const ConnectionCandidate& candidate : ConnectionCandidates(database)) {
      EXPECT_THAT(candidate.connectionString, StartsWith(L"Provider=" + candidate.provider + L";"));
      providers.push_back(candidate.provider);
    }
    EXPECT_EQ(c.expected, providers) << text::ToUtf8(c.type + L" " + c.configured);
  }
}

TEST(ConnectionString, NamesEverythingThatConnectingTakes) {
  const auto first = [](const FakeDatabase& database) {
    return ConnectionCandidates(database).front().connectionString;
  };
  EXPECT_EQ(
      first(Access()),
      L"Provider=Microsoft.Jet.OLEDB.4.0;Data Source=\"C:\\Data\\Postrove.mdb\";User ID=admin;"
      L"Password=;OLE DB Services=-4");
  const std::wstring server = L";Data Source=\"SERVER\\INSTANCE\";Initial Catalog=Quillion;";
  EXPECT_EQ(first(SqlServer(L"MSOLEDBSQL")),
            L"Provider=MSOLEDBSQL" + server +
                L"User ID=QLN;Password=xbt;Connect Timeout=5;DataTypeCompatibility=80");
  EXPECT_EQ(first(SqlServer(L"SQLOLEDB")),
            L"Provider=SQLOLEDB" + server + L"User ID=QLN;Password=xbt;Connect Timeout=5");
  FakeDatabase trusted = SqlServer(L"SQLOLEDB");
  trusted.UID.clear();
  EXPECT_EQ(first(trusted),
            L"Provider=SQLOLEDB" + server + L"Integrated Security=SSPI;Connect Timeout=5");
}

// A value that begins with a quote ends at the same quote, one that is doubled stands for itself.
TEST(ConnectionString, NoTextBreaksOutOfItsValue) {
  const std::pair<const wchar_t*, const wchar_t*> cases[] = {
      {L"", L""},
      {L"Plain-1.0_x", L"Plain-1.0_x"},
      {L";Provider=Other", L"\";Provider=Other\""},
      {L" blanks ", L"\" blanks \""},
      {L"{brace}", L"\"{brace}\""},
      {L"\u00FC", L"\"\u00FC\""},
      {L"it's", L"\"it's\""},
      {L"say \"so\"", L"'say \"so\"'"},
      {L"\"both\" 'both'", L"\"\"\"both\"\" 'both'\""},
  };
  for (const auto& [text, quoted] : cases) EXPECT_EQ(QuoteConnectionValue(text), quoted);
  FakeDatabase odd = Access(L"Pro;");
  odd.DBFullPath = odd.UID = odd.Pwd = L"a;b";
  EXPECT_EQ(
      ConnectionCandidates(odd).front().connectionString,
      L"Provider=\"Pro;\";Data Source=\"a;b\";User ID=\"a;b\";Password=\"a;b\";OLE DB Services=-4");
}

TEST(ConnectionString, AMissingProviderIsNamedWithTheWidth) {
  const std::wstring message = NoProviderText(ConnectionCandidates(Access()), 64);
  for (const wchar_t* part :
       {L"64-bit",
        L"Microsoft.Jet.OLEDB.4.0, Microsoft.ACE.OLEDB.16.0, Microsoft.ACE.OLEDB.12.0"}) {
    EXPECT_THAT(message, HasSubstr(part));
  }
}

}  // namespace
}  // namespace postrove
