#pragma once

#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

namespace vessa {

/// A sequence that is being written, and how far its walks have come.
struct OpenSequence {
  std::int32_t node;
  bool in_item = false;
  std::string item_key;
  std::string tag_key;
};

/// The sequences from the top level down to the one at hand. They are kept on the heap: how deep they go is
/// the content's business and must not touch the machine stack.
class OpenSequences {
 public:
  /// @param root  the data set's own node, which no sequence may be
  explicit OpenSequences(std::int32_t root) : path_{root} {}

  bool IsEmpty() const { return sequences_.empty(); }
  OpenSequence& Innermost() { return sequences_.back(); }
  /// Opens a sequence inside the innermost one. False, and nothing is opened, when the node is its own
  /// ancestor.
  bool Open(std::int32_t node);
  void Close();

 private:
  std::vector<OpenSequence> sequences_;
  std::unordered_set<std::int32_t> path_;  ///< nodes of all that are open, and the root
};

}  // namespace vessa
