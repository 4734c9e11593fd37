#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace emulator::tool {

/// Where in the file the elements lie that a content handler is told of. The library does not say; but every byte
/// belongs to a header, a value or a delimitation, so that the events add up to the place.
class OffsetFollower {
 public:
  /// @param start  offset of the first element
  explicit OffsetFollower(std::uint64_t start) : offset_(start) {}

  /// A deflated data set is counted anew from its first inflated byte.
  void StartContent(std::string_view transfer_syntax);
  /// @return  the offset of the element's header
  std::uint64_t StartElement(std::string_view vr, std::uint32_t length);
  void EndElement();
  void Data(std::size_t bytes) { offset_ += bytes; }
  /// @return  the offset of the item's header
  std::uint64_t StartItem();
  /// `is_fragment`: of pixel data, which nothing but its length ends.
  void EndItem(bool is_fragment, std::uint32_t length);
  void EndSequence();

 private:
  std::uint64_t Pass(std::uint64_t bytes);

  std::uint64_t offset_;
  bool has_implicit_vrs_ = false;
  std::vector<std::uint32_t> lengths_;  ///< of the open elements, outermost first
};

}  // namespace emulator::tool
