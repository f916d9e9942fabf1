#pragma once

#include <windows.h>

#include <cstdlib>
#include <functional>
#include <utility>

// Threads and locks of the stand-ins and the tests. The mingw compilers without winpthread, which the
// add-in is built with, lack std::thread and std::mutex.
namespace standin {

// Work on a thread of its own. The end of the object waits for the end of the work.
class Thread {
 public:
  explicit Thread(std::function<void()> work)
      : work_(std::move(work)), handle_(CreateThread(nullptr, 0, Run, this, 0, nullptr)) {
    if (!handle_) std::abort();
  }
  Thread(const Thread&) = delete;
  Thread& operator=(const Thread&) = delete;
  ~Thread() {
    Join();
    CloseHandle(handle_);
  }

  void Join() const { WaitForSingleObject(handle_, INFINITE); }
  HANDLE Handle() const { return handle_; }  // signalled once the work has ended

 private:
  static DWORD WINAPI Run(void* self) noexcept {
    static_cast<Thread*>(self)->work_();
    return 0;
  }

  const std::function<void()> work_;
  const HANDLE handle_;
};

// For std::lock_guard.
class Mutex {
 public:
  void lock() { AcquireSRWLockExclusive(&lock_); }
  void unlock() { ReleaseSRWLockExclusive(&lock_); }

 private:
  SRWLOCK lock_ = SRWLOCK_INIT;
};

}  // namespace standin
