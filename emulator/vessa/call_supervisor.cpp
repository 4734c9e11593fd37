#include "emulator/vessa/call_supervisor.h"

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

}  // namespace

int Supervise(double timeout_seconds, const std::function<int(CallProgress&)>& work) {
  SupervisedProcess process(sizeof(CallProgress));
  CallProgress& progress = *static_cast<CallProgress*>(process.SharedBlock());
  Stopwatch stopwatch(progress, timeout_seconds);
  const ProcessEnd end =
      process.Run([&] { return work(progress); }, [&stopwatch] { return stopwatch.LimitIsPassed(); });
  switch (end.kind) {
    case ProcessEnd::Kind::kExited:
      return end.exit_code;
    case ProcessEnd::Kind::kStopped:
      WriteRemainingOutput(progress);
      WriteError("vessa: " + TimeoutText(progress, timeout_seconds));
      return kCallTimedOut;
    case ProcessEnd::Kind::kCrashed:
      break;
  }
  WriteRemainingOutput(progress);
  WriteError("vessa: " + CrashText(progress, end.crash_reason));
  return kLibraryCrashed;
}

}  // namespace emulator::tool
