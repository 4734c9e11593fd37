#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "modules/VessaDCM/frame_state.h"

namespace vessa {

/// The message of a failure as 16-bit text, built without the heap: the error text, " - " and the step text;
/// one of the two alone where the other is missing; "status not set" where both are. Cut at kMaxFailureUnits.
class FailureText {
 public:
  // Only the part of the units that is in use is ever read.
  FailureText() {}  // NOLINT(cppcoreguidelines-pro-type-member-init,modernize-use-equals-default)

  void Build(const FrameState& state) noexcept;
  std::u16string_view View() const noexcept { return {units_.data(), size_}; }

 private:
  void Append(std::string_view text) noexcept;

  std::array<char16_t, kMaxFailureUnits> units_;
  std::size_t size_ = 0;
};

}  // namespace vessa
