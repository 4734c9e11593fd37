#pragma once

// Words for what only the host knows about a call that went wrong.

#include <string>

#include "emulator/vessa/call_progress.h"

namespace emulator::tool {

/// "offset 1234, in (0008,1140) item 2 > (0008,1150)"; says so when nothing follows that offset. The offset alone where
/// no events tell the path.
std::string PlaceText(const CallProgress& progress);

/// For a call that neither returned nor called back for `seconds`; says why when the data show it.
std::string TimeoutText(const CallProgress& progress, double seconds);

/// For a call that ended its process. `reason`: the signal's or exception's name.
std::string CrashText(const CallProgress& progress, const std::string& reason);

}  // namespace emulator::tool
