#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "host/callin.h"

namespace vessa {

// What PushArguments does for "i" and "*a", with the letters taken from the types: subscripts are integers
// and texts, and a walk adds its key to those of its level.

inline void PushSubscript(std::int32_t value) { RaiseCallin(Services().push_integer(value)); }

inline void PushSubscript(std::string_view text) {
  if (text.size() > static_cast<std::size_t>(kGreatestShortText)) [[unlikely]] {
    PushArguments<"*a">(static_cast<std::int32_t>(text.size()), text.data());
    return;
  }
  RaiseCallin(Services().push_string(static_cast<int>(text.size()), detail::AsBytes(text)));
}

/// Pushes integers as integers and all else as 8-bit text. Returns how many values were pushed.
/// @throws Status  of the host; what was pushed before stays on its stack
template <class... Subscripts>
int PushSubscripts(const Subscripts&... subscripts) {
  (PushSubscript(subscripts), ...);
  return static_cast<int>(sizeof...(subscripts));
}

}  // namespace vessa
