#pragma once

#include <functional>

#include "emulator/vessa/call_progress.h"

namespace emulator::tool {

/// Runs `work` in a process of its own and returns its exit code. A process that spends more than `timeout_seconds`
/// in the library without calling back is ended (kCallTimedOut); 0 seconds stand for no limit. One that crashes gives
/// kLibraryCrashed. Both are reported on standard error, after what the process had printed.
int Supervise(double timeout_seconds, const std::function<int(CallProgress&)>& work);

}  // namespace emulator::tool
