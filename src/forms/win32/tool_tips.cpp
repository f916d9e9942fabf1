#include "forms/win32/tool_tips.h"

#include <commctrl.h>

#include <utility>

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

void ToolTips::Add(HWND child) {
  if (!window_ || !child) return;
  TTTOOLINFOW tool = {};
  // The size that every version of the common controls accepts.
  tool.cbSize = TTTOOLINFOW_V2_SIZE;
  tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  tool.hwnd = dialog_;
  tool.uId = reinterpret_cast<UINT_PTR>(child);
  tool.lpszText = LPSTR_TEXTCALLBACKW;
  SendMessageW(window_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

void ToolTips::Answer(NMHDR* question, std::wstring tip) {
  shown_ = std::move(tip);
  reinterpret_cast<NMTTDISPINFOW*>(question)->lpszText = shown_.data();
}

void ToolTips::SetFont(HFONT font, int maxWidth) {
  if (!window_) return;
  SendMessageW(window_, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
  SendMessageW(window_, TTM_SETMAXTIPWIDTH, 0, maxWidth);
}

}  // namespace postrove::forms
