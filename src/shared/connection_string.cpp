#include "shared/connection_string.h"

#include "shared/text.h"

namespace postrove {
namespace {

constexpr wchar_t kJet[] = L"Microsoft.Jet.OLEDB.4.0";
constexpr wchar_t kSqlServer[] = L"MSOLEDBSQL";

using Properties = std::vector<std::pair<std::wstring_view, std::wstring_view>>;

// No pooled connection and no automatic transactions: they would hold on to the file.
constexpr std::wstring_view kPlainServices = L"-4";

// Seconds. Outlook stands still while a server is looked for.
constexpr std::wstring_view kConnectTimeout = L"5";

std::wstring Compose(std::wstring_view provider, const Properties& properties) {
  std::wstring text = L"Provider=" + QuoteConnectionValue(provider);
  for (const auto& [name, value] : properties) {
    text.append(L";").append(name).append(L"=") += QuoteConnectionValue(value);
  }
  return text;
}

ConnectionCandidate ForAccess(std::wstring provider, const clsDatabase& database) {
  constexpr wchar_t kAdmin[] = L"Admin";
  ConnectionCandidate candidate{std::move(provider), {}};
  const auto add = [&](std::wstring_view user, std::wstring_view password,
                       std::wstring_view databasePassword, const std::wstring& name) {
    Properties properties{{L"Data Source", database.DBFullPath}};
    if (!user.empty()) properties.emplace_back(L"User ID", user);
    properties.emplace_back(L"Password", password);
    if (!databasePassword.empty()) {
      properties.emplace_back(L"Jet OLEDB:Database Password", databasePassword);
    }
    properties.emplace_back(L"OLE DB Services", kPlainServices);
    candidate.logins.push_back({Compose(candidate.provider, properties), name});
  };
  const bool isAdmin = database.UID.empty() || text::EqualsIgnoreCase(database.UID, kAdmin);
  const bool hasPassword = !database.Pwd.empty();
  add(database.UID, database.Pwd, {},
      L"the user " + text::Quoted(database.UID) + (hasPassword ? L" with" : L" without") +
          L" a password");
  if (hasPassword) add(kAdmin, {}, database.Pwd, L"Admin, with that password as the database's");
  if (hasPassword || !isAdmin) add(kAdmin, {}, {}, L"Admin without a password");
  return candidate;
}

ConnectionCandidate ForSqlServer(std::wstring provider, const clsDatabase& database) {
  Properties properties{{L"Data Source", database.DBPath}, {L"Initial Catalog", database.DbName}};
  if (database.UID.empty()) {
    properties.emplace_back(L"Integrated Security", L"SSPI");
  } else {
    properties.emplace_back(L"User ID", database.UID);
    properties.emplace_back(L"Password", database.Pwd);
  }
  properties.emplace_back(L"Connect Timeout", kConnectTimeout);
  if (text::StartsWithIgnoreCase(provider, kSqlServer)) {
    // Without it newer column types arrive in forms that a VARIANT does not have.
    properties.emplace_back(L"DataTypeCompatibility", L"80");
  }
  std::wstring connectionString = Compose(provider, properties);
  return {std::move(provider), {{std::move(connectionString), {}}}};
}

}  // namespace

std::wstring QuoteConnectionValue(std::wstring_view value) {
  const bool plain = value.find_first_not_of(
                         L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789.-_") ==
                     std::wstring_view::npos;
  if (plain) return std::wstring(value);
  // The other kind of quote keeps a value with one kind in it readable as it stands.
  const bool single = value.find(L'"') != value.npos && value.find(L'\'') == value.npos;
  const std::wstring quote = single ? L"'" : L"\"";
  return quote + text::Replace(value, quote, quote + quote) + quote;
}

std::vector<ConnectionCandidate> ConnectionCandidates(const clsDatabase& database) {
  std::wstring provider = text::Trim(database.Provider);
  if (provider.empty()) provider = kJet;
  const bool jet = text::EqualsIgnoreCase(provider, kJet);

  if (text::EqualsIgnoreCase(database.DbType, L"SQLServer")) {
    if (!jet) return {ForSqlServer(std::move(provider), database)};
    return {ForSqlServer(kSqlServer, database), ForSqlServer(L"SQLOLEDB", database)};
  }
  std::vector<ConnectionCandidate> candidates{ForAccess(std::move(provider), database)};
  if (jet) {
    candidates.push_back(ForAccess(L"Microsoft.ACE.OLEDB.16.0", database));
    candidates.push_back(ForAccess(L"Microsoft.ACE.OLEDB.12.0", database));
  }
  return candidates;
}

std::wstring NoProviderText(const std::vector<ConnectionCandidate>& tried, int bits) {
  std::wstring names;
  for (const ConnectionCandidate& candidate : tried) {
    if (!names.empty()) names += L", ";
    names += candidate.provider;
  }
  return L"The project database cannot be opened: no OLE DB provider for it is installed for " +
         text::FromNumber(bits) + L"-bit programs such as this Outlook. Tried: " + names + L".";
}

}  // namespace postrove
