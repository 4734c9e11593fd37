#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "dicom/byte_order.h"
#include "dicom/status.h"
#include "dicom/tag.h"

namespace vessa {

/// Appends bytes to a host stream object through its method Write, a block at a time. What a last block holds
/// is sent by Flush alone, which the owner has to call.
class CVessaBinaryOutputStream {
 public:
  explicit CVessaBinaryOutputStream(std::uint32_t oref) : oref_{oref} {}
  ~CVessaBinaryOutputStream() = default;
  CVessaBinaryOutputStream(const CVessaBinaryOutputStream&) = delete;
  CVessaBinaryOutputStream& operator=(const CVessaBinaryOutputStream&) = delete;

  /// @return  0
  /// @throws CDecomposeException  the host failed; a block that it has not taken is kept and sent with the next one's turn
  Status WriteBytes(std::span<const std::uint8_t> bytes) {
    if (bytes.size() >= kBlockBytes - filled_) [[unlikely]] {
      return WriteBlocks(bytes);
    }
    std::copy_n(bytes.begin(), bytes.size(), block_.data() + filled_);
    filled_ += bytes.size();
    total_ += bytes.size();
    return kSuccess;
  }
  /// Sends what is left of the last block. A failure of the host is swallowed, and the block kept.
  void Flush();
  /// Bytes ever appended.
  std::uint64_t Total() const { return total_; }

 private:
  static constexpr std::size_t kBlockBytes = 8000;

  Status WriteBlocks(std::span<const std::uint8_t> bytes);
  void SendBlock();

  std::uint32_t oref_;
  std::uint64_t total_ = 0;
  std::size_t filled_ = 0;
  std::array<std::uint8_t, kBlockBytes> block_;
};

/// Appends the 4 bytes of a tag, each half in the given order.
/// @return  0; a failure is thrown
/// @throws CDecomposeException  the order is neither 0 nor 1, or the host failed
inline Status WriteTag(CVessaBinaryOutputStream& output, ByteOrder order, Tag tag) {
  std::array<std::uint8_t, 4> bytes;
  EncodeTag(order, tag, bytes);
  return RaiseIfNegative(output.WriteBytes(bytes));
}

}  // namespace vessa
