#pragma once

// The host's callback table in use, and what becomes of the statuses that its functions answer.

#include <string_view>

#include "dicom/status.h"
#include "host/binary_interface.h"

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

/// Raises the status.
[[noreturn]] void RaiseStatus(Status status);

/// Raises what a callback answered, unless it is success.
inline void RaiseCallin(int status) {
  if (status != 0) [[unlikely]] {
    RaiseStatus(status);
  }
}

}  // namespace vessa
