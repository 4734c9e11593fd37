#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace vessa {

// Values that the host hands out as 16-bit text stand for bytes, a character a byte. A character above 255
// is no byte and goes through the system's code page.

/// Number of bytes that the characters stand for.
std::size_t ByteCount(std::u16string_view characters);

/// Those bytes, at the front of `storage`, which grows where needed and never shrinks.
std::span<std::uint8_t> ToBytes(std::u16string_view characters, std::vector<std::uint8_t>& storage);

/// The same for text that is bytes already: a copy of them.
std::span<std::uint8_t> CopyBytes(std::span<const std::uint8_t> bytes, std::vector<std::uint8_t>& storage);

}  // namespace vessa
