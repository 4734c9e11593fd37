#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "dicom/tag.h"

namespace vessa {

/// Where the path of the element or item at hand stands to a target path, in document order.
enum class PathRelation {
  kBefore,  ///< the first entry that differs is smaller: the target may still come
  kLeads,   ///< the path is the target's beginning: the target may lie inside
  kEqual,
  kInside,  ///< the target is the path's beginning
  kPassed,  ///< the first entry that differs is larger: the target can no longer come
};

/// The path to the element or item at hand (tag, item number, tag, ...), held against a target. Item numbers
/// count from 1. Of the path only the length of its common beginning with the target, the entry behind that and
/// its depth are kept: no step allocates, and the relation takes the same short time to tell at any depth.
class CDocumentPath {
 public:
  /// Takes the target and empties the path.
  void SetTarget(std::vector<std::uint32_t> target);

  void PushTag(Tag tag) { Push(tag.Value()); }
  void PushItemCounter() { Push(0); }
  /// Leaves an element or a sequence; an empty path stays empty.
  void Pop() {
    if (depth_ == 0) return;
    --depth_;
    common_ = std::min(common_, depth_);
  }
  /// Counts one item more when the last entry is an item counter (items of a sequence); fragments of pixel
  /// data, whose last entry is a tag, are not counted.
  void CountItem();

  PathRelation Relation() const {
    const bool path_ends = common_ == depth_;
    const bool target_ends = common_ == target_.size();
    if (path_ends && target_ends) return PathRelation::kEqual;
    if (path_ends) return PathRelation::kLeads;
    if (target_ends) return PathRelation::kInside;
    return differing_ < target_[common_] ? PathRelation::kBefore : PathRelation::kPassed;
  }

 private:
  void Push(std::uint32_t entry) {
    if (depth_ == common_ && depth_ < target_.size()) {
      if (entry == target_[depth_]) {
        ++common_;
      } else {
        differing_ = entry;
      }
    }
    ++depth_;
  }

  std::vector<std::uint32_t> target_;
  std::size_t depth_ = 0;        // entries of the path
  std::size_t common_ = 0;       // entries at the beginning that path and target share
  std::uint32_t differing_ = 0;  // the path's entry behind those, if both go on
};

}  // namespace vessa
