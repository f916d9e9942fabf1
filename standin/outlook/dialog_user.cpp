#include "outlook/dialog_user.h"

#include <stdexcept>

#include "outlook/dialog_windows.h"
#include "shared/text.h"

namespace standin {

using postrove::text::ToUtf8;

void WaitFor(const std::string& what, const std::function<bool()>& condition) {
  const DWORD start = GetTickCount();
  while (!condition()) {
    if (GetTickCount() - start > 10000) {
      throw std::runtime_error("waited for " + what + "\n" + ToUtf8(DescribeWindows()));
    }
    Sleep(1);
  }
}

HWND FocusIn(HWND dialog) {
  GUITHREADINFO info = {};
  info.cbSize = sizeof info;
  GetGUIThreadInfo(GetWindowThreadProcessId(dialog, nullptr), &info);
  return info.hwndFocus;
}

DialogUser::DialogUser(std::function<void()> steps, std::function<void(const char*)> failed)
    : thread_(
          [steps = std::move(steps), failed = std::move(failed), shower = GetCurrentThreadId()] {
            try {
              steps();
            } catch (const std::exception& failure) {
              failed(failure.what());
              PostThreadMessageW(shower, WM_QUIT, 0, 0);
            }
          }) {}

DialogUser::~DialogUser() {
  thread_.Join();
  MSG message;
  PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
}

DialogInFront::DialogInFront(const std::wstring& caption) {
  WaitFor(ToUtf8(caption), [&] {
    window_ = TopDialog();
    return window_ && TextOf(window_) == caption;
  });
}

void DialogInFront::Press(const std::wstring& button) const {
  HWND found = nullptr;
  WaitFor(ToUtf8(button), [&] { return (found = FindButton(window_, button)) != nullptr; });
  PostMessageW(found, BM_CLICK, 0, 0);
}

void DialogInFront::Enter(const std::wstring& label, const std::wstring& text) const {
  const HWND edit = Box(label);
  int looks = 0;
  WaitFor("the focus", [&] {
    // A dialog that is just being shown may still choose the box to begin in.
    if (looks++ % 100 == 0) {
      PostMessageW(window_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(edit), TRUE);
    }
    return FocusIn(window_) == edit;
  });
  SendMessageW(edit, EM_SETSEL, 0, -1);
  SendMessageW(edit, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text.c_str()));
  PostMessageW(window_, WM_NEXTDLGCTL, 0, 0);
}

std::wstring DialogInFront::Value(const std::wstring& label) const { return TextOf(Box(label)); }

bool DialogInFront::HasButton(const std::wstring& caption) const {
  return FindButton(window_, caption) != nullptr;
}

bool DialogInFront::Shows(const std::wstring& label) const {
  for (const HWND one : VisibleChildren(window_, L"STATIC")) {
    if (postrove::text::Replace(TextOf(one), L"&", L"") == label) return true;
  }
  return false;
}

void DialogInFront::WaitForFocus(const std::wstring& label) const {
  WaitFor("the focus in " + ToUtf8(label), [&] { return FocusIn(window_) == Box(label); });
}

HWND DialogInFront::Box(const std::wstring& label) const {
  const HWND edit = EditAfterLabel(window_, label);
  if (!edit) throw std::runtime_error("no box " + ToUtf8(label));
  return edit;
}

}  // namespace standin
