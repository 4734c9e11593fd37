#pragma once

#include <cstdint>

namespace emulator {

/// Whose code runs on this thread: the library's from the start of a call-out to its end, but for the callbacks that
/// it makes. So faults that only the library is to meet, such as memory that runs out, can leave the host alone.
class Turn {
 public:
  enum class Of : std::uint8_t { kHost, kLibrary };

  explicit Turn(Of of) : before_{current_} { current_ = of; }
  ~Turn() { current_ = before_; }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

  static Of Current() { return current_; }

 private:
  static inline thread_local Of current_ = Of::kHost;

  Of before_;
};

}  // namespace emulator
