#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "host/wide_bytes.h"

namespace vessa {

/// mantissa * 10^exponent; the host keeps the exponent in 8 signed bits.
struct Decimal {
  std::int64_t mantissa = 0;
  int exponent = 0;

  bool operator==(const Decimal&) const = default;
};

/// The number that the host reads in a text: signs ('-' toggles), digits with a fraction and an exponent, and
/// the rest is not read; a text that starts with anything else is 0. Digits beyond 64 bits only raise the
/// exponent.
/// @throws std::overflow_error  "Exponent too large": an exponent of 167 and above in 8-bit text
/// @throws std::out_of_range    the same in 16-bit text, and for a number that has no exponent of 8 bits
Decimal ParseDecimal(std::string_view text);
Decimal ParseDecimal(const WideBytes& text);

/// Cut towards zero, saturating.
std::int32_t ScaleToInt32(Decimal value);
std::int64_t ScaleToInt64(Decimal value);
std::int32_t SaturateToInt32(std::int64_t value);

/// In decimal, without exponent and without zeros behind the point: "12.34", "-.5", "5000". The least 64-bit
/// integer prints as "LONG64_MI", also as a mantissa.
std::string IntegerText(std::int64_t value);
std::string DecimalText(Decimal value);

}  // namespace vessa
