#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "dicom/status.h"

namespace vessa {

/// A stream of bytes to be parsed. Positions count from 1, as the host's streams do: 1 after `Open` on a fresh
/// stream, size n + 1 for n bytes. Statuses: 0 or a negative failure; what is thrown stands with each class.
class CVessaInputStream {
 public:
  virtual ~CVessaInputStream() = default;

  /// Fills `destination` and moves past it.
  virtual Status Read(std::span<std::uint8_t> destination) = 0;
  /// Looks ahead without moving. At the end of the stream sets `at_end` and copies nothing.
  virtual Status Peek(std::span<std::uint8_t> destination, bool& at_end) = 0;
  virtual Status Skip(std::int64_t count) = 0;
  /// 1-based position of the next byte to be read.
  virtual std::int64_t GetPosition() = 0;
  /// 1-based position just past the last byte, cut to 32 bits.
  virtual std::int32_t GetSize() = 0;
  /// Called once, before any read.
  virtual Status Open() = 0;
  /// The host object behind the stream.
  virtual std::uint32_t GetOref() = 0;

  /// Moves past `count` bytes that nobody wants to see, where that is less work than reading them. It fails as
  /// reading them would, or returns false before anything has happened, so that they have to be read.
  /// @return  true when the position was moved
  virtual bool PassOver([[maybe_unused]] std::uint64_t count) { return false; }

  /// Bytes from the position on that lie in memory. There may be none although the stream goes on.
  std::span<const std::uint8_t> AtHand() const { return {next_, behind_}; }

  /// True when so many bytes can be taken from those at hand. The last of them cannot: with it a stream looks for
  /// more, and that is Read's and Skip's to do.
  bool CanTake(std::size_t count) const { return count < static_cast<std::size_t>(behind_ - next_); }

  /// Moves past bytes at hand, which stay where they are until the next operation.
  void Take(std::size_t count) { next_ += count; }

 protected:
  CVessaInputStream() = default;

  // What is at hand, and where it ends; the same address while nothing is.
  const std::uint8_t* next_ = nullptr;
  const std::uint8_t* behind_ = nullptr;

  CVessaInputStream(const CVessaInputStream&) = default;
  CVessaInputStream& operator=(const CVessaInputStream&) = default;
};

}  // namespace vessa
