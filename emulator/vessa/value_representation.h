#pragma once

// What a value representation (PS3.5 section 6.2) says about the bytes of a value.

#include <cstddef>
#include <string_view>

namespace emulator::tool {

/// How the bytes of one value read.
enum class ValueKind {
  kText,        ///< characters of the default repertoire
  kLocalText,   ///< characters of the set that (0008,0005) names
  kPersonName,  ///< up to three groups of components, in that set
  kNumberText,  ///< a number in characters
  kUnsigned,    ///< little-endian integers
  kSigned,      ///< little-endian integers of two's complement
  kFloat,       ///< little-endian IEEE 754
  kTag,         ///< two 16-bit halves, group first
  kSequence,
  kBytes,  ///< everything else
};

struct ValueRepresentation {
  std::string_view name;
  ValueKind kind;
  std::size_t unit_bytes;  ///< of one number or tag; 1 for others
  bool has_many_values;    ///< whether a backslash parts values
};

/// The row of a VR; one of kind kBytes for any name that PS3.5 does not know.
const ValueRepresentation& FindValueRepresentation(std::string_view vr);

}  // namespace emulator::tool
