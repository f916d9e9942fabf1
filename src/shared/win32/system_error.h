#pragma once

#include <windows.h>

#include <string>

#include "shared/error.h"

namespace postrove {

// The system's own text for a Win32 error code or an HRESULT, on one line; empty when it has none.
std::wstring SystemText(DWORD code);

// The same, or the code's hexadecimal number.
std::wstring SystemMessage(DWORD code);

// An Error for a failed operation on a path: "<what> "<path>": <the system's sentence>", with the
// number kFileNotFound for a missing file or folder, else kPathFileAccess.
Error PathError(const std::wstring& source, const std::wstring& what, const std::wstring& path,
                DWORD code);

}  // namespace postrove
