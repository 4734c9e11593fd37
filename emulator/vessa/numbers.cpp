#include "emulator/vessa/numbers.h"

#include <fmt/format.h>

#include <bit>

namespace emulator::tool {
namespace {

constexpr std::size_t kLargestBytes = sizeof(std::uint64_t);

std::int64_t SignedLittleEndian(std::string_view bytes) {
  const auto unused_bits = static_cast<unsigned>(8U * (kLargestBytes - bytes.size()));
  return static_cast<std::int64_t>(UnsignedLittleEndian(bytes) << unused_bits) >> unused_bits;
}

float SingleValue(std::string_view bytes) {
  return std::bit_cast<float>(static_cast<std::uint32_t>(UnsignedLittleEndian(bytes)));
}

std::string FloatText(std::string_view unit) {
  return unit.size() == sizeof(float) ? fmt::format("{}", SingleValue(unit))
                                      : fmt::format("{}", FloatValue(unit));
}

}  // namespace

std::uint64_t UnsignedLittleEndian(std::string_view bytes) {
  std::uint64_t value = 0;
  for (std::size_t index = bytes.size(); index-- > 0;)
    value = (value << 8U) | static_cast<std::uint8_t>(bytes[index]);
  return value;
}

std::string NumberText(std::string_view unit, ValueKind kind) {
  if (kind == ValueKind::kFloat) return FloatText(unit);
  if (kind == ValueKind::kSigned && !unit.empty()) return fmt::format("{}", SignedLittleEndian(unit));
  return fmt::format("{}", UnsignedLittleEndian(unit));
}

double FloatValue(std::string_view unit) {
  if (unit.size() == sizeof(float)) return static_cast<double>(SingleValue(unit));
  return std::bit_cast<double>(UnsignedLittleEndian(unit));
}

std::uint32_t TagValue(std::string_view unit) {
  const auto group = static_cast<std::uint32_t>(UnsignedLittleEndian(unit.substr(0, 2)));
  const auto element = static_cast<std::uint32_t>(UnsignedLittleEndian(unit.substr(2, 2)));
  return (group << 16U) | element;
}

}  // namespace emulator::tool
