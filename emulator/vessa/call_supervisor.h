#pragma once

#include <functional>

#include "emulator/platform/supervised_process.h"
#include "emulator/vessa/call_progress.h"
#include "emulator/vessa/output_turn.h"

namespace emulator::tool {

/// How a process that calls the library is watched.
struct Supervision {
  SupervisedProcess& process;
  CallProgress& progress;  ///< in the block that it shares
  double timeout_seconds;  ///< 0 for no limit
  OutputTurn turn = {};
  std::function<void()> while_waiting = [] {};  ///< now and then
  std::function<void()> before_report = [] {};  ///< makes room on the terminal
};

/// Runs `work` in a process of its own and returns its exit code. A process that spends more than the given time
/// in the library without calling back is ended (kCallTimedOut). One that crashes gives kLibraryCrashed. Both are
/// reported on standard error, after what the process had printed.
int Supervise(const Supervision& supervision, const std::function<int()>& work);

/// The same for a process that shares nothing but its progress.
int Supervise(double timeout_seconds, const std::function<int(CallProgress&)>& work);

}  // namespace emulator::tool
