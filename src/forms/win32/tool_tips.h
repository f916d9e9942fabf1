#pragma once

#include <windows.h>

#include <string>

namespace postrove::forms {

// The tool-tip window of one dialog. The dialog does not own it: Wine would take an owned topmost
// window for a reason not to make the dialog topmost.
class ToolTips {
 public:
  ToolTips() = default;
  ~ToolTips();
  ToolTips(const ToolTips&) = delete;
  ToolTips& operator=(const ToolTips&) = delete;

  // A dialog without tool tips works: failures are passed over.
  void Create(HWND dialog, HINSTANCE module);

  // From now on the dialog is asked for a tip by TTN_GETDISPINFO while the mouse rests on the
  // child.
  void Add(HWND child);
  // Answers that; an empty tip is none.
  void Answer(NMHDR* question, std::wstring tip);
  void SetFont(HFONT font, int maxWidth);

 private:
  HWND dialog_ = nullptr;
  HWND window_ = nullptr;
  std::wstring shown_;  // is read after the answer
};

}  // namespace postrove::forms
