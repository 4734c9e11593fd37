#include "vdoc/document_path.h"

#include <algorithm>
#include <utility>

namespace vessa {

void CDocumentPath::SetTarget(std::vector<std::uint32_t> target) {
  target_ = std::move(target);
  depth_ = 0;
  common_ = 0;
}

void CDocumentPath::Push(std::uint32_t entry) {
  if (depth_ == common_ && depth_ < target_.size()) {
    if (entry == target_[depth_]) {
      ++common_;
    } else {
      differing_ = entry;
    }
  }
  ++depth_;
}

void CDocumentPath::Pop() {
  if (depth_ == 0) return;
  --depth_;
  common_ = std::min(common_, depth_);
}

void CDocumentPath::CountItem() {
  const bool last_is_counter = depth_ != 0 && depth_ % 2 == 0;
  if (!last_is_counter) return;
  const std::size_t last = depth_ - 1;
  if (last >= target_.size() || last > common_) return;  // whatever it counts, the relation stays
  const std::uint32_t counted = (last < common_ ? target_[last] : differing_) + 1;
  Pop();
  Push(counted);
}

PathRelation CDocumentPath::Relation() const {
  const bool path_ends = common_ == depth_;
  const bool target_ends = common_ == target_.size();
  if (path_ends && target_ends) return PathRelation::kEqual;
  if (path_ends) return PathRelation::kLeads;
  if (target_ends) return PathRelation::kInside;
  return differing_ < target_[common_] ? PathRelation::kBefore : PathRelation::kPassed;
}

}  // namespace vessa
