#pragma once

#include <string>
#include <string_view>

#include "dicom/tag.h"
#include "dicom/vr.h"

namespace vessa {

// What can be said of a private tag (odd group, PS3.5 section 7.8) without the dictionary of its creator.

/// Stands for keyword and note.
inline constexpr std::string_view kPrivateNote = "(private)";

/// 8 hexadecimal digits, lower case: hosts have always met them so.
std::string PrivateTagText(Tag tag);

/// The creators' range is that of the element's low 12 bits, 010 to 100, and holds 100 although PS3.5 ends it
/// at 0FF; groups below 0009 have none.
constexpr bool IsPrivateCreator(Tag tag) {
  constexpr std::uint16_t kFirstGroup = 0x0009;
  const unsigned low_bits = tag.Element() & 0x0FFFU;
  return tag.Group() >= kFirstGroup && low_bits >= 0x010 && low_bits <= 0x100;
}

inline constexpr Vr kPrivateCreatorVr = kVrLO;
inline constexpr Vr kPrivateElementVr = kVrUN;

}  // namespace vessa
