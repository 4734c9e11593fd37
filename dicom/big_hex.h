#pragma once

#include <string>
#include <string_view>

namespace vessa {

/// The decimal text of a hexadecimal number of any length, up to 64 decimal digits.
/// @throws Status  kUnexpected for a character above '9' that is no hexadecimal digit, E_FAIL above 64 digits
std::string BigHexToDecimal(std::string_view hexadecimal);

}  // namespace vessa
