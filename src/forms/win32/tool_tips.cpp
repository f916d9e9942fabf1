#include "forms/win32/tool_tips.h"

#include <commctrl.h>

namespace postrove::forms {

void ToolTips::Create(HWND dialog, HINSTANCE module) {
  dialog_ = dialog;
  window_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                            WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, CW_USEDEFAULT, CW_USEDEFAULT,
                            CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr, module, nullptr);
}

ToolTips::~ToolTips() {
  if (window_) DestroyWindow(window_);
}

void ToolTips::Set(HWND child, const std::wstring& tip) {
  if (!window_ || !child) return;
  TTTOOLINFOW tool = {};
  // The size that every version of the common controls accepts.
  tool.cbSize = TTTOOLINFOW_V2_SIZE;
  tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  tool.hwnd = dialog_;
  tool.uId = reinterpret_cast<UINT_PTR>(child);
  SendMessageW(window_, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  if (tip.empty()) return;
  std::wstring text = tip;  // the message takes a text that it could change
  tool.lpszText = text.data();
  SendMessageW(window_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

void ToolTips::SetFont(HFONT font, int maxWidth) {
  if (!window_) return;
  SendMessageW(window_, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
  SendMessageW(window_, TTM_SETMAXTIPWIDTH, 0, maxWidth);
}

}  // namespace postrove::forms
