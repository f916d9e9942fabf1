#include "forms/win32/dpi.h"

#include <initializer_list>

namespace postrove::forms {
namespace {

template <typename Function>
Function Find(const char* name) {
  const HMODULE module = GetModuleHandleW(L"user32.dll");
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

using SetContext = HANDLE(WINAPI*)(HANDLE);

HANDLE gHostContext = nullptr;

HANDLE SetThreadContext(HANDLE context) {
  static const auto set = Find<SetContext>("SetThreadDpiAwarenessContext");
  return set ? set(context) : nullptr;
}

unsigned ScreenDpi() {
  const HDC screen = GetDC(nullptr);
  if (!screen) return USER_DEFAULT_SCREEN_DPI;
  const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
  ReleaseDC(nullptr, screen);
  return static_cast<unsigned>(dpi);
}

}  // namespace

DpiAwareScope::DpiAwareScope() {
  // Per monitor version 2, per monitor, system: the documented pseudo handles.
  for (const INT_PTR context : {-4, -3, -2}) {
    previous_ = SetThreadContext(reinterpret_cast<HANDLE>(context));
    if (previous_) return;
  }
}

DpiAwareScope::~DpiAwareScope() {
  if (previous_) SetThreadContext(previous_);
}

HostDpiScope::HostDpiScope() : previous_(gHostContext ? SetThreadContext(gHostContext) : nullptr) {}

HostDpiScope::~HostDpiScope() {
  if (previous_) SetThreadContext(previous_);
}

void HostDpiScope::Remember() {
  using GetContext = HANDLE(WINAPI*)();
  static const auto get = Find<GetContext>("GetThreadDpiAwarenessContext");
  if (get) gHostContext = get();
}

unsigned WindowDpi(HWND window) {
  using GetDpi = UINT(WINAPI*)(HWND);
  static const auto get = Find<GetDpi>("GetDpiForWindow");
  const UINT dpi = get ? get(window) : 0;
  return dpi ? dpi : ScreenDpi();
}

RECT WorkArea(HWND window) {
  MONITORINFO monitor = {};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
  return monitor.rcWork;
}

RECT FrameAround(SIZE client, DWORD style, DWORD exStyle, unsigned dpi) {
  using Adjust = BOOL(WINAPI*)(RECT*, DWORD, BOOL, DWORD, UINT);
  static const auto adjust = Find<Adjust>("AdjustWindowRectExForDpi");
  RECT frame = {0, 0, client.cx, client.cy};
  if (!adjust || !adjust(&frame, style, FALSE, exStyle, dpi)) {
    AdjustWindowRectEx(&frame, style, FALSE, exStyle);
  }
  return frame;
}

LOGFONTW MessageFont(unsigned dpi) {
  using Parameters = BOOL(WINAPI*)(UINT, UINT, PVOID, UINT, UINT);
  static const auto parameters = Find<Parameters>("SystemParametersInfoForDpi");
  NONCLIENTMETRICSW metrics = {};
  metrics.cbSize = sizeof metrics;
  if (parameters && parameters(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, dpi)) {
    return metrics.lfMessageFont;
  }
  if (!SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0)) {
    // Before Vista the structure ended one member earlier.
    metrics.cbSize = sizeof metrics - sizeof metrics.iPaddedBorderWidth;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
  }
  LOGFONTW font = metrics.lfMessageFont;
  font.lfHeight = MulDiv(font.lfHeight, static_cast<int>(dpi), static_cast<int>(ScreenDpi()));
  return font;
}

}  // namespace postrove::forms
