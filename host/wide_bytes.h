#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "host/list_format.h"

namespace vessa {

/// 16-bit text as it lies in a list: little endian, at any address.
class WideBytes {
 public:
  /// @throws std::invalid_argument  the bytes are no whole number of units
  explicit WideBytes(std::span<const std::uint8_t> bytes) : bytes_{bytes} {
    if (bytes.size() % kUnitBytes != 0) ThrowListFormatError();
  }

  std::size_t size() const { return bytes_.size() / kUnitBytes; }
  char16_t operator[](std::size_t index) const {
    return static_cast<char16_t>(ReadLittleEndian(bytes_.subspan(index * kUnitBytes, kUnitBytes)));
  }

  std::u16string Text() const {
    std::u16string text(size(), u'\0');
    for (std::size_t i = 0; i < text.size(); ++i) text[i] = (*this)[i];
    return text;
  }

 private:
  static constexpr std::size_t kUnitBytes = sizeof(char16_t);
  std::span<const std::uint8_t> bytes_;
};

}  // namespace vessa
