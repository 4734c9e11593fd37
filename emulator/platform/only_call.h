#pragma once

namespace emulator {

/// Held through every call-out: only one may run at a time in a process, others wait. A call from inside an event of
/// another, on the same thread, is part of that one.
class OnlyCall {
 public:
  OnlyCall();
  ~OnlyCall();
  OnlyCall(const OnlyCall&) = delete;
  OnlyCall& operator=(const OnlyCall&) = delete;
};

}  // namespace emulator
