#pragma once

#include <cstdint>

#include "host/binary_interface.h"
#include "modules/VessaDCM/call.h"

namespace vessa {

/// The frame that every call-out with a value list in and a result list out shares: opens the arguments, runs
/// the work, turns whatever it throws into a failure result, writes the result back.
/// @param buffer  the host's; a null one is left alone
/// @return  0, always: success and failure are told by the first element of the result list
std::int32_t RunInFrame(HostString* buffer, const ArgumentRule& rule, void (*work)(Call&));

/// The same with its work fixed: a row's entry.
template <const ArgumentRule& kRule, void (*kWork)(Call&)>
std::int32_t BufferFrame(HostString* buffer) {
  return RunInFrame(buffer, kRule, kWork);
}

}  // namespace vessa
