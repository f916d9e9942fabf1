#include "data/connection_string.h"

#include <gmock/gmock.h>

#include <map>

#include "shared/text.h"
#include "support/FakeDatabase.h"

namespace postrove {
namespace {

using testing::FakeDatabase;

// A connection string taken apart as the OLE DB service components do it: a value that begins with
// a quote ends at the same quote, one that is doubled stands for itself; any other value ends at
// the next semicolon.
std::vector<std::pair<std::wstring, std::wstring>> Parse(const std::wstring& text) {
  std::vector<std::pair<std::wstring, std::wstring>> properties;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::size_t equals = text.find(L'=', i);
    if (equals == text.npos) return {{L"unreadable", text.substr(i)}};
    std::pair<std::wstring, std::wstring> property{text.substr(i, equals - i), L""};
    i = equals + 1;
    const wchar_t quote = i < text.size() ? text[i] : L';';
    if (quote == L'"' || quote == L'\'') {
      for (++i; i < text.size() && (text[i] != quote || text.substr(i + 1, 1)[0] == quote); ++i) {
        if (text[i] == quote) ++i;
        property.second += text[i];
      }
      ++i;
    } else {
      while (i < text.size() && text[i] != L';') property.second += text[i++];
    }
    if (i < text.size() && text[i] != L';') return {{L"unreadable", text.substr(i)}};
    properties.push_back(std::move(property));
  }
  return properties;
}

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

std::vector<std::wstring> Providers(const clsDatabase& database) {
  std::vector<std::wstring> providers;
  for (const ConnectionCandidate& candidate : ConnectionCandidates(database)) {
    const auto properties = Parse(candidate.connectionString);
    EXPECT_EQ(L"Provider", properties.front().first);
    EXPECT_EQ(candidate.provider, properties.front().second);
    providers.push_back(candidate.provider);
  }
  return providers;
}

std::map<std::wstring, std::wstring> Properties(const clsDatabase& database) {
  const auto properties = Parse(ConnectionCandidates(database).front().connectionString);
  return {properties.begin(), properties.end()};
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
    EXPECT_EQ(c.expected, Providers(database)) << text::ToUtf8(c.type + L" " + c.configured);
  }
}

TEST(ConnectionString, AccessIsReachedByTheFullPath) {
  const std::map<std::wstring, std::wstring> expected{{L"Provider", L"Microsoft.Jet.OLEDB.4.0"},
                                                      {L"Data Source", L"C:\\Data\\Postrove.mdb"},
                                                      {L"User ID", L"admin"},
                                                      {L"Password", L""},
                                                      {L"OLE DB Services", L"-4"}};
  EXPECT_EQ(expected, Properties(Access()));
}

TEST(ConnectionString, SqlServerIsReachedByTheServersName) {
  std::map<std::wstring, std::wstring> expected{{L"Provider", L"MSOLEDBSQL"},
                                                {L"Data Source", L"SERVER\\INSTANCE"},
                                                {L"Initial Catalog", L"Quillion"},
                                                {L"User ID", L"QLN"},
                                                {L"Password", L"xbt"},
                                                {L"Connect Timeout", L"5"},
                                                {L"DataTypeCompatibility", L"80"}};
  EXPECT_EQ(expected, Properties(SqlServer(L"MSOLEDBSQL")));

  expected[L"Provider"] = L"SQLOLEDB";
  expected.erase(L"DataTypeCompatibility");
  EXPECT_EQ(expected, Properties(SqlServer(L"SQLOLEDB")));

  FakeDatabase database = SqlServer(L"SQLOLEDB");
  database.UID.clear();
  expected.erase(L"User ID");
  expected.erase(L"Password");
  expected[L"Integrated Security"] = L"SSPI";
  EXPECT_EQ(expected, Properties(database));
}

TEST(ConnectionString, NoTextBreaksOutOfItsValue) {
  const std::wstring kTexts[] = {L";Provider=Other",
                                 L"a;b=c",
                                 L"it's",
                                 L"say \"so\"",
                                 L"\"both\" and 'both';",
                                 L"\"",
                                 L"'",
                                 L"\"\"",
                                 L"''\"\"''",
                                 L" blanks ",
                                 L"{brace};x",
                                 L"=",
                                 L"C:\\B\u00FCro M\u00FCller's; 1=2\\Gesch\u00E4ft.mdb"};
  for (const std::wstring& odd : kTexts) {
    FakeDatabase database = Access(L"Pro " + odd);
    database.DBFullPath = database.UID = database.Pwd = odd;
    const std::map<std::wstring, std::wstring> expected{{L"Provider", text::Trim(L"Pro " + odd)},
                                                        {L"Data Source", odd},
                                                        {L"User ID", odd},
                                                        {L"Password", odd},
                                                        {L"OLE DB Services", L"-4"}};
    EXPECT_EQ(expected, Properties(database)) << text::ToUtf8(odd);
  }
}

TEST(ConnectionString, AMissingProviderIsNamedWithTheWidth) {
  const std::wstring message = NoProviderText(ConnectionCandidates(Access()), 64);
  for (const wchar_t* part :
       {L"64-bit",
        L"Microsoft.Jet.OLEDB.4.0, Microsoft.ACE.OLEDB.16.0, Microsoft.ACE.OLEDB.12.0"}) {
    EXPECT_THAT(message, ::testing::HasSubstr(part));
  }
}

}  // namespace
}  // namespace postrove
