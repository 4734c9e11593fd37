#pragma once

// Numbers to text and back as the C runtime of Windows has them, the same on every system and in every
// locale.

#include <cstdint>
#include <string>
#include <string_view>

namespace vessa {

/// A double as `_gcvt` with 60 digits prints it: exact decimal digits, rounded to 60 significant ones at most
/// and without trailing zeros; the decimal point is always there. Fixed notation for decimal exponents -1 to
/// 59
/// ("3.", "0.5", "0."), otherwise exponential with at least two digits of exponent ("6.25e-02").
/// Not numbers: "inf", "nan", "nan(snan)" for a signalling one, "nan(ind)" for the one that an invalid
/// operation makes; a sign bit puts '-' before each of these and before a zero.
std::string DoubleText(double value);

/// `atoi`: blanks, one sign, digits; the rest is not read, no digits give 0. Saturates at 32 bits, as on
/// Windows.
std::int32_t ParseInteger32(std::string_view text);

/// `atol` with 64 bits, saturating. Cut to 32 bits, the decimal text of a tag keeps all its bits on every
/// system, where `long` differs.
std::int64_t ParseInteger64(std::string_view text);

}  // namespace vessa
