#pragma once

#include <wrl/client.h>

#include <string>
#include <vector>

#include "shared/connection_string.h"

struct ICommandText;

namespace postrove::ole_db {

// Connects to the database by the first of the candidates whose provider is there for this process,
// and makes a command with the statement. The connection lasts as long as something that came out
// of it. A login that was accepted is the first to be tried with these candidates the next time. A
// provider that is there and refuses is not passed over: its reason is what the user
// needs. Throws Error with `source`: for what the system or the provider reports; when every login
// is refused, with DB_SEC_E_AUTH_FAILED and each one's reason; when no provider is there, with
// NoProviderText and the last one's HRESULT. A class that is not registered as an OLE DB provider
// is none, and nothing of it is loaded.
Microsoft::WRL::ComPtr<ICommandText> CreateCommand(std::vector<ConnectionCandidate>& candidates,
                                                   const std::wstring& statement,
                                                   const wchar_t* source);

}  // namespace postrove::ole_db
