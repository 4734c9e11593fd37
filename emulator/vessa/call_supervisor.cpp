#include "emulator/vessa/call_supervisor.h"

#include <fmt/format.h>

#include <chrono>

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
void WriteRemainingOutput(const Supervision& supervision) {
  try {
    Output(supervision.progress, supervision.turn).Flush();
  } catch (const std::exception&) {
    // The exit code is that of the worse event, which comes next.
  }
  supervision.turn.Release();
}

void Report(const Supervision& supervision, const std::string& text) {
  WriteRemainingOutput(supervision);
  supervision.before_report();
  WriteFailure(text);
}

/// For a process that ended without having finished its command.
int ReportCrash(const Supervision& supervision, const ProcessEnd& end) {
  const bool has_exited = end.kind == ProcessEnd::Kind::kExited;
  Report(supervision, CrashText(supervision.progress,
                                has_exited ? fmt::format("the process ended with exit code {}", end.exit_code)
                                           : end.crash_reason));
  return kLibraryCrashed;
}

int ReportTimeout(const Supervision& supervision) {
  Report(supervision, TimeoutText(supervision.progress, supervision.timeout_seconds));
  return kCallTimedOut;
}

}  // namespace

int Supervise(const Supervision& supervision, const std::function<int()>& work) {
  CallProgress& progress = supervision.progress;
  Stopwatch stopwatch(progress, supervision.timeout_seconds);
  const auto finish_work = [&] {
    const int exit_code = work();
    progress.is_finished = 1;
    return exit_code;
  };
  const auto should_stop = [&] {
    supervision.while_waiting();
    return stopwatch.LimitIsPassed();
  };
  const ProcessEnd end = supervision.process.Run(finish_work, should_stop);
  if (end.kind == ProcessEnd::Kind::kStopped) return ReportTimeout(supervision);
  if (end.kind == ProcessEnd::Kind::kCrashed || progress.is_finished == 0)
    return ReportCrash(supervision, end);
  return end.exit_code;
}

int Supervise(double timeout_seconds, const std::function<int(CallProgress&)>& work) {
  SupervisedProcess process(sizeof(CallProgress));
  CallProgress& progress = *static_cast<CallProgress*>(process.SharedBlock());
  return Supervise({process, progress, timeout_seconds}, [&] { return work(progress); });
}

}  // namespace emulator::tool
