#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "emulator/stream_object.h"

namespace emulator {

/// More bytes were asked for than follow. The cursor then stands at the end.
struct DataEnded {};

/// Reads the numbers of a little-endian stream one after the other and passes over values without reading them.
class DataCursor {
 public:
  /// @param offset  of the first byte to read, from 0
  DataCursor(StreamObject& stream, std::uint64_t offset);

  std::uint64_t Offset() const { return offset_; }
  bool IsAtEnd() const { return offset_ >= size_; }

  /// The tag that the library takes to come next. Where fewer than four bytes follow, the rest of it is what its
  /// look-ahead of 8000 bytes held before; for that, each tag has to be peeked at.
  std::uint32_t PeekTag();

  // Throw DataEnded, and HostError where the file cannot be read.

  std::uint32_t TakeTag();
  std::uint32_t TakeNumber(unsigned bytes);
  std::string Take(std::uint64_t bytes);
  void Skip(std::uint64_t bytes);

  /// Up to so many of the bytes `distance` bytes on; fewer at the end.
  std::string_view BytesAt(std::uint64_t distance, std::size_t bytes) {
    return Window(offset_ + distance, bytes);
  }

 private:
  std::string_view Window(std::uint64_t offset, std::size_t bytes);
  void FollowLookAhead();
  void LoadLookAhead(std::uint64_t offset);

  StreamObject& stream_;
  std::uint64_t size_;
  std::uint64_t offset_;
  std::string window_;
  std::uint64_t window_offset_ = 0;

  std::array<char, 4>
      look_ahead_start_{};  ///< of the library: its first bytes, all zero before the first load
  std::uint64_t look_ahead_offset_ = 0;
  std::uint64_t look_ahead_end_ = 0;
};

}  // namespace emulator
