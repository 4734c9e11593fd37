#include <limits>
#include <stdexcept>

#include "host/decimal.h"

namespace vessa {
namespace {

// The host's exponents have 8 bits.
constexpr int kLeastExponent = -128;
constexpr int kGreatestExponent = 127;
/// A mantissa has 19 digits at most: below this even the greatest one is nothing.
constexpr int kVanishingExponent = kLeastExponent - 19;
/// Written exponents from here on are out of reach whatever the mantissa.
constexpr int kHopelessExponent = 167;
constexpr const char* kExponentTooLarge = "Exponent too large";

/// The number with an exponent of 8 bits; digits that have no room at the small end are cut off.
Decimal Normalize(std::int64_t mantissa, std::int64_t exponent) {
  if (mantissa == 0 || exponent < kVanishingExponent) return {};
  for (; exponent > kGreatestExponent; --exponent) {
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max() / 10;
    if (mantissa > kMost || mantissa < -kMost) throw std::out_of_range(kExponentTooLarge);
    mantissa *= 10;
  }
  for (; exponent < kLeastExponent; ++exponent) mantissa /= 10;
  return {mantissa, static_cast<int>(exponent)};
}

/// Reads one text from front to back. `TooLarge` is what a hopeless exponent throws.
template <class Text, class TooLarge>
class DecimalParser {
 public:
  explicit DecimalParser(const Text& text) : text_{text} {}

  Decimal Parse() {
    if (!ReadSigns()) return {};
    if (!AtPoint()) ReadIntegerDigits();
    if (AtPoint()) ReadFraction();
    if (AtExponentMark() && mantissa_ != 0 && !ReadExponent()) return {};
    return Normalize(negative_ ? -mantissa_ : mantissa_, exponent_);
  }

 private:
  bool AtEnd() const { return at_ >= text_.size(); }
  bool AtDigit() const { return !AtEnd() && text_[at_] >= '0' && text_[at_] <= '9'; }
  bool AtPoint() const { return !AtEnd() && text_[at_] == '.'; }
  /// An exponent letter that ends the text only ends the number.
  bool AtExponentMark() const { return at_ + 1 < text_.size() && (text_[at_] == 'E' || text_[at_] == 'e'); }

  /// Passes the signs before the number. False when no number follows.
  bool ReadSigns() {
    for (; !AtEnd() && (text_[at_] == '-' || text_[at_] == '+'); ++at_) {
      if (text_[at_] == '-') negative_ = !negative_;
    }
    return AtDigit() || AtPoint();
  }

  void ReadIntegerDigits() {
    for (; AtDigit(); ++at_) {
      if (!Accumulate()) ++exponent_;
    }
  }

  void ReadFraction() {
    for (++at_; AtDigit(); ++at_) {
      if (Accumulate()) --exponent_;
    }
  }

  /// Takes the digit at hand into the mantissa. Once one did not fit, none does.
  bool Accumulate() {
    constexpr std::int64_t kGreatest = std::numeric_limits<std::int64_t>::max();
    const auto digit = static_cast<std::int64_t>(text_[at_] - '0');
    full_ = full_ || mantissa_ > kGreatest / 10 || (mantissa_ == kGreatest / 10 && digit > kGreatest % 10);
    if (!full_) mantissa_ = mantissa_ * 10 + digit;
    return !full_;
  }

  /// Adds the written exponent. False when the number is too small to be other than 0.
  bool ReadExponent() {
    ++at_;
    bool negative = false;
    if (text_[at_] == '-' || text_[at_] == '+') {
      negative = text_[at_] == '-';
      ++at_;
    }
    int magnitude = 0;
    for (; AtDigit() && magnitude < kHopelessExponent; ++at_) magnitude = magnitude * 10 + (text_[at_] - '0');
    if (magnitude >= kHopelessExponent) {
      if (negative) return false;
      throw TooLarge(kExponentTooLarge);
    }
    exponent_ += negative ? -magnitude : magnitude;
    return true;
  }

  const Text& text_;
  std::size_t at_ = 0;
  bool negative_ = false;
  bool full_ = false;
  std::int64_t mantissa_ = 0;
  std::int64_t exponent_ = 0;
};

}  // namespace

Decimal ParseDecimal(std::string_view text) {
  return DecimalParser<std::string_view, std::overflow_error>(text).Parse();
}

Decimal ParseDecimal(const WideBytes& text) {
  return DecimalParser<WideBytes, std::out_of_range>(text).Parse();
}

}  // namespace vessa
