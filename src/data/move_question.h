#pragma once

#include <string>

#include "shared/clsSharedUtil.h"

// The questions before the office's files go elsewhere: a typed folder alone must not move them.
namespace postrove {

// Asks whether the settings file or the database is to move from one folder to another. True for
// yes.
enum class Moved { Settings, Database };
bool AskToMove(clsSharedUtil& utility, Moved what, const std::wstring& from,
               const std::wstring& to);

// What is to be done about a file that is to move into a folder: one of its name that is there
// already is asked about, and never replaced. Throws Error for a folder without drive or server.
enum class Move { Copy, UseExisting, Refused };
Move PlanMove(clsSharedUtil& utility, Moved what, const std::wstring& file,
              const std::wstring& folder);

}  // namespace postrove
