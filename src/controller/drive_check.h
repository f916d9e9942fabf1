#pragma once

#include <string>

#include "shared/clsSharedUtil.h"

namespace postrove {

// The line that refuses a folder for its drive, naming the field; empty for one that will do, as
// every folder on a server will.
std::wstring DriveProblem(clsSharedUtil& utility, const std::wstring& folder,
                          const std::wstring& fieldName);

}  // namespace postrove
