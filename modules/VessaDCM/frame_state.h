#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace vessa {

/// Units of 16-bit text that a failure message may have; one more than fits a result, so that a longer text
/// is still seen to be too long.
inline constexpr std::size_t kMaxFailureUnits = 16400;

/// A text in storage of its own, so that keeping the message of a failure needs no memory.
class FixedText {
 public:
  /// Keeps the first `kMaxFailureUnits` bytes.
  void Assign(std::string_view text) noexcept;
  void Clear() noexcept { size_ = 0; }
  std::string_view View() const noexcept { return {bytes_.data(), size_}; }

 private:
  std::array<char, kMaxFailureUnits> bytes_{};
  std::size_t size_ = 0;
};

/// What outlives a call besides the host's table, the dictionary and the decomposer's chunk buffer. One call
/// runs at a time in a process; a call made from inside another's event leaves its own texts here.
struct FrameState {
  FixedText error_text;             ///< message of the current failure; emptied as each call starts
  const char* step_text = nullptr;  ///< the stage that is running; a constant text, with its leading blank
};

FrameState& TheFrameState();

}  // namespace vessa
