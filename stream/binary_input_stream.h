#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "stream/binary_oref_input_stream.h"

namespace vessa {

/// Bytes that are looked ahead unless a stream is made with another number.
inline constexpr std::size_t kLookAheadBytes = 8000;

/// A host stream object read through its methods Peek and Skip, a look-ahead at a time. The host's stream
/// stands at the start of the look-ahead; what was handed out is skipped there before the next one is fetched,
/// and at the end of this object's life. So the host's stream is left behind the last byte that was read.
///
/// A failure of the host is a CDecomposeException in every operation but the destructor, which swallows it.
class CVessaBinaryInputStream final : public CVessaBinaryOrefInputStream {
 public:
  explicit CVessaBinaryInputStream(std::uint32_t oref, std::size_t look_ahead_bytes = kLookAheadBytes);
  ~CVessaBinaryInputStream() override;
  CVessaBinaryInputStream(const CVessaBinaryInputStream&) = delete;
  CVessaBinaryInputStream& operator=(const CVessaBinaryInputStream&) = delete;

  /// @throws Status  E_FAIL: the stream ended before the destination was full. What was there has been read.
  Status Read(std::span<std::uint8_t> destination) override;
  /// A peek past the last byte succeeds while a byte is left, and gives what stood in the look-ahead before
  /// (zeros at first); only the next peek tells the end. Kept: this is how hosts know it.
  /// @return  E_INVALIDARG for more bytes than are looked ahead
  Status Peek(std::span<std::uint8_t> destination, bool& at_end) override;
  /// @return  E_INVALIDARG for a negative count
  /// @throws Status  E_FAIL: the stream ended before that
  Status Skip(std::int64_t count) override;
  std::int64_t GetPosition() override { return look_ahead_position_ + (next_ - look_ahead_.get()); }
  Status Open() override;
  /// The host is called as for reading; only the copy is saved.
  bool PassOver(std::uint64_t count) override;

 private:
  std::size_t Available() const { return static_cast<std::size_t>(behind_ - next_); }
  Status Transfer(std::uint64_t count, std::uint8_t* destination);
  std::size_t Fill(std::uint64_t unwanted = 0);
  void SkipHandedOut();
  std::size_t FetchLookAhead(std::uint64_t unwanted);

  bool at_end_ = false;  // the host had no more bytes
  std::int64_t look_ahead_position_ =
      0;  // 1-based, of the look-ahead's first byte: where the host's stream stands
  std::unique_ptr<std::uint8_t[]> look_ahead_;  // what is filled of it and not handed out yet is at hand
  std::size_t look_ahead_bytes_;
};

}  // namespace vessa
