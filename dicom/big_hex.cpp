#include "dicom/big_hex.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include "dicom/status.h"

namespace vessa {
namespace {

/// A decimal number of fixed width, the least significant digit first.
class Decimal {
 public:
  explicit constexpr Decimal(std::uint8_t units = 0) { digits_[0] = units; }

  /// False when the product has too many digits; the number is of no use then.
  [[nodiscard]] bool MultiplyBy(unsigned factor) {
    unsigned carry = 0;
    for (std::uint8_t& digit : digits_) carry = SetDigit(digit, digit * factor + carry);
    return carry == 0;
  }

  /// False when the sum has too many digits; the number is of no use then.
  [[nodiscard]] bool Add(const Decimal& other) {
    unsigned carry = 0;
    for (std::size_t place = 0; place < kDigits; ++place) {
      carry = SetDigit(digits_[place], 0U + digits_[place] + other.digits_[place] + carry);
    }
    return carry == 0;
  }

  /// Most significant digit first, without zeros in front; "0" for zero.
  std::string Text() const {
    const auto is_zero = [](std::uint8_t digit) { return digit == 0; };
    const auto first = std::find_if_not(digits_.rbegin(), digits_.rend() - 1, is_zero);
    std::string text;
    std::transform(first, digits_.rend(), std::back_inserter(text),
                   [](std::uint8_t digit) { return static_cast<char>('0' + digit); });
    return text;
  }

 private:
  static constexpr std::size_t kDigits = 64;

  /// Keeps the last digit of `value` and gives back the rest.
  static unsigned SetDigit(std::uint8_t& digit, unsigned value) {
    digit = static_cast<std::uint8_t>(value % 10);
    return value / 10;
  }

  std::array<std::uint8_t, kDigits> digits_{};
};

/// The value of one character, 0 to 255. What sorts before '0' is kept as a digit of its own: a blank is 240.
unsigned DigitValue(char character) {
  const unsigned code = static_cast<unsigned char>(character);
  if (code <= '9') return (code - '0') & 0xFF;
  if (code >= 'A' && code <= 'F') return code - 'A' + 10;
  if (code >= 'a' && code <= 'f') return code - 'a' + 10;
  throw kUnexpected;
}

}  // namespace

std::string BigHexToDecimal(std::string_view hexadecimal) {
  Decimal sum;
  Decimal place_value{1};  // 16 to the power of the position
  bool place_fits = true;  // once it does not, only zeros may come
  for (std::size_t left = hexadecimal.size(); left > 0; --left) {
    if (const unsigned value = DigitValue(hexadecimal[left - 1]); value != 0) {
      Decimal scaled = place_value;
      if (!place_fits || !scaled.MultiplyBy(value) || !sum.Add(scaled)) throw E_FAIL;
    }
    place_fits = place_fits && place_value.MultiplyBy(16);
  }
  return sum.Text();
}

}  // namespace vessa
