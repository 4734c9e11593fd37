#pragma once

// Numbers of binary values, which the library hands out in little-endian order.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "emulator/vessa/value_representation.h"

namespace emulator::tool {

/// The first `bytes.size()` (at most 8) bytes as an unsigned little-endian integer.
std::uint64_t UnsignedLittleEndian(std::string_view bytes);

/// One unit of a kUnsigned, kSigned or kFloat value in decimal, a float in the fewest digits that read back to it.
std::string NumberText(std::string_view unit, ValueKind kind);

/// One unit of a kFloat value: 4 or 8 bytes.
double FloatValue(std::string_view unit);

/// One unit of a kTag value: 0x00100010 for the bytes 10 00 10 00.
std::uint32_t TagValue(std::string_view unit);

}  // namespace emulator::tool
