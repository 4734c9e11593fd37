#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace fuzz {

/// The fuzzer's bytes, taken from the front. When they are used up, numbers are 0 and texts are empty.
class FuzzInput {
 public:
  FuzzInput(const std::uint8_t* data, std::size_t size) : rest_{reinterpret_cast<const char*>(data), size} {}

  std::uint8_t Byte() {
    if (rest_.empty()) return 0;
    const auto byte = static_cast<std::uint8_t>(rest_.front());
    rest_.remove_prefix(1);
    return byte;
  }

  /// A choice among so many, up to 256.
  std::size_t Choice(std::size_t count) { return Byte() % count; }

  /// Little endian, of 2 and 4 bytes.
  std::uint32_t Number16() {
    const std::uint32_t low = Byte();
    return low | static_cast<std::uint32_t>(Byte()) << 8U;
  }
  std::uint32_t Number32() {
    const std::uint32_t low = Number16();
    return low | Number16() << 16U;
  }

  /// As many bytes as the first one says.
  std::string Text() {
    const std::size_t length = Byte();
    std::string text(rest_.substr(0, length));
    rest_.remove_prefix(text.size());
    return text;
  }

  bool IsUsedUp() const { return rest_.empty(); }
  std::string Rest() const { return std::string(rest_); }

 private:
  std::string_view rest_;
};

}  // namespace fuzz
