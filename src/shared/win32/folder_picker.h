#pragma once

#include <windows.h>

#include <string>

namespace postrove {

// Shows the system's folder picker over `owner` (may be null) with a prompt of one line or with the
// system's own title. The chosen folder without a trailing
// backslash (a drive's root keeps its own), or empty text when the user cancels. Throws Error when
// no picker can be shown.
std::wstring PickFolder(HWND owner, const std::wstring& prompt);

}  // namespace postrove
