// GoogleTest's place for what a platform needs. Its own Notification is made of std::mutex, which
// the mingw compilers without winpthread lack; only its own tests of threads wait for one.
#pragma once

#if defined(_WIN32)
#include <atomic>

namespace testing::internal {

class Notification {
 public:
  void Notify() { notified_ = true; }
  void WaitForNotification() const {
    while (!notified_) {
    }
  }

 private:
  std::atomic<bool> notified_ = false;
};

}  // namespace testing::internal

#define GTEST_HAS_NOTIFICATION_ 1
#endif
