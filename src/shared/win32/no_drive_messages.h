#pragma once

#include <windows.h>

namespace postrove {

// While it lives, the system does not ask for a disk in an empty drive when a path is looked up.
// Everything else about the error mode stays as it was. From Windows 7 on only the thread's own mode
// is touched; before, there is the process's alone, so other threads of the host may for that moment
// get an error where they would have asked their user.
class NoDriveMessages {
 public:
  using SetThreadMode = BOOL(WINAPI*)(DWORD mode, DWORD* before);

  // SetThreadErrorMode; null before Windows 7.
  static SetThreadMode OfThread();

  explicit NoDriveMessages(SetThreadMode set = OfThread());
  NoDriveMessages(const NoDriveMessages&) = delete;
  NoDriveMessages& operator=(const NoDriveMessages&) = delete;
  ~NoDriveMessages();

 private:
  DWORD Replace(DWORD mode) const;

  const SetThreadMode set_;
  const DWORD before_;
};

}  // namespace postrove
