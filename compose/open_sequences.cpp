#include "compose/open_sequences.h"

namespace vessa {

bool OpenSequences::Open(std::int32_t node) {
  if (!path_.insert(node).second) return false;
  sequences_.push_back(OpenSequence{node, false, {}, {}});
  return true;
}

void OpenSequences::Close() {
  path_.erase(sequences_.back().node);
  sequences_.pop_back();
}

}  // namespace vessa
