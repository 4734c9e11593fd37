#include "vdoc/document_path.h"

#include <utility>

namespace vessa {

void CDocumentPath::SetTarget(std::vector<std::uint32_t> target) {
  target_ = std::move(target);
  depth_ = 0;
  common_ = 0;
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

}  // namespace vessa
