#pragma once

#include <atomic>

// GoogleTest takes this header instead of its own empty one where the runtime has no std::mutex, of which it would make
// this class. All its other locks are then the system's.

#define GTEST_HAS_NOTIFICATION_ 1

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
