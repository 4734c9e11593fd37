#include "platform/number_text.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>

namespace vessa {
namespace {

constexpr int kSignificantDigits = 60;
constexpr int kLeastFixedExponent = -1;
constexpr int kGreatestFixedExponent = kSignificantDigits - 1;

/// A finite double as d.ddd times a power of ten; trailing zeros are not among the digits, so that zero has none.
struct ScientificDigits {
  std::string digits;
  int exponent;
};

ScientificDigits SplitIntoDigits(double magnitude) {
  // "d.ddd...e+XXX" with all digits exact: every double has a finite decimal expansion.
  std::array<char, kSignificantDigits + 8> text{};
  const std::to_chars_result written = std::to_chars(text.data(), text.data() + text.size(), magnitude,
                                                     std::chars_format::scientific, kSignificantDigits - 1);
  const std::string_view all(text.data(), static_cast<std::size_t>(written.ptr - text.data()));
  const std::size_t mark = all.find('e');
  const std::size_t exponent_digits = mark + 2;
  int exponent = 0;
  std::from_chars(all.data() + exponent_digits, all.data() + all.size(), exponent);
  if (all[mark + 1] == '-') exponent = -exponent;

  std::string digits(1, all[0]);
  digits += all.substr(2, mark - 2);
  digits.erase(digits.find_last_not_of('0') + 1);
  return {digits, exponent};
}

std::string FixedText(const ScientificDigits& value) {
  if (value.exponent < 0) return "0." + value.digits;
  std::string text = value.digits;
  const std::size_t integer_digits = static_cast<std::size_t>(value.exponent) + 1;
  if (text.size() < integer_digits) text.append(integer_digits - text.size(), '0');
  return text.insert(integer_digits, ".");
}

std::string ExponentialText(const ScientificDigits& value) {
  std::string text = value.digits;
  text.insert(1, ".");
  text += value.exponent < 0 ? "e-" : "e+";
  const std::string exponent = std::to_string(std::abs(value.exponent));
  if (exponent.size() < 2) text += '0';
  return text + exponent;
}

/// Text of a NaN without its sign, by the kinds that the runtime of Windows tells apart.
const char* NanText(double value) {
  constexpr std::uint64_t kMantissa = 0x000FFFFFFFFFFFFF;
  constexpr std::uint64_t kQuiet = 0x0008000000000000;
  const std::uint64_t mantissa = std::bit_cast<std::uint64_t>(value) & kMantissa;
  if (std::signbit(value) && mantissa == kQuiet) return "nan(ind)";
  return (mantissa & kQuiet) != 0 ? "nan" : "nan(snan)";
}

std::string MagnitudeText(double value) {
  if (std::isnan(value)) return NanText(value);
  if (std::isinf(value)) return "inf";
  const ScientificDigits digits = SplitIntoDigits(std::abs(value));
  const bool fixed = digits.exponent >= kLeastFixedExponent && digits.exponent <= kGreatestFixedExponent;
  return fixed ? FixedText(digits) : ExponentialText(digits);
}

constexpr bool IsBlank(char character) {
  return character == ' ' || (character >= '\t' && character <= '\r');
}

/// A minus sign and digits.
template <class Integer>
Integer ParseSigned(std::string_view text) {
  Integer value = 0;
  const std::from_chars_result read = std::from_chars(text.data(), text.data() + text.size(), value);
  if (read.ec != std::errc::result_out_of_range) return value;
  return text.front() == '-' ? std::numeric_limits<Integer>::min() : std::numeric_limits<Integer>::max();
}

constexpr bool IsDigit(char character) { return character >= '0' && character <= '9'; }

template <class Integer>
Integer ParseAny(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  const bool plus = !text.empty() && text.front() == '+';
  if (plus) text.remove_prefix(1);
  const bool minus = !text.empty() && text.front() == '-';
  if (plus && minus) return 0;  // one sign only
  return ParseSigned<Integer>(text);
}

template <class Integer>
Integer ParseSaturating(std::string_view text) {
  constexpr std::size_t kSafeDigits = std::numeric_limits<Integer>::digits10;
  if (text.empty() || !IsDigit(text.front()) || text.size() > kSafeDigits) return ParseAny<Integer>(text);
  Integer value = 0;  // the quick way of most: digits that cannot overflow
  for (const char digit : text) {
    if (!IsDigit(digit)) break;
    value = static_cast<Integer>(value * 10 + (digit - '0'));
  }
  return value;
}

}  // namespace

std::string DoubleText(double value) {
  std::string text = MagnitudeText(value);
  if (std::signbit(value)) text.insert(0, "-");
  return text;
}

std::int32_t ParseInteger32(std::string_view text) { return ParseSaturating<std::int32_t>(text); }

std::int64_t ParseInteger64(std::string_view text) { return ParseSaturating<std::int64_t>(text); }

}  // namespace vessa
