#include "forms/win32/modal_owner.h"

#include <cwchar>
#include <utility>

namespace postrove::forms {
namespace {

// The dialogs of one process share a class; hooks take no argument.
const wchar_t* gDialogClass = nullptr;

BOOL CALLBACK DetachFrom(HWND window, LPARAM owner) {
  if (GetWindow(window, GW_OWNER) != reinterpret_cast<HWND>(owner)) return TRUE;
  wchar_t name[64] = {};
  GetClassNameW(window, name, 64);
  if (std::wcscmp(name, gDialogClass) == 0) SetWindowLongPtrW(window, GWLP_HWNDPARENT, 0);
  return TRUE;
}

// Of all notices of a window's end only this one comes before its owned windows are destroyed.
LRESULT CALLBACK BeforeDestroy(int code, WPARAM wParam, LPARAM lParam) {
  if (code == HCBT_DESTROYWND) {
    EnumThreadWindows(GetCurrentThreadId(), DetachFrom, static_cast<LPARAM>(wParam));
  }
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

}  // namespace

ModalOwner::ModalOwner(const wchar_t* dialogClass) {
  gDialogClass = dialogClass;
  hook_ = SetWindowsHookExW(WH_CBT, BeforeDestroy, nullptr, GetCurrentThreadId());
}

ModalOwner::~ModalOwner() {
  if (hook_) UnhookWindowsHookEx(hook_);
}

HWND ModalOwner::Choose() {
  if (const HWND active = GetActiveWindow()) return active;
  const HWND foreground = GetForegroundWindow();
  DWORD process = 0;
  GetWindowThreadProcessId(foreground, &process);
  return process == GetCurrentProcessId() ? foreground : nullptr;
}

void ModalOwner::Disable(HWND dialog) {
  const HWND owner = GetWindow(dialog, GW_OWNER);
  if (!owner || !IsWindowEnabled(owner)) return;
  EnableWindow(owner, FALSE);
  disabled_ = owner;
}

void ModalOwner::Release(HWND dialog) {
  const HWND owner = std::exchange(disabled_, nullptr);
  // A destroyed owner is the dialog's owner no longer, even when its handle was given out again.
  if (!owner || GetWindow(dialog, GW_OWNER) != owner) return;
  EnableWindow(owner, TRUE);
  if (GetActiveWindow() == dialog) SetActiveWindow(owner);
}

}  // namespace postrove::forms
