#pragma once

#include <windows.h>

#include <string>

namespace standin {

// Writes a picture of the window, as it stands on the screen, as a bitmap file. False when it could
// not be taken or written.
bool SaveScreenshot(HWND window, const std::wstring& path);

}  // namespace standin
