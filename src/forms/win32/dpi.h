#pragma once

#include <windows.h>

namespace postrove::forms {

// Windows' scaling functions, each found at run time: an older Windows has fewer of them, and then
// the next best answer is given. Thread: any. Nothing here fails.

// For its lifetime the thread works in pixels of the monitor: the windows that it makes scale with
// the monitor that they are on, whatever the host process declared.
class DpiAwareScope {
 public:
  DpiAwareScope();
  ~DpiAwareScope();
  DpiAwareScope(const DpiAwareScope&) = delete;
  DpiAwareScope& operator=(const DpiAwareScope&) = delete;

 private:
  HANDLE previous_ = nullptr;
};

// For its lifetime the thread is again as the host process has it: for calls that leave the
// dialogs. Windows runs the procedures of our windows in our mode, within any of the host's.
class HostDpiScope {
 public:
  HostDpiScope();
  ~HostDpiScope();
  HostDpiScope(const HostDpiScope&) = delete;
  HostDpiScope& operator=(const HostDpiScope&) = delete;

  // Takes the thread's mode of now for the host's; called when the host calls.
  static void Remember();

 private:
  HANDLE previous_;
};

// Pixels per inch that the window is to be drawn for.
unsigned WindowDpi(HWND window);

// The part of the window's monitor that windows may cover.
RECT WorkArea(HWND window);

// The window rectangle around a client area of that size, at the origin.
RECT FrameAround(SIZE client, DWORD style, DWORD exStyle, unsigned dpi);

// The font of message boxes, sized for `dpi`.
LOGFONTW MessageFont(unsigned dpi);

}  // namespace postrove::forms
