#include <algorithm>
#include <array>

#include "platform/code_page.h"

namespace vessa {
namespace {

constexpr unsigned kFirstMoved = 0x80;
constexpr char kReplacement = '?';

// The characters of the bytes 80 to 9F in windows-1252. All other bytes are the character of the same number.
constexpr std::array<char16_t, 32> kMoved = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 80
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  // 88
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,  // 98
};

constexpr bool IsMovedRange(unsigned value) {
  return value >= kFirstMoved && value < kFirstMoved + kMoved.size();
}

constexpr char16_t CharacterOf(char text_byte) {
  const auto byte = static_cast<unsigned char>(text_byte);
  return IsMovedRange(byte) ? kMoved[byte - kFirstMoved] : static_cast<char16_t>(byte);
}

char ByteOf(char16_t unit) {
  if (unit <= 0xFF && !IsMovedRange(unit)) return static_cast<char>(unit);
  const auto found = std::find(kMoved.begin(), kMoved.end(), unit);
  if (found == kMoved.end()) return kReplacement;
  return static_cast<char>(kFirstMoved + static_cast<unsigned>(found - kMoved.begin()));
}

}  // namespace

std::u16string Widen(std::string_view text) {
  std::u16string wide(text.size(), u'\0');
  std::transform(text.begin(), text.end(), wide.begin(), CharacterOf);
  return wide;
}

std::string Narrow(std::u16string_view text) {
  std::string narrow(text.size(), '\0');
  std::transform(text.begin(), text.end(), narrow.begin(), ByteOf);
  return narrow;
}

std::size_t WidenInto(std::string_view text, std::span<char16_t> out) noexcept {
  const std::string_view taken = text.substr(0, out.size());
  std::transform(taken.begin(), taken.end(), out.begin(), CharacterOf);
  return taken.size();
}

}  // namespace vessa
