#pragma once

// Calls back into the host. Every function raises a host status other than 0 as that Status, at once; the
// operations that hand out an area raise -1 for none. What a failed sequence had pushed is left to the host.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "host/push_arguments.h"
#include "host/services.h"

namespace vessa {

// --- Methods and properties of host objects ---

enum class ResultWanted : int { kNo = 0, kYes = 1 };

inline void PushMethod(std::uint32_t oref, std::string_view name, ResultWanted wanted) {
  RaiseCallin(Services().push_method(oref, static_cast<int>(name.size()), detail::AsBytes(name),
                                     static_cast<int>(wanted)));
}

inline void InvokeMethod(int arguments) { RaiseCallin(Services().invoke_method(arguments)); }

/// PushMethod, PushArguments, InvokeMethod. The result, where one is wanted, is left to be fetched.
template <ArgumentFormat kFormat, class... Values>
inline void CallMethod(std::uint32_t oref, std::string_view name, ResultWanted wanted,
                       const Values&... values) {
  PushMethod(oref, name, wanted);
  InvokeMethod(PushArguments<kFormat>(values...));
}

std::int32_t ConvertResultToInteger();

/// Fetches the result as a counted string and drops it. A count above 32767 is a failed callin (-1).
inline void DropResult() {   // here, because every event of a decomposition ends with it
  static HostString result;  // the host fills it; nobody reads it, nor need it lie on the stack
  result.count = HostString::kCapacity;
  RaiseCallin(Services().convert_result(kConvertToCountedString, &result));
  if (result.count > HostString::kCapacity) [[unlikely]] {
    RaiseStatus(kFailedCallin);
  }
}

namespace detail {

/// What the host handed out, once it is known to be a text.
template <class Unit>
std::span<const Unit> HandedOut(int length, const Unit* units) {
  if (length < 0 || (units == nullptr && length > 0)) [[unlikely]] {
    RaiseStatus(kFailedCallin);
  }
  return {units, static_cast<std::size_t>(length)};
}

}  // namespace detail

/// The bytes stay the host's: copy them before the next callin. A negative length, or no bytes with a length
/// above zero, is a failed callin (-1).
inline std::span<const std::uint8_t> PopString() {
  int length = 0;
  unsigned char* bytes = nullptr;
  RaiseCallin(Services().pop_string(&length, &bytes));
  return detail::HandedOut<std::uint8_t>(length, bytes);
}

inline std::u16string_view PopWideString() {
  int length = 0;
  std::uint16_t* units = nullptr;
  RaiseCallin(Services().pop_wide_string(&length, &units));
  const std::span<const std::uint16_t> text = detail::HandedOut<std::uint16_t>(length, units);
  return {reinterpret_cast<const char16_t*>(text.data()), text.size()};
}

inline std::int32_t PopInteger() {
  int value = 0;
  RaiseCallin(Services().pop_integer(&value));
  return value;
}

/// PushProperty, GetProperty, ConvertResultToInteger.
std::int32_t ReadIntegerProperty(std::uint32_t oref, std::string_view name);

// --- Globals (names without the leading "^") ---

inline void PushGlobalReference(std::string_view name) {
  RaiseCallin(Services().push_global(static_cast<int>(name.size()), detail::AsBytes(name)));
}

inline void PushGlobalReferenceInNamespace(std::string_view name, std::string_view name_space) {
  RaiseCallin(Services().push_global_in_namespace(static_cast<int>(name.size()), detail::AsBytes(name),
                                                  static_cast<int>(name_space.size()),
                                                  detail::AsBytes(name_space)));
}

/// Leaves the node's value to be popped.
inline void GlobalGet(int subscripts) { RaiseCallin(Services().global_get(subscripts, 0)); }

/// Leaves the node's defined-state code to be popped.
inline void GlobalDefined(int subscripts) { RaiseCallin(Services().global_defined(subscripts, 0)); }

/// Direction: +1 forward, -1 backward. Leaves, where the value is wanted, an integer (0: none) and the value,
/// and last the next subscript.
inline void GlobalOrder(int subscripts, int direction, bool value_wanted) {
  RaiseCallin(Services().global_order(subscripts, direction, value_wanted ? 1 : 0));
}

template <ArgumentFormat kFormat, class... Values>
std::string ReadGlobalString(std::string_view name, std::string_view name_space,
                             const Values&... subscripts) {
  PushGlobalReferenceInNamespace(name, name_space);
  GlobalGet(PushArguments<kFormat>(subscripts...));
  const std::span<const std::uint8_t> value = PopString();
  return std::string(value.begin(), value.end());
}

template <ArgumentFormat kFormat, class... Values>
std::u16string ReadGlobalWideString(std::string_view name, std::string_view name_space,
                                    const Values&... subscripts) {
  PushGlobalReferenceInNamespace(name, name_space);
  GlobalGet(PushArguments<kFormat>(subscripts...));
  return std::u16string(PopWideString());
}

/// 0 undefined, 1 value, 10 descendants, 11 both.
template <ArgumentFormat kFormat, class... Values>
std::int32_t ReadGlobalDefined(std::string_view name, std::string_view name_space,
                               const Values&... subscripts) {
  PushGlobalReferenceInNamespace(name, name_space);
  GlobalDefined(PushArguments<kFormat>(subscripts...));
  return PopInteger();
}

/// True when the defined-state code says that the node holds a value.
constexpr bool HoldsValue(std::int32_t defined) { return defined % 10 == 1; }

/// True when ^KevDICOM.Debug("simplepixeldataframes") holds a value.
bool SimplePixelDataFrames();

}  // namespace vessa
