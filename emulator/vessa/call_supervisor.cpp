#include "emulator/vessa/call_supervisor.h"

#include <fmt/format.h>

#include <chrono>

#include "emulator/platform/supervised_process.h"
#include "emulator/vessa/call_report.h"
#include "emulator/vessa/exit_code.h"
#include "emulator/vessa/output.h"

namespace emulator::tool {
namespace {

/// Measures how long the library has been silent.
class Stopwatch {
 public:
  Stopwatch(CallProgress& progress, double limit_seconds) : progress_(progress), limit_(limit_seconds) {}

  bool LimitIsPassed() {
    const auto now = std::chrono::steady_clock::now();
    const std::uint64_t beats = progress_.Beats();
    if (beats != last_beats_ || !progress_.InLibrary()) {
      last_beats_ = beats;
      silent_since_ = now;
    }
    return limit_.count() > 0 && now - silent_since_ > limit_;
  }

 private:
  CallProgress& progress_;
  std::chrono::duration<double> limit_;
  std::uint64_t last_beats_ = 0;
  std::chrono::steady_clock::time_point silent_since_ = std::chrono::steady_clock::now();
};

/// What the other process had printed but not written yet.
void WriteRemainingOutput(CallProgress& progress) {
  try {
    Output(progress).Flush();
  } catch (const std::exception&) {
    // The exit code is that of the worse event, which comes next.
  }
}

/// For a process that ended without having finished its command.
int ReportCrash(CallProgress& progress, const ProcessEnd& end) {
  const bool has_exited = end.kind == ProcessEnd::Kind::kExited;
  const std::string reason =
      has_exited ? fmt::format("the process ended with exit code {}", end.exit_code) : end.crash_reason;
  WriteRemainingOutput(progress);
  WriteError("vessa: " + CrashText(progress, reason));
  return kLibraryCrashed;
}

int ReportTimeout(CallProgress& progress, double timeout_seconds) {
  WriteRemainingOutput(progress);
  WriteError("vessa: " + TimeoutText(progress, timeout_seconds));
  return kCallTimedOut;
}

}  // namespace

int Supervise(double timeout_seconds, const std::function<int(CallProgress&)>& work) {
  SupervisedProcess process(sizeof(CallProgress));
  CallProgress& progress = *static_cast<CallProgress*>(process.SharedBlock());
  Stopwatch stopwatch(progress, timeout_seconds);
  const auto finish_work = [&] {
    const int exit_code = work(progress);
    progress.is_finished = 1;
    return exit_code;
  };
  const ProcessEnd end = process.Run(finish_work, [&stopwatch] { return stopwatch.LimitIsPassed(); });
  if (end.kind == ProcessEnd::Kind::kStopped) return ReportTimeout(progress, timeout_seconds);
  if (end.kind == ProcessEnd::Kind::kCrashed || progress.is_finished == 0) return ReportCrash(progress, end);
  return end.exit_code;
}

}  // namespace emulator::tool
