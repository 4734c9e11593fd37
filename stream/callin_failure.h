#pragma once

#include <string_view>

#include "dicom/exception.h"
#include "dicom/status.h"

namespace vessa {

// What a failed access to a host stream is called; "%1" is the host's status as a signed decimal number.
inline constexpr std::string_view kPeekFailed = "Callin error peeking bytes: %1";
inline constexpr std::string_view kReadFailed = kPeekFailed;  ///< kept: reads are reported as peeks
inline constexpr std::string_view kSkipFailed = "Callin error skipping bytes: %1";
inline constexpr std::string_view kWriteFailed = "Callin error writing bytes: %1";
inline constexpr std::string_view kPositionFailed = "Callin error getting underlying stream position: %1";
inline constexpr std::string_view kSizeFailed = "Callin error getting stream size: %1";

/// @throws CDecomposeException  always: the text with the host's status in it
[[noreturn]] void RaiseCallinFailure(std::string_view text, Status status);

/// Runs an access to the host, whose bare status becomes a failure with that text.
template <class Access>
auto WithFailureText(std::string_view text, Access access) {
  try {
    return access();
  } catch (const Status status) {
    RaiseCallinFailure(text, status);
  }
}

}  // namespace vessa
