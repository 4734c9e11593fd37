#include "emulator/tag_text.h"

#include <charconv>

#include "emulator/hex_text.h"

namespace emulator {
namespace {

constexpr std::size_t kTagDigits = 8;
constexpr std::size_t kGroupDigits = 4;

/// The text without the parentheses and the comma of the display form; other texts as they stand.
std::string WithoutPunctuation(std::string_view text) {
  if (text.size() == kTagDigits + 3 && text.front() == '(' && text.back() == ')')
    text = text.substr(1, text.size() - 2);
  std::string digits(text);
  if (digits.size() == kTagDigits + 1 && digits[kGroupDigits] == ',') digits.erase(kGroupDigits, 1);
  return digits;
}

}  // namespace

std::string DisplayTag(std::uint32_t tag) {
  const std::string digits = PlainTag(tag);
  return "(" + digits.substr(0, kGroupDigits) + "," + digits.substr(kGroupDigits) + ")";
}

std::string PlainTag(std::uint32_t tag) { return HexText(tag, kTagDigits); }

std::optional<std::uint32_t> ParseTag(std::string_view text) {
  const std::string digits = WithoutPunctuation(text);
  std::uint32_t tag = 0;
  const char* const end = digits.data() + digits.size();
  const auto [parsed_to, error] = std::from_chars(digits.data(), end, tag, 16);
  if (digits.size() != kTagDigits || error != std::errc() || parsed_to != end) return std::nullopt;
  return tag;
}

}  // namespace emulator
