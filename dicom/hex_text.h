#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vessa {

inline constexpr std::string_view kUpperHexDigits = "0123456789ABCDEF";
inline constexpr std::string_view kLowerHexDigits = "0123456789abcdef";

/// The low `width` hexadecimal digits of a number, zeros in front kept.
inline std::string HexText(std::uint32_t number, std::size_t width,
                           std::string_view digits = kUpperHexDigits) {
  std::string text(width, '0');
  for (std::size_t left = width; left > 0; --left) {
    text[left - 1] = digits[number & 0xF];
    number >>= 4;
  }
  return text;
}

}  // namespace vessa
