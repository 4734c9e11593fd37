#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "emulator/host_error.h"

namespace emulator {

/// Most units of a text in a short push.
inline constexpr int kLongestShortText = 32767;

/// The text that a callback was given as length and pointer.
/// @throws HostError  kStringTooLong, or kInvalidArgument for a negative length or a missing text
template <class Unit>
std::span<const Unit> ArgumentText(int length, const Unit* text) {
  if (length > kLongestShortText) throw HostError{kStringTooLong};
  if (length < 0 || (text == nullptr && length > 0)) throw HostError{kInvalidArgument};
  return {text, static_cast<std::size_t>(length)};
}

inline std::string_view Characters(std::span<const unsigned char> text) {
  return {reinterpret_cast<const char*>(text.data()), text.size()};
}

}  // namespace emulator
