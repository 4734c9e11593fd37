#include <fmt/format.h>

#include "emulator/vessa/commands.h"

namespace emulator::tool {
namespace {

class BigHexCommand : public Command {
 public:
  const char* Name() const override { return "bighex"; }
  const char* Summary() const override {
    return "Convert a hexadecimal number of up to 64 decimal digits to decimal";
  }
  const char* Examples() const override { return "vessa bighex FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF"; }

  void Define(CLI::App& app) override {
    app.add_option("HEX", hexadecimal_, "The number, without a prefix")->required();
  }

  void Run(Session& session) override {
    if (hexadecimal_.size() > vessa::HostString::kCapacity) {
      throw ToolError(kWrongUsage, fmt::format("more than {} digits", vessa::HostString::kCapacity));
    }
    const auto buffer = std::make_unique<vessa::HostString>();
    Fill(*buffer, hexadecimal_);
    session.Call("zfBigHexToDecimal", *buffer);
    session.Out().WriteLine(Contents(*buffer));
  }

 private:
  std::string hexadecimal_;
};

}  // namespace

std::unique_ptr<Command> MakeBigHexCommand() { return std::make_unique<BigHexCommand>(); }

}  // namespace emulator::tool
