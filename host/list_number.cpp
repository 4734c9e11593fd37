#include "host/list_number.h"

#include <bit>
#include <limits>
#include <stdexcept>

#include "host/list_format.h"

namespace vessa {
namespace {

constexpr std::size_t kIntegerBytes = sizeof(std::int64_t);
constexpr std::size_t kExponentBytes = 1;
constexpr std::uint64_t kSignBit = std::uint64_t{1} << 63;

[[noreturn]] void ThrowTooLarge() { throw std::out_of_range("LONGLONG too large"); }

std::uint64_t ReadBits(std::span<const std::uint8_t> data) {
  if (data.size() > kIntegerBytes) ThrowTooLarge();
  return ReadLittleEndian(data);
}

int ReadExponent(std::span<const std::uint8_t> data) {
  if (data.empty()) ThrowListFormatError();
  return std::bit_cast<std::int8_t>(data[0]);
}

}  // namespace

std::int64_t ReadNonNegativeInteger(std::span<const std::uint8_t> data) {
  const std::uint64_t bits = ReadBits(data);
  if ((bits & kSignBit) != 0) ThrowTooLarge();
  return static_cast<std::int64_t>(bits);
}

std::int64_t ReadNegativeInteger(std::span<const std::uint8_t> data) {
  std::uint64_t bits = ReadBits(data);
  if (data.size() < kIntegerBytes) bits |= ~std::uint64_t{0} << (8 * data.size());
  if ((bits & kSignBit) == 0) ThrowTooLarge();
  return static_cast<std::int64_t>(bits);
}

Decimal ReadNonNegativeDecimal(std::span<const std::uint8_t> data) {
  const int exponent = ReadExponent(data);
  return {ReadNonNegativeInteger(data.subspan(kExponentBytes)), exponent};
}

Decimal ReadNegativeDecimal(std::span<const std::uint8_t> data) {
  const int exponent = ReadExponent(data);
  return {ReadNegativeInteger(data.subspan(kExponentBytes)), exponent};
}

double ReadDouble(std::span<const std::uint8_t> data) {
  if (data.size() != sizeof(double)) ThrowListFormatError();
  return std::bit_cast<double>(ReadLittleEndian(data));
}

std::int64_t TruncateDouble(double value) {
  constexpr double kTwoTo63 = 9223372036854775808.0;
  if (value >= -kTwoTo63 && value < kTwoTo63) return static_cast<std::int64_t>(value);
  return std::numeric_limits<std::int64_t>::min();
}

}  // namespace vessa
