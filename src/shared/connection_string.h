#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "shared/clsDatabase.h"

namespace postrove {

// One way to log in to the project database by a provider.
struct Login {
  std::wstring connectionString;  // for the OLE DB service components; names the provider as well
  std::wstring name;              // for the user: who logs in, and how
};

struct ConnectionCandidate {
  std::wstring provider;
  std::vector<Login> logins;  // at least one; a later one is for a database that refuses the others
};

// The ways to reach the database that the properties describe, at least one; a later one is for a
// machine that lacks the providers before it. The configured provider comes first.
//
// Access: the file DBFullPath. Jet exists for 32-bit programs only, so ACE, which opens the same
// files, stands behind it. Without a workgroup file both know no user but Admin: the user and the
// password that are set come first, then Admin with that password as the database's, then Admin
// without one. SQL Server: the server DBPath (DBServer has been overwritten with the full path by
// then) and the database DbName, with the Windows account when UID is empty. Jet cannot reach it,
// so the default provider stands for SQL Server's own ones there. An empty provider counts as the
// default one.
std::vector<ConnectionCandidate> ConnectionCandidates(const clsDatabase& database);

// `value` as it stands in an OLE DB connection string: whatever is in it stays one value.
std::wstring QuoteConnectionValue(std::wstring_view value);

// What the user reads when none of the candidates' providers is there for a process of `bits` bits.
std::wstring NoProviderText(const std::vector<ConnectionCandidate>& tried, int bits);

}  // namespace postrove
