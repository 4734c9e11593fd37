#pragma once

#include <string>

/// Bytes as the line programs print them: two upper-case digits each.
inline std::string HexText(const std::string& bytes) {
  constexpr const char* kDigits = "0123456789ABCDEF";
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text += kDigits[byte >> 4U];
    text += kDigits[byte & 0xFU];
  }
  return text;
}
