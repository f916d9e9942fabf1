#pragma once

#include <filesystem>

#include "mail/message.h"

namespace postrove::mail {

// Writes the message folder (FORMAT.md). An earlier message folder in its place is replaced;
// anything else there stays as it is. The folder appears complete or not at all. Throws MailError.
void WriteFolder(const Message& message, const std::filesystem::path& folder);

}  // namespace postrove::mail
