#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace vessa {

/// The letters by which PushArguments reads its values. They are known while compiling: a format that does not fit
/// its values is no program, and at run time nothing is left of it but the callbacks that it stands for.
template <std::size_t kSize>
struct ArgumentFormat {
  // Implicit on purpose: a format is written as a text.
  consteval ArgumentFormat(const char (&text)[kSize]) {  // NOLINT(google-explicit-constructor)
    std::copy_n(text, kSize, letters);
  }

  static constexpr std::size_t kLetters = kSize - 1;

  /// A letter without a meaning takes no value.
  static consteval bool TakesValue(char letter) {
    return std::string_view("iudoanxlc*").find(letter) != std::string_view::npos;
  }
  /// Values that the letters before this one take.
  consteval std::size_t ValuesBefore(std::size_t letter) const {
    return static_cast<std::size_t>(std::count_if(letters, letters + letter, TakesValue));
  }
  consteval std::size_t ValueCount() const { return ValuesBefore(kLetters); }
  /// What the host is told that it got: every letter but '*', which only tells of the next text. Letters without a
  /// meaning are counted too; that is kept.
  consteval int Counted() const {
    return static_cast<int>(kLetters) - static_cast<int>(std::count(letters, letters + kLetters, '*'));
  }

  char letters[kSize]{};
};

}  // namespace vessa
