#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <system_error>

#include "emulator/platform/new_file.h"

namespace emulator {
namespace {

/// What the signal handler can reach: paths, and null where there is none.
std::array<std::atomic<const char*>, 8> paths_to_remove;
static_assert(std::atomic<const char*>::is_always_lock_free);

constexpr std::array<int, 3> kInterruptions{SIGINT, SIGTERM, SIGHUP};

/// Ends the process as the signal would have, when the files are gone. Calls only what a handler may.
extern "C" void RemoveFilesAndEnd(int signal_number) {
  for (const auto& path : paths_to_remove) {
    if (const char* const name = path.load(); name != nullptr) unlink(name);
  }
  static_cast<void>(std::signal(signal_number, SIG_DFL));
  static_cast<void>(std::raise(signal_number));
}

/// What the process was told to ignore stays ignored.
void HandleInterruptions() {
  for (const int number : kInterruptions) {
    if (std::signal(number, RemoveFilesAndEnd) == SIG_IGN) static_cast<void>(std::signal(number, SIG_IGN));
  }
}

void Exchange(const char* present, const char* wanted) {
  const auto found = std::find_if(paths_to_remove.begin(), paths_to_remove.end(),
                                  [present](const auto& path) { return path.load() == present; });
  if (found != paths_to_remove.end()) found->store(wanted);
}

}  // namespace

void CreateNewFile(const std::string& path) {
  constexpr mode_t kReadAndWrite = 0666;  // less what the user's mask takes away
  const int file = open(path.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, kReadAndWrite);
  if (file < 0) throw std::system_error(errno, std::generic_category(), path);
  close(file);
}

RemovedWhenInterrupted::RemovedWhenInterrupted(std::string path) : path_(std::move(path)) {
  HandleInterruptions();
  Exchange(nullptr, path_.c_str());
}

RemovedWhenInterrupted::~RemovedWhenInterrupted() { Exchange(path_.c_str(), nullptr); }

}  // namespace emulator
