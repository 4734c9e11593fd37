#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <system_error>
#include <vector>

#include "emulator/platform/parallel_processes.h"

namespace emulator {
namespace {

[[noreturn]] void RunBody(const std::function<void(int)>& body, int number, pid_t parent) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(EXIT_FAILURE);
  try {
    body(number);
  } catch (const std::exception& error) {
    static_cast<void>(std::fprintf(stderr, "%s\n", error.what()));
    _exit(EXIT_FAILURE);
  }
  _exit(std::fflush(nullptr) == 0 ? EXIT_SUCCESS : EXIT_FAILURE);
}

}  // namespace

void RunInProcesses(int count, const std::function<void(int)>& body) {
  static_cast<void>(std::fflush(nullptr));  // what is buffered must be written by one process only
  const pid_t parent = getpid();
  std::vector<pid_t> children;
  int error = 0;
  for (int number = 0; number < count && error == 0; ++number) {
    const pid_t child = fork();
    if (child == 0) RunBody(body, number, parent);
    if (child < 0) {
      error = errno;
    } else {
      children.push_back(child);
    }
  }
  for (const pid_t child : children) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) continue;
  }
  if (error != 0) throw std::system_error(error, std::generic_category(), "fork");
}

bool CanRunInParallel() { return true; }

}  // namespace emulator
