#pragma once

#include <cstddef>
#include <vector>

#include "bench/recorded_callback.h"
#include "host/binary_interface.h"

namespace bench {

/// Every callback of one call, in order and with its arguments, to be made again without the library in
/// between: the least that any library making the same callbacks could cost.
class Recording {
 public:
  /// Who makes the callbacks again. Shared objects lie far from the program in memory, and a call over that distance
  /// takes the processor longer: only a shared object's replay is what a library could do. Started through the loader
  /// (ld-linux-x86-64.so.2 vessa_bench), the program lies beside them, and both replays take the same.
  enum class Caller { kSharedObject, kProgram };

  /// A table that records into this object and passes everything on to `host`. One recording at a time.
  const vessa::HostServices* RecordOver(const vessa::HostServices* host);
  /// Makes the recorded callbacks against `host`.
  void Replay(const vessa::HostServices& host, Caller caller) const;

  std::size_t Count() const { return callbacks_.size(); }

 private:
  std::vector<RecordedCallback> callbacks_;
  friend struct RecordingCallbacks;
};

}  // namespace bench
