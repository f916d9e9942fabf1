#pragma once

#include <windows.h>

namespace postrove::forms {

// What ties a modal dialog to the window that it is owned by. The owner is disabled while the
// dialog is up. When the owner is destroyed meanwhile, the dialog is set free just before, since
// Windows destroys owned windows with their owner. The owner must belong to the thread for that.
class ModalOwner {
 public:
  // `dialogClass` names the window class of the dialogs to keep; a literal.
  explicit ModalOwner(const wchar_t* dialogClass);
  ~ModalOwner();
  ModalOwner(const ModalOwner&) = delete;
  ModalOwner& operator=(const ModalOwner&) = delete;

  // The window to own a new dialog: the thread's active one, else the process's foreground one,
  // else null.
  static HWND Choose();

  // Disables the owner of the dialog, if it has one and it is enabled.
  void Disable(HWND dialog);

  // Enables the owner again, and activates it when the dialog is active. Call it before the dialog
  // is hidden or destroyed, or Windows activates some other program. Again does nothing.
  void Release(HWND dialog);

 private:
  HHOOK hook_;
  HWND disabled_ = nullptr;
};

}  // namespace postrove::forms
