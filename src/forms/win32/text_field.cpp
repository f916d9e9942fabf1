#include <utility>

#include "forms/win32/control_window.h"
#include "forms/win32/dpi.h"

// The text field of a control: what is typed into it, and where its line stands.
namespace postrove::forms {

void ControlWindow::ReadCaret() {
  if (!edit_) return;
  DWORD start = 0;
  DWORD end = 0;
  SendMessageW(edit_, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
  control_->UserMovedCaret(static_cast<int>(start), static_cast<int>(end - start));
}

void ControlWindow::ReadText() {
  if (!edit_ || !control_) return;
  DWORD start = 0;
  DWORD end = 0;
  SendMessageW(edit_, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
  std::wstring text = TextOf(window_);
  if (text == control_->Text()) return;
  picked_ = -1;
  // The list alone forgets its selection: the combo box would empty the text with it.
  if (list_) SendMessageW(list_, LB_SETCURSEL, static_cast<WPARAM>(-1), 0);
  const HostDpiScope host;
  control_->UserTyped(std::move(text), static_cast<int>(start), static_cast<int>(end - start));
}

// Of a path that is longer than its box the end tells more, unless the user is in it.
void ControlWindow::ShowPathEnd() {
  if (kind_ != ControlKind::TextBox || multiLine_ || !edit_ || GetFocus() == edit_) return;
  const std::wstring text = TextOf(edit_);
  if (text.find(L'\\') == std::wstring::npos) return;
  SendMessageW(edit_, EM_SETSEL, text.size(), static_cast<LPARAM>(text.size()));
  SendMessageW(edit_, EM_SCROLLCARET, 0, 0);
}

// A line of text stands in the middle of its field, on one height with its label: what is over
// above and below becomes part of the frame. Windows itself puts it at the top.
LRESULT ControlWindow::HandleFrame(UINT message, WPARAM wParam, LPARAM lParam) {
  const LRESULT result = Pass(edit_, message, wParam, lParam);
  if (message == WM_NCHITTEST) return result == HTTRANSPARENT ? result : HTCLIENT;
  if (message == WM_NCPAINT) {
    PaintAroundLine();
    return result;
  }
  RECT& client = *reinterpret_cast<RECT*>(lParam);  // what both forms of the message begin with
  const LONG over = client.bottom - client.top - lineHeight_;
  if (lineHeight_ && over > 0) {
    client.top += over / 2;
    client.bottom = client.top + lineHeight_;
  }
  return result;
}

void ControlWindow::PaintAroundLine() {
  const HDC dc = GetWindowDC(edit_);
  if (!dc) return;
  RECT whole;
  RECT line;
  GetWindowRect(edit_, &whole);
  GetClientRect(edit_, &line);
  MapWindowPoints(edit_, nullptr, reinterpret_cast<POINT*>(&line), 2);
  OffsetRect(&line, -whole.left, -whole.top);
  OffsetRect(&whole, -whole.left, -whole.top);
  const LONG frame = line.left;
  const RECT above = {frame, frame, line.right, line.top};
  const RECT below = {frame, line.bottom, line.right, whole.bottom - frame};
  if (const HBRUSH brush = Colors(dc)) {
    FillRect(dc, &above, brush);
    FillRect(dc, &below, brush);
  }
  ReleaseDC(edit_, dc);
}

}  // namespace postrove::forms
