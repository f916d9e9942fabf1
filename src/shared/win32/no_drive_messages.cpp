#include "shared/win32/no_drive_messages.h"

namespace postrove {

NoDriveMessages::SetThreadMode NoDriveMessages::OfThread() {
  static const auto function = reinterpret_cast<SetThreadMode>(reinterpret_cast<void*>(
      GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "SetThreadErrorMode")));
  return function;
}

// The mode can only be read by setting it: the functions that read it are newer.
NoDriveMessages::NoDriveMessages(SetThreadMode set)
    : set_(set), before_(Replace(SEM_FAILCRITICALERRORS)) {
  Replace(before_ | SEM_FAILCRITICALERRORS);
}

NoDriveMessages::~NoDriveMessages() { Replace(before_); }

DWORD NoDriveMessages::Replace(DWORD mode) const {
  if (!set_) return SetErrorMode(mode);
  DWORD before = 0;
  set_(mode, &before);
  return before;
}

}  // namespace postrove
