#include "emulator/value.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "emulator/host_error.h"

namespace emulator {
namespace {

constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();

template <class Text>
std::int64_t IntegerOfText(const Text& text) {
  std::size_t at = 0;
  const bool negative = !text.empty() && text[0] == '-';
  if (negative || (!text.empty() && text[0] == '+')) ++at;
  std::int64_t value = 0;  // kept negative, where there is room for one more
  for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
    const auto digit = static_cast<std::int64_t>(text[at] - '0');
    if (value < (kLowest + digit) / 10) return negative ? kLowest : kHighest;
    value = value * 10 - digit;
  }
  if (negative) return value;
  return value == kLowest ? kHighest : -value;
}

std::int64_t IntegerOfNumber(double number) {
  if (std::isnan(number)) return 0;
  if (number >= static_cast<double>(kHighest)) return kHighest;
  if (number <= static_cast<double>(kLowest)) return kLowest;
  return static_cast<std::int64_t>(number);
}

void NarrowInto(std::u16string_view text, std::string& out) {
  out.clear();
  out.reserve(text.size());
  for (const char16_t unit : text) {
    if (unit > 0xFF) throw HostError{kWideCharacter};
    out.push_back(static_cast<char>(unit));
  }
}

std::u16string Widened(std::string_view bytes) {
  std::u16string text;
  text.reserve(bytes.size());
  for (const char byte : bytes) text.push_back(static_cast<unsigned char>(byte));
  return text;
}

}  // namespace

std::int64_t AsInteger(const Value& value) {
  if (const auto* integer = std::get_if<std::int64_t>(&value)) return *integer;
  if (const auto* text = std::get_if<std::string>(&value)) return IntegerOfText(*text);
  if (const auto* number = std::get_if<double>(&value)) return IntegerOfNumber(*number);
  if (const auto* wide = std::get_if<std::u16string>(&value)) return IntegerOfText(*wide);
  if (std::holds_alternative<ObjectRef>(value)) throw HostError{kInvalidArgument};
  return 0;
}

void AssignBytes(const Value& value, std::string& out) {
  if (const auto* text = std::get_if<std::string>(&value)) {
    out.assign(*text);
  } else if (const auto* wide = std::get_if<std::u16string>(&value)) {
    NarrowInto(*wide, out);
  } else if (const auto* integer = std::get_if<std::int64_t>(&value)) {
    out = std::to_string(*integer);
  } else if (const auto* number = std::get_if<double>(&value)) {
    out = CanonicalNumber(*number);
  } else if (std::holds_alternative<ObjectRef>(value)) {
    throw HostError{kInvalidArgument};
  } else {
    out.clear();
  }
}

std::string AsBytes(const Value& value) {
  std::string bytes;
  AssignBytes(value, bytes);
  return bytes;
}

std::u16string AsWideText(const Value& value) {
  if (const auto* wide = std::get_if<std::u16string>(&value)) return *wide;
  return Widened(AsBytes(value));
}

std::string CanonicalNumber(double value) {
  if (std::isnan(value)) return "NAN";
  if (std::isinf(value)) return value < 0 ? "-INF" : "INF";
  std::array<char, 512> digits{};  // shortest fixed notation: at most 343 characters
  const auto end =
      std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed).ptr;
  std::string text(digits.data(), end);
  if (text == "-0") return "0";
  const std::size_t sign = text[0] == '-' ? 1 : 0;
  if (text.compare(sign, 2, "0.") == 0) text.erase(sign, 1);
  return text;
}

}  // namespace emulator
