#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "emulator/host.h"
#include "emulator/library.h"
#include "tests/callouts/scenarios.h"

namespace emulator {

/// How one call went: what it answered, and what it left on the host.
struct Attempt {
  ListResult result;
  std::string message;                  ///< of the result, in 8 bits
  std::vector<std::string> events;      ///< of the content handlers
  std::vector<std::string> bytes;       ///< of each stream
  std::vector<std::int64_t> positions;  ///< of each stream
  std::size_t stack_depth = 0;
  std::size_t open_long_strings = 0;
};

/// Makes the scenario's call on a host that is new to it.
Attempt Try(const Scenario& scenario, Host& host, const Library& library);

/// True when the call answered and left what the other did.
bool WentAlike(const Attempt& one, const Attempt& other);

/// True when each stream and the events are the start of what the whole has.
bool IsStartOf(const Attempt& start, const Attempt& whole);

/// How far a call has come, to be taken at any time of it.
struct Standing {
  std::size_t stack_depth = 0;
  std::size_t events = 0;
  std::vector<std::size_t> byte_counts;  ///< of each stream
  std::vector<std::int64_t> positions;   ///< of each stream
};

Standing StandingOf(const Host& host);

/// Bytes of a data set that must have been read before the last of these events can be told, worked out from nothing
/// but the events and PS3.5.
std::int64_t BytesBehind(const std::vector<std::string>& events);

}  // namespace emulator
