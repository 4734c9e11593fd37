#include "emulator/vessa/output.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <system_error>

#include "emulator/vessa/exit_code.h"

namespace emulator::tool {
namespace {

[[noreturn]] void ThrowWriteError(int error) {
  if (error == EPIPE) throw ReaderGone();
  throw ToolError(kOutputUnwritable, fmt::format("standard output cannot be written: {}",
                                                 std::generic_category().message(error)));
}

}  // namespace

void Output::Write(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t filled = progress_.output_filled;
    const std::size_t taken = std::min(bytes.size(), CallProgress::kOutputBytes - filled);
    std::copy_n(bytes.data(), taken, progress_.output.data() + filled);
    progress_.output_filled = static_cast<std::uint32_t>(filled + taken);
    bytes.remove_prefix(taken);
    if (progress_.output_filled == CallProgress::kOutputBytes) Flush();
  }
}

void Output::WriteLine(std::string_view line) {
  Write(line);
  Write("\n");
}

void Output::Flush() {
  const std::size_t filled = std::min<std::size_t>(progress_.output_filled, CallProgress::kOutputBytes);
  if (filled == 0) return;
  turn_.Take();
  progress_.output_filled = 0;
  errno = 0;
  const bool written =
      std::fwrite(progress_.output.data(), 1, filled, stdout) == filled && std::fflush(stdout) == 0;
  if (written) return;
  has_failed_ = true;
  ThrowWriteError(errno);
}

void WriteError(std::string_view line) {
  static_cast<void>(std::fwrite(line.data(), 1, line.size(), stderr));
  static_cast<void>(std::fputc('\n', stderr));
}

void WriteFailure(std::string_view message) { WriteError(fmt::format("vessa: {}", message)); }

}  // namespace emulator::tool
