#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "dicom/status.h"
#include "dicom/tag.h"

namespace vessa {

/// The codes are the library's own numbers; any other value is an internal error.
enum class ByteOrder : std::int32_t { kLittleEndian = 0, kBigEndian = 1 };

/// Big endian for "1.2.840.10008.1.2.2", else little endian.
ByteOrder ByteOrderOf(std::string_view transfer_syntax);

/// @throws CDecomposeException  always: the code is neither 0 nor 1, which no input can cause
[[noreturn]] void RaiseIllegalByteOrder();

inline void RequireByteOrder(ByteOrder order) {
  if (order != ByteOrder::kLittleEndian && order != ByteOrder::kBigEndian) RaiseIllegalByteOrder();
}

/// A number of 2 bytes when `size` is 2, of 4 bytes for every other size. `bytes` holds that many.
inline std::uint32_t ReadUnsigned(ByteOrder order, std::size_t size, const std::uint8_t* bytes) {
  const auto pair = [&](std::size_t at) {
    const std::uint32_t first = bytes[at];
    const std::uint32_t second = bytes[at + 1];
    return order == ByteOrder::kBigEndian ? first << 8 | second : second << 8 | first;
  };
  if (size == 2) return pair(0);
  return order == ByteOrder::kBigEndian ? pair(0) << 16 | pair(2) : pair(2) << 16 | pair(0);
}

/// Group and element as two 16-bit halves, each in the given order.
/// @throws CDecomposeException  an order that is neither 0 nor 1
inline Tag ReadTag(ByteOrder order, std::span<const std::uint8_t, 4> bytes) {
  RequireByteOrder(order);
  return Tag(static_cast<std::uint16_t>(ReadUnsigned(order, 2, bytes.data())),
             static_cast<std::uint16_t>(ReadUnsigned(order, 2, bytes.data() + 2)));
}

/// The 4 bytes of a tag, each half in the given order.
/// @throws CDecomposeException  an order that is neither 0 nor 1
inline void EncodeTag(ByteOrder order, Tag tag, std::span<std::uint8_t, 4> bytes) {
  RequireByteOrder(order);
  const bool is_big = order == ByteOrder::kBigEndian;
  const std::uint32_t value =
      is_big ? tag.Value() : static_cast<std::uint32_t>(tag.Value() << 16 | tag.Value() >> 16);
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    bytes[at] = static_cast<std::uint8_t>(value >> 8 * (is_big ? 3 - at : at));
  }
}

/// Reverses every unit of `unit_size` bytes (1, 2, 4 or 8) in place. The number of units is rounded up: a
/// last, partial unit takes in the bytes behind it, which `capacity` must hold; a byte behind the capacity
/// counts as zero and is not written.
/// @return  0, or E_INVALIDARG for another unit size (nothing is changed)
Status SwitchByteOrdering(std::uint8_t* bytes, std::size_t length, std::size_t capacity,
                          std::int32_t unit_size);

}  // namespace vessa
