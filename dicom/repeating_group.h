#pragma once

#include "dicom/tag.h"

namespace vessa {

/// The tag under which the dictionary keeps a tag: for a member of a repeating group (PS3.6: 0020,31xx;
/// 0028,04xy; 0028,08xy; 1000,xxxy; 1010,xxxx; 50xx; 60xx; 7Fxx) the one with all bits set where the standard
/// prints x; any other tag as it is. Only for tags that are not private.
constexpr Tag CanonicalTag(Tag tag) {
  const std::uint16_t group = tag.Group();
  const std::uint16_t element = tag.Element();
  const auto with_bits = [&](unsigned bits) {
    return Tag(group, static_cast<std::uint16_t>(element | bits));
  };
  switch (group) {
    case 0x0020:
      return (element & 0xFF00) == 0x3100 ? with_bits(0x00FF) : tag;
    case 0x0028:
      // 0028,0400 to 0028,040F are attributes of their own.
      if ((element & 0xFF00) == 0x0400) return (element & 0x00F0) != 0 ? with_bits(0x00F0) : tag;
      return (element & 0xFF00) == 0x0800 ? with_bits(0x00F0) : tag;
    case 0x1000:
      return with_bits(0xFFF0);
    case 0x1010:
      return with_bits(0xFFFF);
    default:
      break;
  }
  if (group < 0x5000) return tag;
  const unsigned high_byte = group >> 8;
  const bool repeats = high_byte == 0x50 || high_byte == 0x60 || (high_byte == 0x7F && group != 0x7FE0);
  return repeats ? Tag(static_cast<std::uint16_t>(group | 0x00FF), element) : tag;
}

}  // namespace vessa
