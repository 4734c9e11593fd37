#include "platform/code_page.h"

#include <algorithm>

namespace vessa {
namespace {

constexpr bool IsByte(char16_t unit) { return unit <= 0xFF; }

}  // namespace

std::string NarrowToBytes(std::u16string_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  auto at = text.begin();
  while (at != text.end()) {
    const auto foreign = std::find_if_not(at, text.end(), IsByte);
    std::transform(at, foreign, std::back_inserter(bytes),
                   [](char16_t unit) { return static_cast<char>(unit); });
    at = std::find_if(foreign, text.end(), IsByte);
    bytes += Narrow(std::u16string_view(foreign, at));
  }
  return bytes;
}

}  // namespace vessa
