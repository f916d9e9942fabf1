#include "shared/connection_string.h"

#include <gmock/gmock.h>

#include "memory/FakeDatabase.h"
#include "shared/text.h"

namespace postrove {
namespace {

using ::testing::HasSubstr;

// The ways to a database of a provider, user and password that are set.
std::vector<ConnectionCandidate> Candidates(const std::wstring& type, const std::wstring& provider,
                                            const std::wstring& user = L"admin",
                                            const std::wstring& password = {}) {
  testing::FakeDatabase database;
  const bool server = text::EqualsIgnoreCase(type, L"SQLServer");
  database.DbType = type;
  database.Provider = provider;
  database.DbName = L"Quillion";
  database.UID = user;
  database.Pwd = password;
  database.DBPath = server ? L"SERVER\\A" : L"C:\\Data\\";
  database.DBFullPath = server ? L"Quillion.mdb" : L"C:\\Data\\Postrove.mdb";
  database.DBServer = database.DBFullPath;
  return ConnectionCandidates(database);
}

TEST(ConnectionString, TheProviderDecidesWhichOthersFollow) {
  const std::wstring jet = L"Microsoft.Jet.OLEDB.4.0", ace = L"Microsoft.ACE.OLEDB.12.0";
  const std::wstring newer = L"Microsoft.ACE.OLEDB.16.0";
  const struct {
    std::wstring type;
    std::wstring configured;
    std::vector<std::wstring> expected;
  } kCases[] = {
      {L"Access", jet, {jet, newer, ace}},
      {L"access", L" microsoft.jet.oledb.4.0 ", {L"microsoft.jet.oledb.4.0", newer, ace}},
      {L"", L"", {jet, newer, ace}},
      {L"Access", ace, {ace}},
      {L"SQLServer", jet, {L"MSOLEDBSQL", L"SQLOLEDB"}},
      {L"sqlserver", L"", {L"MSOLEDBSQL", L"SQLOLEDB"}},
      {L"SQLSERVER", L"SQLOLEDB", {L"SQLOLEDB"}},
      {L"SQLServer", L"MSOLEDBSQL19", {L"MSOLEDBSQL19"}},
  };
  for (const auto& c : kCases) {
    std::vector<std::wstring> providers;
    for (const ConnectionCandidate& candidate : Candidates(c.type, c.configured)) {
      EXPECT_TRUE(candidate.logins.at(0).connectionString.starts_with(L"Provider=" +
                                                                      candidate.provider + L";"));
      providers.push_back(candidate.provider);
    }
    EXPECT_EQ(c.expected, providers) << text::ToUtf8(c.type + L" " + c.configured);
  }
  const std::wstring message = NoProviderText(Candidates(L"Access", jet), 64);
  EXPECT_THAT(message, HasSubstr(L"64-bit"));
  EXPECT_THAT(message, HasSubstr(jet + L", " + newer + L", " + ace));
}

TEST(ConnectionString, NamesEverythingThatConnectingTakes) {
  const std::wstring file = L"Provider=P;Data Source=\"C:\\Data\\Postrove.mdb\";";
  const std::wstring end = L";OLE DB Services=-4";
  const std::wstring admin = file + L"User ID=Admin;Password=" + end;
  const std::wstring server = L";Data Source=\"SERVER\\A\";Initial Catalog=Quillion;";
  const std::wstring login = L"User ID=QLN;Password=xbt;Connect Timeout=5";
  const struct {
    const wchar_t* type;
    const wchar_t* provider;
    const wchar_t* user;
    const wchar_t* password;
    std::vector<std::wstring> expected;
  } kCases[] = {
      {L"Access", L"P", L"admin", L"", {file + L"User ID=admin;Password=" + end}},
      {L"Access", L"P", L"", L"", {file + L"Password=" + end}},
      {L"Access", L"P", L"QLN", L"", {file + L"User ID=QLN;Password=" + end, admin}},
      {L"Access",
       L"P",
       L"QLN",
       L"x;t",
       {file + L"User ID=QLN;Password=\"x;t\"" + end,
        file + L"User ID=Admin;Password=;Jet OLEDB:Database Password=\"x;t\"" + end, admin}},
      {L"SQLServer",
       L"MSOLEDBSQL",
       L"QLN",
       L"xbt",
       {L"Provider=MSOLEDBSQL" + server + login + L";DataTypeCompatibility=80"}},
      {L"SQLServer", L"SQLOLEDB", L"QLN", L"xbt", {L"Provider=SQLOLEDB" + server + login}},
      {L"SQLServer",
       L"SQLOLEDB",
       L"",
       L"xbt",
       {L"Provider=SQLOLEDB" + server + L"Integrated Security=SSPI;Connect Timeout=5"}},
  };
  for (const auto& c : kCases) {
    std::vector<std::wstring> strings;
    const auto candidates = Candidates(c.type, c.provider, c.user, c.password);
    for (const Login& one : candidates.at(0).logins) strings.push_back(one.connectionString);
    EXPECT_EQ(c.expected, strings);
  }
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
  EXPECT_TRUE(Candidates(L"Access", L"Pro;")[0].logins[0].connectionString.starts_with(
      L"Provider=\"Pro;\";"));
}

}  // namespace
}  // namespace postrove
