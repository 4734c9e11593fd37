#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "dicom/tag.h"

namespace vessa {

/// Reads a reference text from left to right. Every operation reads at the position and moves past what it
/// accepts; nothing is skipped. Failures are CVDocException at the position reached.
class CReferenceCursor {
 public:
  /// The text ends at its first zero byte.
  explicit CReferenceCursor(std::string_view text) : text_{text.substr(0, text.find('\0'))} {}

  bool AtEnd() const { return position_ == text_.size(); }
  bool IsAt(char character) const { return !AtEnd() && text_[position_] == character; }
  std::size_t Position() const { return position_; }

  void Expect(char character);
  /// A run of decimal digits. A number that does not fit in 32 bits is 2147483647.
  std::int32_t ReadInteger();
  /// "(gggg,eeee)", not looked up; or a keyword of the dictionary, letter case significant.
  Tag ReadTag();
  /// Fails unless the dictionary knows the tag as a sequence. A private tag counts as unknown: what it holds
  /// is not the standard's to say.
  void CheckSequence(Tag tag) const;

  [[noreturn]] void Fail(std::string_view message) const;
  [[noreturn]] void Fail(std::string_view message, std::string_view argument) const;

 private:
  std::uint16_t ReadHexGroup();
  template <class Predicate>
  std::string_view TakeWhile(Predicate belongs);

  std::string_view text_;
  std::size_t position_ = 0;
};

}  // namespace vessa
