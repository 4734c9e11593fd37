#pragma once

// Calls back into the host. Every function raises a host status other than 0 as that Status, at once; the
// operations that hand out an area raise -1 for none. What a failed sequence had pushed is left to the host.

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "dicom/status.h"
#include "host/binary_interface.h"
#include "host/vessa_list.h"

namespace vessa {

/// Stores the host's callback table for all later calls. A null table makes every later callin fail with -1.
void SetHostServices(const HostServices* services);

namespace detail {

/// The table in use. It is never null: without a host's table it is one whose functions refuse, so that no
/// callin has to look.
extern const HostServices* host_services;

inline const unsigned char* AsBytes(std::string_view text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

}  // namespace detail

/// The table in use; never null.
inline const HostServices& Services() { return *detail::host_services; }

/// What a callin fails with that has no status of the host's.
inline constexpr Status kFailedCallin = -1;

/// Raises what a callback answered, unless it is success.
inline void RaiseCallin(int status) {
  if (status != 0) [[unlikely]] {
    throw Status{status};
  }
}

/// One value for PushArguments; as what it is read is the format letter's business. Signed and unsigned
/// integers stand for each other, as do the pointers to text.
class Argument {
 public:
  // Implicit on purpose: PushArguments takes the values as they are.
  constexpr Argument(std::int32_t value) : integer_{static_cast<std::uint32_t>(value)} {}  // NOLINT
  constexpr Argument(std::uint32_t value) : integer_{value} {}                             // NOLINT
  constexpr Argument(double value) : number_{value} {}                                     // NOLINT
  constexpr Argument(const char* value) : pointer_{value} {}                               // NOLINT
  constexpr Argument(const std::uint8_t* value) : pointer_{value} {}                       // NOLINT
  constexpr Argument(const char16_t* value) : pointer_{value} {}                           // NOLINT
  constexpr Argument(const VessaList* value) : pointer_{value} {}                          // NOLINT
  constexpr Argument(const std::span<const std::uint8_t>* value) : pointer_{value} {}      // NOLINT

  std::int32_t Integer() const { return static_cast<std::int32_t>(integer_); }
  std::uint32_t Unsigned() const { return integer_; }
  double Number() const { return number_; }
  template <class Pointee>
  const Pointee* Pointer() const {
    return static_cast<const Pointee*>(pointer_);
  }

 private:
  union {
    std::uint32_t integer_;
    double number_;
    const void* pointer_;
  };
};

/// Pushes the values as the format's letters say and returns how many values were counted:
///   i integer, u unsigned integer, d double, o object reference, a 8-bit text, n 16-bit text, x 16-bit text
///   in its second form, l value list (its bytes), c counted bytes, * length of the next text value (not
///   counted).
/// A letter of no meaning pushes nothing and takes no value, yet is counted. Without "*" a text ends at its
/// zero; a null text is empty; one above 32767 units goes through the host's long strings.
/// @throws Status  of the host; kUnexpected for a format that asks for more values than there are or for a
/// length
///                 below zero. What was pushed before stays on the host's stack.
int PushArgumentList(const char* format, std::span<const Argument> values);

template <class... Values>
int PushArguments(const char* format, const Values&... values) {
  if constexpr (sizeof...(values) == 0) {
    return PushArgumentList(format, {});
  } else {
    const std::array<Argument, sizeof...(values)> list{Argument(values)...};
    return PushArgumentList(format, list);
  }
}

// --- Methods and properties of host objects
// -------------------------------------------------------------------

enum class ResultWanted : int { kNo = 0, kYes = 1 };

inline void PushMethod(std::uint32_t oref, std::string_view name, ResultWanted wanted) {
  RaiseCallin(Services().push_method(oref, static_cast<int>(name.size()), detail::AsBytes(name),
                                     static_cast<int>(wanted)));
}

inline void InvokeMethod(int arguments) { RaiseCallin(Services().invoke_method(arguments)); }

/// PushMethod, PushArguments, InvokeMethod. The result, where one is wanted, is left to be fetched.
template <class... Values>
void CallMethod(std::uint32_t oref, std::string_view name, ResultWanted wanted, const char* format,
                const Values&... values) {
  PushMethod(oref, name, wanted);
  InvokeMethod(PushArguments(format, values...));
}

std::int32_t ConvertResultToInteger();
/// Fetches the result as a counted string and drops it. A count above 32767 is a failed callin (-1).
void DropResult();
/// The bytes stay the host's: copy them before the next callin. A negative length, or no bytes with a length
/// above zero, is a failed callin (-1).
std::span<const std::uint8_t> PopString();
std::u16string_view PopWideString();
std::int32_t PopInteger();

/// PushProperty, GetProperty, ConvertResultToInteger.
std::int32_t ReadIntegerProperty(std::uint32_t oref, std::string_view name);

// --- Globals (names without the leading "^")
// ------------------------------------------------------------------

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

template <class... Values>
std::string ReadGlobalString(std::string_view name, std::string_view name_space, const char* format,
                             const Values&... subscripts) {
  PushGlobalReferenceInNamespace(name, name_space);
  GlobalGet(PushArguments(format, subscripts...));
  const std::span<const std::uint8_t> value = PopString();
  return std::string(value.begin(), value.end());
}

template <class... Values>
std::u16string ReadGlobalWideString(std::string_view name, std::string_view name_space, const char* format,
                                    const Values&... subscripts) {
  PushGlobalReferenceInNamespace(name, name_space);
  GlobalGet(PushArguments(format, subscripts...));
  return std::u16string(PopWideString());
}

/// 0 undefined, 1 value, 10 descendants, 11 both.
template <class... Values>
std::int32_t ReadGlobalDefined(std::string_view name, std::string_view name_space, const char* format,
                               const Values&... subscripts) {
  PushGlobalReferenceInNamespace(name, name_space);
  GlobalDefined(PushArguments(format, subscripts...));
  return PopInteger();
}

/// True when the defined-state code says that the node holds a value.
constexpr bool HoldsValue(std::int32_t defined) { return defined % 10 == 1; }

/// True when ^KevDICOM.Debug("simplepixeldataframes") holds a value.
bool SimplePixelDataFrames();

}  // namespace vessa
