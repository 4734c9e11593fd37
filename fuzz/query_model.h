#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "fuzz/content_events.h"

namespace fuzz {

/// Where an event stands: tag, item number, tag, ... as a property list has it.
using Path = std::vector<std::uint32_t>;

/// The paths of all values, in their order; of at most so many.
std::vector<Path> ValuePaths(const std::deque<Event>& events, std::size_t most);

struct Answer {
  enum class Kind {
    kFound,
    kAbsent,
    kTooLong,  ///< a value that does not fit into a result list
    kOpen,     ///< the events end before the answer is known
  };
  Kind kind = Kind::kOpen;
  std::string vr;
  std::string value;
};

/// The answer to a query, worked out from the events of a decomposition: the first value at that path, when the
/// elements come in ascending order.
/// @param sequence_answer  a sequence itself can be the answer
Answer ExpectedAnswer(const std::deque<Event>& events, const Path& target, bool sequence_answer);

/// The number of the item behind that one: `target` ends with an item number; 0 for none. The same kinds.
Answer ExpectedNextItem(const std::deque<Event>& events, Path target);

}  // namespace fuzz
