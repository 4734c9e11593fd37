#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "dicom/dictionary.h"

namespace vessa {

/// The VRs of a data set in implicit VR, out of the dictionary, with those asked for last at hand: the items of a
/// sequence hold the same tags over and over.
class RecentVrs {
 public:
  /// UN for a tag that the dictionary does not hold. The dictionary has to be initialised.
  Vr Find(Tag tag) {
    Entry& entry = entries_[Slot(tag)];
    if (entry.tag != tag) [[unlikely]] {
      entry = {tag, LookupVr(tag).value_or(kVrUN)};
    }
    return entry.vr;
  }

 private:
  struct Entry {
    Tag tag{0xFFFF, 0xFFFF};  // at first: a private tag, and what the dictionary says of it
    Vr vr = kVrUN;
  };

  static constexpr std::size_t kSlots = 256;

  /// The low bits of element and group.
  static std::size_t Slot(Tag tag) { return (tag.Value() ^ tag.Value() >> 13U) % kSlots; }

  std::array<Entry, kSlots> entries_{};
};

}  // namespace vessa
