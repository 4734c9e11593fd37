#pragma once

#include <chrono>
#include <cstdint>
#include <span>
#include <string_view>

#include "emulator/callback.h"
#include "host/binary_interface.h"

namespace emulator {

/// A call of a call-out, as it is made and when it has returned.
struct CallOut {
  std::string_view name;
  const vessa::HostString* buffer =
      nullptr;                            ///< its arguments and later its results; null for "ioo" and "coi"
  std::span<const std::int32_t> numbers;  ///< the integers behind the buffer, or all arguments
};

/// Is told of calls and of the callbacks made in them. A callback is told when it has been answered, so a call that the
/// host makes inside one comes, with all its own, before it.
class CallWatcher {
 public:
  virtual ~CallWatcher() = default;

  virtual void OnCall(const CallOut& call) = 0;
  virtual void OnCallback(const Callback& callback) = 0;
  virtual void OnReturn(const CallOut& call, std::int32_t returned, std::chrono::nanoseconds took) = 0;

 protected:
  CallWatcher() = default;
  CallWatcher(const CallWatcher&) = default;
  CallWatcher& operator=(const CallWatcher&) = default;
};

}  // namespace emulator
