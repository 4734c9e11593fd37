#include "modules/VessaDCM/failure_text.h"

#include <span>

#include "platform/code_page.h"

namespace vessa {

void FailureText::Build(const FrameState& state) noexcept {
  size_ = 0;
  if (const std::string_view error = state.error_text.View(); !error.empty()) {
    Append(error);
    Append(" - ");
  }
  if (state.step_text != nullptr) Append(state.step_text);
  if (size_ == 0) Append("status not set");
}

void FailureText::Append(std::string_view text) noexcept {
  size_ += WidenInto(text, std::span<char16_t>(units_).subspan(size_));
}

}  // namespace vessa
