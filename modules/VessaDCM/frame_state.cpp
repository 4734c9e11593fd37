#include "modules/VessaDCM/frame_state.h"

#include <algorithm>

namespace vessa {

void FixedText::Assign(std::string_view text) noexcept {
  size_ = std::min(text.size(), bytes_.size());
  std::copy_n(text.data(), size_, bytes_.data());
}

FrameState& TheFrameState() {
  static constinit FrameState state;
  return state;
}

}  // namespace vessa
