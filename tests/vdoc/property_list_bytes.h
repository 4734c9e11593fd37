#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// The bytes of a property list, written here and apart from the library: every entry as a signed 32-bit
/// integer, in the shortest form that the host's lists have for it.
class PropertyListBytes {
 public:
  PropertyListBytes() = default;
  explicit PropertyListBytes(const std::vector<std::uint32_t>& entries) {
    for (const std::uint32_t entry : entries) Append(entry);
  }

  /// A valid list item of the caller's own: type code and data.
  PropertyListBytes& Item(std::uint8_t type, const std::string& data) {
    bytes_ += static_cast<char>(data.size() + 2);
    bytes_ += static_cast<char>(type);
    bytes_ += data;
    return *this;
  }

  /// Any bytes at all.
  PropertyListBytes& Raw(const std::string& bytes) {
    bytes_ += bytes;
    return *this;
  }

  const std::string& Bytes() const { return bytes_; }

 private:
  void Append(std::uint32_t entry) {
    constexpr std::uint8_t kNonNegative = 4;
    constexpr std::uint8_t kNegative = 5;
    const bool negative = entry >= 0x80000000U;
    // Omitted high bytes are zeros, or ones for a negative number.
    const std::uint32_t omitted = negative ? 0xFFFFFFFFU : 0U;
    std::string data;
    for (unsigned kept = 0; kept < 4 && (entry >> 8 * kept) != (omitted >> 8 * kept); ++kept) {
      data += static_cast<char>(entry >> 8 * kept & 0xFF);
    }
    Item(negative ? kNegative : kNonNegative, data);
  }

  std::string bytes_;
};
