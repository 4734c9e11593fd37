#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace emulator {

/// Reference of a host object; 0 refers to none.
struct ObjectRef {
  std::uint32_t oref = 0;
  friend bool operator==(ObjectRef, ObjectRef) = default;
};

/// A value of the host's language: nothing, a number, 8-bit text (bytes; a value list is such a text), 16-bit
/// text or an object. The host converts freely between numbers and texts, as the functions below do.
using Value = std::variant<std::monostate, std::int64_t, double, std::string, std::u16string, ObjectRef>;

/// The value as an integer: text up to where it stops being a number, fractions cut off, nothing and other
/// text: 0. A number outside 64 bits becomes the nearest limit. Throws HostError (kInvalidArgument) for an
/// object.
std::int64_t AsInteger(const Value& value);

/// The value as 8-bit text; numbers in canonical form ("12", "-.5"). Throws HostError: kInvalidArgument for
/// an object, kWideCharacter for 16-bit text with a unit above 255.
std::string AsBytes(const Value& value);

/// The same into `out`, whose storage is used again.
void AssignBytes(const Value& value, std::string& out);

/// The value as 16-bit text; each byte of an 8-bit text becomes the unit of that number.
std::u16string AsWideText(const Value& value);

/// A number in the host's canonical form: no exponent, no zero before the point or at the end of a fraction.
std::string CanonicalNumber(double value);

}  // namespace emulator
