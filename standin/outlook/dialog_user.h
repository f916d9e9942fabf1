#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "threads.h"

// A user at the dialogs of this process whose steps are code: what a test does on a thread of its
// own while another thread shows them.
namespace standin {

// Waits until the condition holds. Throws std::runtime_error with the windows that are to be seen
// when it does not within ten seconds.
void WaitFor(const std::string& what, const std::function<bool()>& condition);

// The control of a dialog that has the focus.
HWND FocusIn(HWND dialog);

// Does the steps while this thread shows dialogs. A step that throws is handed to `failed`, and the
// modal loops of the thread are ended by WM_QUIT.
class DialogUser {
 public:
  DialogUser(std::function<void()> steps, std::function<void(const char* reason)> failed);
  ~DialogUser();  // waits for the last step; a failed user's WM_QUIT does not outlive it
  DialogUser(const DialogUser&) = delete;
  DialogUser& operator=(const DialogUser&) = delete;

 private:
  Thread thread_;
};

// The dialog in front. Used on the user's thread; all throw as WaitFor does. A box is named by a
// word of the label before it, a button or label by its text without "&".
class DialogInFront {
 public:
  explicit DialogInFront(const std::wstring& caption);  // waits for it

  HWND Window() const { return window_; }
  void Press(const std::wstring& button) const;
  // The text takes the place of all that is in the box, which is then left again.
  void Enter(const std::wstring& label, const std::wstring& text) const;
  std::wstring Value(const std::wstring& label) const;
  bool HasButton(const std::wstring& caption) const;  // to be seen and enabled
  bool Shows(const std::wstring& label) const;
  void WaitForFocus(const std::wstring& label) const;

 private:
  HWND Box(const std::wstring& label) const;

  HWND window_ = nullptr;
};

}  // namespace standin
