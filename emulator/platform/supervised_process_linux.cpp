#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <system_error>

#include "emulator/platform/supervised_process.h"

namespace emulator {
namespace {

constexpr int kWatchMilliseconds = 20;

[[noreturn]] void ThrowErrno(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

/// A pipe that nobody writes to: its reading end reports a hang-up when the process that holds the other one
/// ends.
class EndSignal {
 public:
  EndSignal() {
    if (pipe(ends_) != 0) ThrowErrno("pipe");
  }
  ~EndSignal() {
    close(ends_[0]);
    CloseWriter();
  }
  EndSignal(const EndSignal&) = delete;
  EndSignal& operator=(const EndSignal&) = delete;

  void CloseWriter() {
    if (ends_[1] >= 0) close(ends_[1]);
    ends_[1] = -1;
  }

  /// True when the other process has ended; waits for it a little.
  bool Wait() const {
    pollfd reader{ends_[0], POLLIN, 0};
    return poll(&reader, 1, kWatchMilliseconds) > 0;
  }

 private:
  int ends_[2] = {-1, -1};
};

std::string SignalName(int number) {
  const char* name = sigabbrev_np(number);
  return name != nullptr ? std::string("SIG") + name : "signal " + std::to_string(number);
}

int WaitFor(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) ThrowErrno("waitpid");
  }
  return status;
}

ProcessEnd EndOf(int status) {
  ProcessEnd end;
  if (WIFSIGNALED(status)) {
    end.kind = ProcessEnd::Kind::kCrashed;
    end.crash_reason = SignalName(WTERMSIG(status));
  } else {
    end.exit_code = WEXITSTATUS(status);
  }
  return end;
}

/// What the second process does: it must not outlive the first, whose end it learns by a signal that lets it tidy up,
/// nor run what the first registered for its own exit.
[[noreturn]] void RunBody(const std::function<int()>& body, pid_t parent) {
  static_cast<void>(
      std::signal(SIGTERM, SIG_DFL));  // the first may have been started with the signal ignored
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  if (getppid() != parent) _exit(EXIT_FAILURE);
  const int exit_code = body();
  static_cast<void>(std::fflush(nullptr));
  _exit(exit_code);
}

}  // namespace

struct SupervisedProcess::State {
  void* block;
  std::size_t bytes;
};

SupervisedProcess::SupervisedProcess(std::size_t shared_bytes) {
  void* block = mmap(nullptr, shared_bytes, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (block == MAP_FAILED) ThrowErrno("mmap");
  state_ = std::make_unique<State>(State{block, shared_bytes});
}

SupervisedProcess::~SupervisedProcess() { munmap(state_->block, state_->bytes); }

void* SupervisedProcess::SharedBlock() const { return state_->block; }

ProcessEnd SupervisedProcess::Run(const std::function<int()>& body,
                                  const std::function<bool()>& should_stop) {
  static_cast<void>(std::fflush(nullptr));  // what is buffered must be written by one process only
  EndSignal end_signal;
  const pid_t parent = getpid();
  const pid_t child = fork();
  if (child < 0) ThrowErrno("fork");
  if (child == 0) RunBody(body, parent);

  end_signal.CloseWriter();
  while (!end_signal.Wait()) {
    if (!should_stop()) continue;
    kill(child, SIGKILL);
    WaitFor(child);
    return {ProcessEnd::Kind::kStopped, 0, {}};
  }
  return EndOf(WaitFor(child));
}

}  // namespace emulator
