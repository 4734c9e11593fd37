#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <tuple>
#include <utility>

#include "host/argument_format.h"
#include "host/push_text.h"
#include "host/services.h"
#include "host/vessa_list.h"

namespace vessa {

namespace detail {

// What may be handed over for the letters. Signed and unsigned integers stand for each other, as do pointers to
// characters and to bytes.

template <class Value>
concept Integer32 = std::integral<Value> && sizeof(Value) == sizeof(std::int32_t);

inline const char* NarrowText(const char* text) { return text; }
inline const char* NarrowText(const std::uint8_t* text) { return reinterpret_cast<const char*>(text); }

inline int GivenLength(std::int32_t length) {
  if (length < 0) [[unlikely]] {
    RaiseUnfitLength();
  }
  return length;
}

inline void PushBytes(int (*push)(int, const unsigned char*), std::span<const std::uint8_t> bytes) {
  RaiseCallin(push(CheckedLength(bytes.size()), bytes.data()));
}

/// Pushes one value as its letter says.
/// @param length  what the last '*' gave, for the next text; kNoLength when there was none
template <char kLetter, class Value>
void PushValue(const HostServices& host, [[maybe_unused]] int& length, const Value& value) {
  if constexpr (kLetter == 'i') {
    static_assert(Integer32<Value>);
    RaiseCallin(host.push_integer(static_cast<std::int32_t>(value)));
  } else if constexpr (kLetter == 'u') {
    static_assert(Integer32<Value>);
    RaiseCallin(host.push_unsigned(static_cast<std::uint32_t>(value)));
  } else if constexpr (kLetter == 'o') {
    static_assert(Integer32<Value>);
    RaiseCallin(host.push_object(static_cast<std::uint32_t>(value)));
  } else if constexpr (kLetter == 'd') {
    static_assert(std::same_as<Value, double>);
    RaiseCallin(host.push_double(value));
  } else if constexpr (kLetter == 'a') {
    PushText(host, kNarrow, NarrowText(value), std::exchange(length, kNoLength));
  } else if constexpr (kLetter == 'n') {
    PushText<std::uint16_t, char16_t>(host, kWide, value, std::exchange(length, kNoLength));
  } else if constexpr (kLetter == 'x') {
    PushText<std::uint16_t, char16_t>(host, kWideAlt, value, std::exchange(length, kNoLength));
  } else if constexpr (kLetter == 'l') {
    PushBytes(host.push_string, static_cast<const VessaList*>(value)->Bytes());
  } else if constexpr (kLetter == 'c') {
    PushBytes(host.push_counted, *value);
  } else {
    static_assert(kLetter == '*' && Integer32<Value>);
    length = GivenLength(static_cast<std::int32_t>(value));
  }
}

template <ArgumentFormat kFormat, std::size_t kLetter, class... Values>
void PushLetter(const HostServices& host, int& length, const std::tuple<const Values&...>& values) {
  if constexpr (kFormat.TakesValue(kFormat.letters[kLetter])) {
    PushValue<kFormat.letters[kLetter]>(host, length, std::get<kFormat.ValuesBefore(kLetter)>(values));
  }
}

}  // namespace detail

/// Pushes the values as the format's letters say and returns how many letters the host has to be told of:
///   i  integer, u unsigned integer, o object reference: 32 bits
///   d  double
///   a  8-bit text, n 16-bit text, x 16-bit text in its second form: pointers
///   l  value list, pushed as its bytes: a pointer to it
///   c  counted bytes: a pointer to a span
///   *  length of the next text; it pushes nothing and is not counted
/// Any other letter pushes nothing and takes no value, yet is counted. Without '*' a text ends at its zero; a null
/// text is empty; one above 32767 units goes through the host's long strings.
/// @throws Status  of the host; kUnexpected for a length below zero. What was pushed before stays on the host's
///                 stack.
template <ArgumentFormat kFormat, class... Values>
int PushArguments(const Values&... values) {
  static_assert(kFormat.ValueCount() == sizeof...(values), "the format asks for another number of values");
  [[maybe_unused]] const HostServices& host = Services();
  [[maybe_unused]] const std::tuple<const Values&...> all(values...);
  [[maybe_unused]] int length = detail::kNoLength;
  [&]<std::size_t... kLetter>(std::index_sequence<kLetter...>) {
    (detail::PushLetter<kFormat, kLetter>(host, length, all), ...);
  }
  (std::make_index_sequence<kFormat.kLetters>());
  return kFormat.Counted();
}

}  // namespace vessa
