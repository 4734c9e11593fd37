#pragma once

#include <cstdint>

namespace emulator {

/// Whose code runs: the library's from the start of a call-out to its end, but for the callbacks that it makes. There is
/// one turn in a process, as there is one call at a time. So faults that only the library is to meet, such as memory
/// that runs out, can leave the host alone.
class Turn {
 public:
  enum class Of : std::uint8_t { kHost, kLibrary };

  explicit Turn(Of of) : before_{current_} { current_ = of; }
  ~Turn() { current_ = before_; }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

  static Of Current() { return current_; }

 private:
  static inline Of current_ = Of::kHost;  // NOLINT(readability-identifier-naming)  members end so

  Of before_;
};

}  // namespace emulator
