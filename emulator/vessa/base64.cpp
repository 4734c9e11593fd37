#include "emulator/vessa/base64.h"

namespace emulator::tool {
namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t kGroupBytes = 3;

char Letter(std::uint32_t group, std::size_t index) {
  return kAlphabet[(group >> (18U - 6U * index)) & 0x3FU];
}

}  // namespace

void Base64Encoder::Append(std::string_view bytes, std::string& text) {
  for (const char byte : bytes) {
    kept_ = (kept_ << 8U) | static_cast<std::uint8_t>(byte);
    if (++kept_bytes_ < kGroupBytes) continue;
    for (std::size_t index = 0; index <= kGroupBytes; ++index) text.push_back(Letter(kept_, index));
    kept_ = 0;
    kept_bytes_ = 0;
  }
}

void Base64Encoder::Finish(std::string& text) {
  if (kept_bytes_ > 0) {
    const std::uint32_t group = kept_ << (8U * (kGroupBytes - kept_bytes_));
    for (std::size_t index = 0; index <= kGroupBytes; ++index) {
      text.push_back(index <= kept_bytes_ ? Letter(group, index) : '=');
    }
  }
  kept_ = 0;
  kept_bytes_ = 0;
}

}  // namespace emulator::tool
