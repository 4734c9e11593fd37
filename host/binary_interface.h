#pragma once

// What crosses between the host and the library, the same on Windows x86-64 and Linux x86-64. This header
// stands alone: a host, or a stand-in for one, includes it and nothing else of the library.

#include <cstddef>
#include <cstdint>

namespace vessa {

/// A counted array: `count` units of `units` are in use. The host hands arguments in it and takes results out
/// of it.
template <class Unit, std::size_t kUnits>
struct VessaString {
  static constexpr std::size_t kCapacity = kUnits;
  std::uint16_t count;
  Unit bytes[kUnits];
};

using HostString = VessaString<unsigned char, 32767>;

/// A text too long for a short push. The library zeroes it, the host fills it when it hands out the area.
struct LongStringDescriptor {
  std::uint32_t length;  ///< in units of the text (bytes or 16-bit units)
  void* area;            ///< owned by the host
};

/// Type codes of `HostServices::convert_result`.
inline constexpr int kConvertToInteger = 1;  ///< receiver: std::int32_t
inline constexpr int kConvertToCountedString =
    3;  ///< receiver: HostString, its capacity in `count` on the way in

/// The host's callback table, by position. Functions return 0 or the host's error code; on an error nothing
/// was pushed or popped. Texts handed in are copied by the host; texts handed out stay the host's and are
/// valid until the next callback. Lengths of 8-bit text are in bytes, of 16-bit text in units; no text needs
/// a terminator.
struct HostServices {
  using Unused = void (*)();

  Unused unused_0[10];
  int (*convert_result)(int type,
                        void* receiver);  ///< 10: value of the last call or property fetch, converted
  Unused unused_11[3];
  int (*push_integer)(int value);                                  ///< 14
  int (*push_double)(double value);                                ///< 15
  int (*push_string)(int length, const unsigned char* text);       ///< 16
  int (*push_wide_string)(int length, const std::uint16_t* text);  ///< 17
  Unused unused_18[8];
  int (*push_global)(int length, const unsigned char* name);  ///< 26
  int (*push_global_in_namespace)(int length, const unsigned char* name, int namespace_length,
                                  const unsigned char* name_space);  ///< 27
  Unused unused_28[4];
  int (*pop_integer)(int* value);  ///< 32
  Unused unused_33[1];
  int (*pop_string)(int* length, unsigned char** text);  ///< 34
  Unused unused_35[5];
  int (*global_get)(int subscripts, int flag);  ///< 40: leaves the node's value to be popped
  Unused unused_41[4];
  int (*push_method)(unsigned int oref, int length, const unsigned char* name, int result_wanted);  ///< 45
  Unused unused_46[2];
  int (*invoke_method)(int arguments);                                             ///< 48
  int (*push_property)(unsigned int oref, int length, const unsigned char* name);  ///< 49
  Unused unused_50[1];
  int (*get_property)();  ///< 51
  Unused unused_52[1];
  int (*push_object)(unsigned int oref);  ///< 53
  Unused unused_54[3];
  int (*push_wide_string_alt)(int length, const std::uint16_t* text);  ///< 57: second 16-bit form
  int (*pop_wide_string)(int* length, std::uint16_t** text);           ///< 58
  int (*push_counted)(int length, const unsigned char* bytes);         ///< 59
  Unused unused_60[11];
  /// 71: the next subscript after the last one pushed; `direction` +1 or -1. With `value_wanted` it leaves an
  /// integer (0: no value), the value where there is one, and last the subscript; empty at the end.
  int (*global_order)(int subscripts, int direction, int value_wanted);
  int (*global_defined)(int subscripts, int flag);  ///< 72: leaves 0, 1 value, 10 descendants or 11 both
  Unused unused_73[21];
  void* (*new_long_string)(LongStringDescriptor* descriptor, int length);       ///< 94: the area, or null
  void* (*new_long_wide_string)(LongStringDescriptor* descriptor, int length);  ///< 95: the area, or null
  Unused unused_96[3];
  int (*push_long_string)(LongStringDescriptor* descriptor);       ///< 99
  int (*push_long_wide_string)(LongStringDescriptor* descriptor);  ///< 100
  Unused unused_101[2];
  int (*push_long_wide_string_alt)(LongStringDescriptor* descriptor);  ///< 103
  Unused unused_104[2];
  int (*push_unsigned)(unsigned int value);  ///< 106
};

/// The entry of a call-out, by its argument types.
union CallOutEntry {
  void (*any)();
  std::int32_t (*buffer)(HostString*);                                       ///< "Bz", "B"
  std::int32_t (*buffer_and_integer)(HostString*, std::int32_t);             ///< "Bi"
  std::int32_t (*three_integers)(std::int32_t, std::int32_t, std::int32_t);  ///< "ioo"
  std::int32_t (*arguments_unread)();                                        ///< "coi"
};

/// A row of the call-out table; a row of three nulls ends it.
struct CallOutRow {
  const char* name;
  const char* argument_types;  ///< the host's marshalling codes
  CallOutEntry entry;
};

/// `GetZFTable`: the library's one export. Stores `callbacks` for all later calls and returns row 0.
using GetZFTableFunction = const CallOutRow*(void* first, const HostServices* callbacks);

static_assert(sizeof(HostString) == 32770 && offsetof(HostString, bytes) == 2);
static_assert(sizeof(LongStringDescriptor) == 16 && offsetof(LongStringDescriptor, area) == 8);
static_assert(sizeof(CallOutRow) == 3 * sizeof(void*));
static_assert(sizeof(HostServices) == 107 * sizeof(void*));
static_assert(offsetof(HostServices, convert_result) == 10 * sizeof(void*));
static_assert(offsetof(HostServices, push_integer) == 14 * sizeof(void*));
static_assert(offsetof(HostServices, push_global) == 26 * sizeof(void*));
static_assert(offsetof(HostServices, pop_integer) == 32 * sizeof(void*));
static_assert(offsetof(HostServices, pop_string) == 34 * sizeof(void*));
static_assert(offsetof(HostServices, global_get) == 40 * sizeof(void*));
static_assert(offsetof(HostServices, push_method) == 45 * sizeof(void*));
static_assert(offsetof(HostServices, invoke_method) == 48 * sizeof(void*));
static_assert(offsetof(HostServices, get_property) == 51 * sizeof(void*));
static_assert(offsetof(HostServices, push_object) == 53 * sizeof(void*));
static_assert(offsetof(HostServices, push_wide_string_alt) == 57 * sizeof(void*));
static_assert(offsetof(HostServices, global_order) == 71 * sizeof(void*));
static_assert(offsetof(HostServices, new_long_string) == 94 * sizeof(void*));
static_assert(offsetof(HostServices, push_long_string) == 99 * sizeof(void*));
static_assert(offsetof(HostServices, push_long_wide_string_alt) == 103 * sizeof(void*));
static_assert(offsetof(HostServices, push_unsigned) == 106 * sizeof(void*));

}  // namespace vessa
