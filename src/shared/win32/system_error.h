#pragma once

#include <windows.h>

#include <string>

#include "shared/error.h"

namespace postrove {

// The system's own sentence for a Win32 error code, without the line break at its end.
std::wstring SystemMessage(DWORD code);

// An Error for a failed operation on a path: "<what> "<path>": <the system's sentence>", with the
// number kFileNotFound for a missing file or folder, else kPathFileAccess.
Error PathError(const std::wstring& source, const std::wstring& what, const std::wstring& path,
                DWORD code);

}  // namespace postrove
