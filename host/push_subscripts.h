#pragma once

#include <cstdint>
#include <string_view>

#include "host/push_arguments.h"

namespace vessa {

// PushArguments with the letters taken from the types: subscripts are integers and texts, and a walk adds its
// key to those of its level.

inline void PushSubscript(std::int32_t value) { PushArguments<"i">(value); }

inline void PushSubscript(std::string_view text) {
  if (text.size() > kGreatestShortText || text.data() == nullptr) [[unlikely]] {
    return static_cast<void>(PushArguments<"*a">(detail::CheckedLength(text.size()), text.data()));
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
