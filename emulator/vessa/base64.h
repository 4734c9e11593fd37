#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace emulator::tool {

/// Base64 (RFC 4648 section 4) of a value that arrives in pieces.
class Base64Encoder {
 public:
  /// Appends the text of all whole groups of three bytes to `text` and keeps the rest.
  void Append(std::string_view bytes, std::string& text);
  /// Appends the text of what is left, padded, and starts anew.
  void Finish(std::string& text);

 private:
  std::uint32_t kept_ = 0;
  std::size_t kept_bytes_ = 0;
};

}  // namespace emulator::tool
