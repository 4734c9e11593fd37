#include "compose/decimal_key.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>

namespace vessa {

namespace {

constexpr bool IsBlank(char character) {
  return character == ' ' || (character >= '\t' && character <= '\r');
}

}  // namespace

std::int64_t ParseKeyNumber(std::string_view text) {
  const char* const end = text.data() + text.size();
  const char* at = std::find_if_not(text.data(), end, IsBlank);
  const bool plus = at != end && *at == '+';
  if (plus) ++at;  // from_chars knows the minus sign alone
  if (plus && at != end && *at == '-') return 0;
  std::int64_t value = 0;
  const bool negative = at != end && *at == '-';
  if (std::from_chars(at, end, value).ec == std::errc::result_out_of_range) {
    using Limits = std::numeric_limits<std::int64_t>;
    return negative ? Limits::min() : Limits::max();
  }
  return value;
}

std::int32_t ParseNodeNumber(std::string_view text) {
  using Limits = std::numeric_limits<std::int32_t>;
  const std::int64_t number = ParseKeyNumber(text);
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(number, Limits::min(), Limits::max()));
}

}  // namespace vessa
