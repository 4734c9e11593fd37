#pragma once

#include <cstdint>
#include <functional>
#include <utility>

/// A thread whose stack has 256 KiB. The destructor waits for its end.
class SmallThread {
 public:
  explicit SmallThread(std::function<void()> action);
  ~SmallThread();
  SmallThread(const SmallThread&) = delete;
  SmallThread& operator=(const SmallThread&) = delete;

 private:
  std::function<void()> action_;
  std::uintptr_t handle_;  // of the system's kind
};

inline void RunOnSmallStack(std::function<void()> action) { const SmallThread thread(std::move(action)); }
