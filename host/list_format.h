#pragma once

// The bytes of a host value list: items laid end to end, nothing around them, all fields little endian.
//
//   short    byte 0: length of the item, itself included (2 to 255); type; data
//   absent   byte 0: 1; no type, no data
//   medium   byte 0: 0; 2 bytes N, not 0; type; data      N counts type and data
//   long     3 bytes 0; 4 bytes N; type; data             N counts type and data

#include <cstddef>
#include <cstdint>
#include <span>

namespace vessa {

inline constexpr std::uint8_t kAbsentItem = 1;  ///< the whole of an absent item
inline constexpr std::size_t kTypeBytes = 1;

inline constexpr std::size_t kShortHeaderBytes = 1;   ///< length
inline constexpr std::size_t kMediumHeaderBytes = 3;  ///< 0, 16-bit length
inline constexpr std::size_t kLongHeaderBytes = 7;    ///< 0, 0, 0, 32-bit length

/// The greatest type and data lengths of the forms. A short length counts its own byte too.
inline constexpr std::uint64_t kGreatestShortContent = 0xFF - kShortHeaderBytes;
inline constexpr std::uint64_t kGreatestMediumContent = 0xFFFF;
inline constexpr std::uint64_t kGreatestLongContent = 0xFFFFFFFF;

/// Unsigned little-endian number of up to 8 bytes.
constexpr std::uint64_t ReadLittleEndian(std::span<const std::uint8_t> bytes) {
  std::uint64_t value = 0;
  for (std::size_t i = bytes.size(); i-- > 0;) value = value << 8 | bytes[i];
  return value;
}

/// The low bytes of a number, as many as `bytes` has.
constexpr void WriteLittleEndian(std::uint64_t value, std::span<std::uint8_t> bytes) {
  for (std::uint8_t& byte : bytes) {
    byte = static_cast<std::uint8_t>(value & 0xFF);
    value >>= 8;
  }
}

[[noreturn]] void ThrowListFormatError();

}  // namespace vessa
