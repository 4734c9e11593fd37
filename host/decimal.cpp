#include "host/decimal.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace vessa {
namespace {

constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();
constexpr std::string_view kLeastText = "LONG64_MI";  // kept: the host's name of it without its ends

/// Ten powers up to 10^18 fit 64 bits; a mantissa has 19 digits at most.
constexpr int kGreatestDivisorExponent = 18;

constexpr std::int64_t PowerOfTen(int exponent) {
  std::int64_t power = 1;
  for (int i = 0; i < exponent; ++i) power *= 10;
  return power;
}

template <class Integer>
Integer MultiplySaturating(Integer value, int exponent) {
  constexpr Integer kMin = std::numeric_limits<Integer>::min();
  constexpr Integer kMax = std::numeric_limits<Integer>::max();
  for (int i = 0; i < exponent && value != 0; ++i) {
    if (value > kMax / 10) return kMax;
    if (value < kMin / 10) return kMin;
    value *= 10;
  }
  return value;
}

std::int64_t DivideByPowerOfTen(std::int64_t value, int exponent) {
  return exponent > kGreatestDivisorExponent ? 0 : value / PowerOfTen(exponent);
}

std::string MagnitudeText(std::int64_t value) {
  if (value == kLeast) return std::string(kLeastText);
  return std::to_string(std::abs(value));
}

/// Takes zeros off the end of the digits, `most` of them at most, and says how many.
int DropTrailingZeros(std::string& digits, int most) {
  const std::size_t significant = digits.find_last_not_of('0') + 1;
  const int dropped = std::min(most, static_cast<int>(digits.size() - significant));
  digits.resize(digits.size() - static_cast<std::size_t>(dropped));
  return dropped;
}

void InsertPoint(std::string& digits, std::size_t fraction_digits) {
  if (digits.size() < fraction_digits) digits.insert(0, fraction_digits - digits.size(), '0');
  digits.insert(digits.size() - fraction_digits, ".");
}

}  // namespace

std::int32_t SaturateToInt32(std::int64_t value) {
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, std::numeric_limits<std::int32_t>::min(),
                                                            std::numeric_limits<std::int32_t>::max()));
}

std::int32_t ScaleToInt32(Decimal value) {
  if (value.exponent < 0) return SaturateToInt32(DivideByPowerOfTen(value.mantissa, -value.exponent));
  return MultiplySaturating(SaturateToInt32(value.mantissa), value.exponent);
}

std::int64_t ScaleToInt64(Decimal value) {
  if (value.exponent < 0) return DivideByPowerOfTen(value.mantissa, -value.exponent);
  return MultiplySaturating(value.mantissa, value.exponent);
}

std::string IntegerText(std::int64_t value) {
  return value == kLeast ? std::string(kLeastText) : std::to_string(value);
}

std::string DecimalText(Decimal value) {
  if (value.mantissa == 0) return "0";
  std::string text = MagnitudeText(value.mantissa);
  if (value.exponent > 0) {
    text.append(static_cast<std::size_t>(value.exponent), '0');
  } else if (value.exponent < 0) {
    const int fraction_digits = -value.exponent - DropTrailingZeros(text, -value.exponent);
    if (fraction_digits > 0) InsertPoint(text, static_cast<std::size_t>(fraction_digits));
  }
  if (value.mantissa < 0) text.insert(0, "-");
  return text;
}

}  // namespace vessa
