#pragma once

#include <cstdint>
#include <string>

namespace vessa {

/// An attribute tag (PS3.5 section 7.1): group and element, held as one 32-bit number with the group on top.
class Tag {
 public:
  constexpr Tag() = default;
  constexpr Tag(std::uint16_t group, std::uint16_t element)
      : value_{static_cast<std::uint32_t>(group) << 16 | element} {}
  constexpr explicit Tag(std::uint32_t value) : value_{value} {}

  constexpr std::uint32_t Value() const { return value_; }
  constexpr std::uint16_t Group() const { return static_cast<std::uint16_t>(value_ >> 16); }
  constexpr std::uint16_t Element() const { return static_cast<std::uint16_t>(value_); }
  constexpr bool IsPrivate() const { return (Group() & 1) != 0; }

  // clang-tidy 14 takes the zero that the rewritten comparisons hold for a pointer.
  // NOLINTNEXTLINE(modernize-use-nullptr)
  constexpr auto operator<=>(const Tag&) const = default;

 private:
  std::uint32_t value_ = 0;
};

inline constexpr Tag kBitsAllocated{0x0028, 0x0100};
inline constexpr Tag kPixelData{0x7FE0, 0x0010};
inline constexpr Tag kItem{0xFFFE, 0xE000};
inline constexpr Tag kItemDelimitation{0xFFFE, 0xE00D};
inline constexpr Tag kSequenceDelimitation{0xFFFE, 0xE0DD};

inline constexpr std::uint32_t kUndefinedLength = 0xFFFFFFFF;

/// "00100010": 8 upper-case hexadecimal digits, group first.
std::string TagText(Tag tag);

/// "(0010,0010)", upper case.
std::string TagDisplay(Tag tag);

}  // namespace vessa
