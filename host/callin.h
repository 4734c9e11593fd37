#pragma once

// Calls back into the host. Every function raises a host status other than 0 as that Status, at once; the operations
// that hand out an area raise -1 for none. What a failed sequence had pushed is left to the host.

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

/// The table in use; never null.
const HostServices& Services();

/// One value for PushArguments; which member is read is the format letter's business.
union Argument {
  constexpr Argument(std::int32_t value) : integer{value} {}           // NOLINT(google-explicit-constructor)
  constexpr Argument(std::uint32_t value) : unsigned_integer{value} {}  // NOLINT(google-explicit-constructor)
  constexpr Argument(double value) : number{value} {}                  // NOLINT(google-explicit-constructor)
  constexpr Argument(const char* value) : text{value} {}               // NOLINT(google-explicit-constructor)
  constexpr Argument(const std::uint8_t* value) : bytes{value} {}      // NOLINT(google-explicit-constructor)
  constexpr Argument(const char16_t* value) : wide_text{value} {}      // NOLINT(google-explicit-constructor)
  constexpr Argument(const VessaList* value) : list{value} {}          // NOLINT(google-explicit-constructor)
  constexpr Argument(const std::span<const std::uint8_t>* value)       // NOLINT(google-explicit-constructor)
      : counted{value} {}

  std::int32_t integer;
  std::uint32_t unsigned_integer;
  double number;
  const char* text;
  const std::uint8_t* bytes;
  const char16_t* wide_text;
  const VessaList* list;
  const std::span<const std::uint8_t>* counted;
};

/// Pushes the values as the format's letters say and returns how many values were counted:
///   i integer, u unsigned integer, d double, o object reference, a 8-bit text, n 16-bit text, x 16-bit text in its
///   second form, l value list (its bytes), c counted bytes, * length of the next text value (not counted).
/// A letter of no meaning pushes nothing and takes no value, yet is counted. Without "*" a text ends at its zero; a
/// null text is empty; one above 32767 units goes through the host's long strings.
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

// --- Methods and properties of host objects -------------------------------------------------------------------

enum class ResultWanted : int { kNo = 0, kYes = 1 };

void PushMethod(std::uint32_t oref, std::string_view name, ResultWanted wanted);
void InvokeMethod(int arguments);

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
/// The bytes stay the host's: copy them before the next callin. A negative length, or no bytes with a length above
/// zero, is a failed callin (-1).
std::span<const std::uint8_t> PopString();
std::u16string_view PopWideString();
std::int32_t PopInteger();

/// PushProperty, GetProperty, ConvertResultToInteger.
std::int32_t ReadIntegerProperty(std::uint32_t oref, std::string_view name);

// --- Globals (names without the leading "^") ------------------------------------------------------------------

void PushGlobalReference(std::string_view name);
void PushGlobalReferenceInNamespace(std::string_view name, std::string_view name_space);
void GlobalGet(int subscripts);
void GlobalDefined(int subscripts);
/// Direction: +1 forward, -1 backward.
void GlobalOrder(int subscripts, int direction, bool value_wanted);

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
