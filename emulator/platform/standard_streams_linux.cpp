#include <sys/ioctl.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "emulator/platform/standard_streams.h"

namespace emulator {
namespace {

int Descriptor(StandardStream stream) {
  return stream == StandardStream::kOutput ? STDOUT_FILENO : STDERR_FILENO;
}

}  // namespace

void PrepareStandardStreams() { static_cast<void>(std::signal(SIGPIPE, SIG_IGN)); }

bool IsTerminal(StandardStream stream) { return isatty(Descriptor(stream)) == 1; }

std::size_t TerminalColumns(StandardStream stream) {
  winsize size{};
  return ioctl(Descriptor(stream), TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

std::vector<std::string> ProgramArguments(int argc, const char* const* argv) {
  return argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

std::string ProgramFolder() {
  std::error_code unknown;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", unknown);
  return unknown ? std::string() : program.parent_path().string();
}

}  // namespace emulator
