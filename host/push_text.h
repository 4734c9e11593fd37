#pragma once

#include <climits>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "host/services.h"

namespace vessa {

/// In units of the text. A longer one goes through the host's long strings.
inline constexpr int kGreatestShortText = 32767;

namespace detail {

/// The host's two ways for one kind of text.
template <class Unit>
struct TextRoute {
  int (*HostServices::*push)(int, const Unit*);
  void* (*HostServices::*new_long)(LongStringDescriptor*, int);
  int (*HostServices::*push_long)(LongStringDescriptor*);
};

inline constexpr TextRoute<unsigned char> kNarrow{&HostServices::push_string, &HostServices::new_long_string,
                                                  &HostServices::push_long_string};
inline constexpr TextRoute<std::uint16_t> kWide{&HostServices::push_wide_string,
                                                &HostServices::new_long_wide_string,
                                                &HostServices::push_long_wide_string};
inline constexpr TextRoute<std::uint16_t> kWideAlt{&HostServices::push_wide_string_alt,
                                                   &HostServices::new_long_wide_string,
                                                   &HostServices::push_long_wide_string_alt};

void PushLongText(const TextRoute<unsigned char>& route, const void* text, int length);
void PushLongText(const TextRoute<std::uint16_t>& route, const void* text, int length);

[[noreturn]] void RaiseUnfitLength();

inline int CheckedLength(std::size_t length) {
  if (length > INT_MAX) [[unlikely]] {
    RaiseUnfitLength();
  }
  return static_cast<int>(length);
}

inline constexpr int kNoLength = -1;

/// Pushes a text without copying it, unless it is a long one. A null text is an empty one.
/// @param length  in units; kNoLength for a text that ends at its zero
template <class HostUnit, class Unit>
void PushText(const HostServices& host, const TextRoute<HostUnit>& route, const Unit* text, int length) {
  static constexpr Unit kEmpty[] = {0};
  if (text == nullptr) {
    text = kEmpty;
    length = 0;
  } else if (length == kNoLength) {
    length = CheckedLength(std::char_traits<Unit>::length(text));
  }
  if (length > kGreatestShortText) [[unlikely]] {
    return PushLongText(route, text, length);
  }
  RaiseCallin((host.*route.push)(length, reinterpret_cast<const HostUnit*>(text)));
}

}  // namespace detail
}  // namespace vessa
