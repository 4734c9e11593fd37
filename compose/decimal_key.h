#pragma once

#include <cstdint>
#include <string_view>

namespace vessa {

/// The whole number at the start of a text, as the C library's `atol` reads it where `long` has 64 bits:
/// leading blanks and a sign are taken, what follows the digits is ignored, no digits give 0, the ends of the
/// range hold.
std::int64_t ParseKeyNumber(std::string_view text);

/// The same, held to 32 bits.
std::int32_t ParseNodeNumber(std::string_view text);

}  // namespace vessa
