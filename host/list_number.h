#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "host/decimal.h"

namespace vessa {

// The numbers in the data of list items. An integer lies there in its shortest form: the bytes left out are
// zeros of a non-negative number and ones of a negative one. All throw std::out_of_range "LONGLONG too large"
// for one that 64 bits do not hold, std::invalid_argument "List Format Error" for data of a wrong length.

std::int64_t ReadNonNegativeInteger(std::span<const std::uint8_t> data);
std::int64_t ReadNegativeInteger(std::span<const std::uint8_t> data);
Decimal ReadNonNegativeDecimal(std::span<const std::uint8_t> data);
Decimal ReadNegativeDecimal(std::span<const std::uint8_t> data);
double ReadDouble(std::span<const std::uint8_t> data);

/// Cut towards zero. What 64 bits do not hold, infinities and NaN among it, gives the least integer: what the
/// conversion instruction of x86 answers.
std::int64_t TruncateDouble(double value);

}  // namespace vessa
