#pragma once

// Where in a data set something is, in words.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace emulator {

/// One step of the path of open elements: an element and, inside a sequence or pixel data, its items.
struct PathStep {
  std::uint32_t tag;
  std::uint32_t items;         ///< begun so far
  std::uint32_t item_is_open;  ///< 1 while the last of them is
  std::uint32_t item_length;   ///< of the last of them, as declared
};

/// "(0008,1140) item 2 > (0008,1150)"; empty for no step.
/// @param first  the outermost steps, as many as are known
/// @param depth  of all steps; those between the first and the last are counted only
/// @param last   the innermost, of no meaning while the depth is 0
std::string PathText(std::span<const PathStep> first, std::size_t depth, const PathStep& last);

/// "offset 1234"; says so when nothing follows that offset.
std::string OffsetText(std::uint64_t offset, bool is_at_end);

/// That, and ", in " with the path.
std::string PlaceText(std::uint64_t offset, bool is_at_end, const std::string& path);

}  // namespace emulator
