#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "emulator/vessa/character_sets.h"

namespace emulator::tool {

/// Bytes of a value's start that a preview needs at most.
inline constexpr std::size_t kPreviewBytes = 4096;
/// The same for a preview without limit: what the library hands on at once.
inline constexpr std::size_t kUnlimitedPreviewBytes = 32648;

/// What a value looks like in a line of a dump.
struct Preview {
  std::string_view vr;
  const CharacterSets& characters;
  std::size_t columns;  ///< the preview has at most so many characters; 0 for no limit
  bool is_hex = false;  ///< bytes of any VR in hexadecimal
};

/// The value as text: characters as they are, numbers in decimal with backslashes between them, other bytes in
/// hexadecimal; of those, and of numbers where there are columns, the first ones. `start` is the whole value or its first bytes; `is_whole` tells which.
std::string PreviewOf(const Preview& preview, std::string_view start, bool is_whole);

}  // namespace emulator::tool
