#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace vessa {

/// 8-bit text that the host has handed out as bytes.
inline std::string_view AsText(std::span<const std::uint8_t> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// Values that the host hands out as 16-bit text stand for bytes, a character a byte. A character above 255
// is no byte and goes through the system's code page.

constexpr bool IsByte(char16_t character) { return character <= 0xFF; }

/// Number of bytes that the characters stand for.
std::size_t ByteCount(std::u16string_view characters);

/// Those bytes, at the front of `storage`, which grows where needed and never shrinks.
std::span<std::uint8_t> ToBytes(std::u16string_view characters, std::vector<std::uint8_t>& storage);

/// The same for text that is bytes already: a copy of them.
std::span<std::uint8_t> CopyBytes(std::span<const std::uint8_t> bytes, std::vector<std::uint8_t>& storage);

}  // namespace vessa
