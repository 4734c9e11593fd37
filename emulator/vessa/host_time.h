#pragma once

#include "emulator/vessa/call_progress.h"

namespace emulator::tool {

/// While it lives, the host is at work for the library: time that no call is blamed for.
class HostTime {
 public:
  explicit HostTime(CallProgress& progress) : progress_(progress) { progress_.LeaveLibrary(); }
  ~HostTime() { progress_.EnterLibrary(); }
  HostTime(const HostTime&) = delete;
  HostTime& operator=(const HostTime&) = delete;

 private:
  CallProgress& progress_;
};

}  // namespace emulator::tool
