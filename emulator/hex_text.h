#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace emulator {

/// The digits of a half byte, as tags and bytes are written.
inline constexpr std::string_view kHexDigits = "0123456789ABCDEF";

/// Appends the low `width` hexadecimal digits of a number, zeros in front kept.
inline void AppendHex(std::uint32_t number, std::size_t width, std::string& text) {
  for (std::size_t left = width; left-- > 0;) text += kHexDigits[number >> (4 * left) & 0xFU];
}

/// Appends two digits a byte.
inline void AppendHex(std::string_view bytes, std::string& text) {
  const std::size_t start = text.size();
  text.resize(start + 2 * bytes.size());
  char* out = text.data() + start;
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    *out++ = kHexDigits[value >> 4U];
    *out++ = kHexDigits[value & 0xFU];
  }
}

inline std::string HexText(std::uint32_t number, std::size_t width) {
  std::string text;
  AppendHex(number, width, text);
  return text;
}

inline std::string HexText(std::string_view bytes) {
  std::string text;
  AppendHex(bytes, text);
  return text;
}

}  // namespace emulator
