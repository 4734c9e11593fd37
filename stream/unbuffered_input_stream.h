#pragma once

#include <cstdint>
#include <span>

#include "stream/binary_oref_input_stream.h"

namespace vessa {

/// A host stream object read through its method Read, without look-ahead.
class CVessaUnbufferedInputStream final : public CVessaBinaryOrefInputStream {
 public:
  explicit CVessaUnbufferedInputStream(std::uint32_t oref) : CVessaBinaryOrefInputStream(oref) {}

  /// @return  E_INVALIDARG for more bytes than the host can count
  /// @throws CDecomposeException  the host failed, or gave another number of bytes than asked for
  Status Read(std::span<std::uint8_t> destination) override;
  /// @return  E_NOTIMPL
  Status Peek(std::span<std::uint8_t> destination, bool& at_end) override;
  /// Reads and forgets, a block at a time.
  /// @return  E_INVALIDARG for a negative count
  Status Skip(std::int64_t count) override;
  /// Counted here: 1 plus the bytes read.
  std::int64_t GetPosition() override { return position_; }
  Status Open() override { return kSuccess; }

 private:
  std::int64_t position_ = 1;
};

}  // namespace vessa
