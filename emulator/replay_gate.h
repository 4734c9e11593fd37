#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "emulator/replay_host.h"

namespace emulator {

/// The way of every callback of a replay.
class ReplayGate {
 public:
  using Arguments = std::array<CallbackItem, 4>;

  /// The recorded answer, valid until the next callback; a failure where there is none.
  static const RecordedAnswer& Ask(Operation operation, const Arguments& arguments) noexcept;

  // What the answer hands out, to be read until the next callback.
  static std::string& HandOutBytes(const RecordedAnswer& answer);
  static std::vector<std::uint16_t>& HandOutUnits(const RecordedAnswer& answer);

  static LongStrings& Areas();
};

}  // namespace emulator
