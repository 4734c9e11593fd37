#pragma once

#include <cstdint>

namespace vessa {

/// 0 or more: success. Negative: a failure in the Windows HRESULT convention. Host error codes travel as a
/// Status too, when they are raised. A Status is raised by throwing it; it never reaches the host as a
/// number.
using Status = std::int32_t;

constexpr Status MakeStatus(std::uint32_t bits) { return static_cast<Status>(bits); }

inline constexpr Status kSuccess = 0;
inline constexpr Status E_NOTIMPL = MakeStatus(0x80004001);
inline constexpr Status E_FAIL = MakeStatus(0x80004005);
inline constexpr Status kUnexpected = MakeStatus(0x8000FFFF);
inline constexpr Status kReadFell = MakeStatus(0x80040302);  ///< a local file gave fewer bytes than asked
inline constexpr Status E_INVALIDARG = MakeStatus(0x80070057);
inline constexpr Status kMissingArgument = MakeStatus(0x80700001);  ///< also: no "DICM" behind the preamble

/// Raises a failure; passes success on.
inline Status RaiseIfNegative(Status status) {
  if (status < 0) throw status;
  return status;
}

}  // namespace vessa
