#pragma once

#include <windows.h>

namespace postrove::forms {

// Windows' scaling functions, each found at run time: an older Windows has fewer of them, and then
// the next best answer is given. Thread: any. Nothing here fails.

// For its lifetime the thread makes windows that scale with the monitor that they are on, whatever
// the host process declared.
class DpiAwareScope {
 public:
  DpiAwareScope();
  ~DpiAwareScope();
  DpiAwareScope(const DpiAwareScope&) = delete;
  DpiAwareScope& operator=(const DpiAwareScope&) = delete;

 private:
  HANDLE previous_ = nullptr;
};

// Pixels per inch that the window is to be drawn for.
unsigned WindowDpi(HWND window);

// The window rectangle around a client area of that size, at the origin.
RECT FrameAround(SIZE client, DWORD style, DWORD exStyle, unsigned dpi);

// The font of message boxes, sized for `dpi`.
LOGFONTW MessageFont(unsigned dpi);

}  // namespace postrove::forms
