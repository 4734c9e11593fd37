#pragma once

#include <span>

#include "bench/recorded_callback.h"
#include "host/binary_interface.h"

namespace bench {

/// Makes the callbacks from a shared object of its own, as a library would.
void ReplayFromSharedObject(std::span<const RecordedCallback> callbacks, const vessa::HostServices& host);

}  // namespace bench
