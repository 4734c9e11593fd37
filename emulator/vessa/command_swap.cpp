#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

#include "emulator/vessa/commands.h"

namespace emulator::tool {
namespace {

/// The largest block that holds whole units only, so that no unit is torn between two calls.
std::size_t BlockBytes(std::int32_t unit_bytes) {
  constexpr std::size_t kMost = vessa::HostString::kCapacity;
  if (unit_bytes < 1 || static_cast<std::size_t>(unit_bytes) > kMost) return kMost;
  return kMost - kMost % static_cast<std::size_t>(unit_bytes);
}

class SwapCommand : public Command {
 public:
  const char* Name() const override { return "swap"; }
  const char* Summary() const override {
    return "Reverse the byte order of units of 1, 2, 4 or 8 bytes, from standard input to standard output";
  }
  const char* Examples() const override { return "vessa swap 2 < big_endian.raw > little_endian.raw"; }

  void Define(CLI::App& app) override { app.add_option("SIZE", unit_bytes_, "Bytes of a unit")->required(); }

  void Run(Session& session) override {
    const auto buffer = std::make_unique<vessa::HostString>();
    const std::size_t block_bytes = BlockBytes(unit_bytes_);
    do {
      *buffer = {};  // a last unit that is cut short takes in what stands behind it: zeros
      const std::size_t count = std::fread(buffer->bytes, 1, block_bytes, stdin);
      if (std::ferror(stdin) != 0) {
        throw ToolError(kInputUnreadable, fmt::format("standard input cannot be read: {}",
                                                      std::generic_category().message(errno)));
      }
      buffer->count = static_cast<std::uint16_t>(count);
      session.Call("zfSwitchByteOrdering", *buffer, unit_bytes_);
      session.Out().Write(Contents(*buffer));
    } while (std::feof(stdin) == 0);
  }

 private:
  std::int32_t unit_bytes_ = 0;
};

}  // namespace

std::unique_ptr<Command> MakeSwapCommand() { return std::make_unique<SwapCommand>(); }

}  // namespace emulator::tool
