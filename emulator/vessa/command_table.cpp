#include <fmt/format.h>

#include "emulator/vessa/commands.h"

namespace emulator::tool {
namespace {

class TableCommand : public Command {
 public:
  const char* Name() const override { return "table"; }
  const char* Summary() const override {
    return "List the library's call-out table: row, name, argument types";
  }
  const char* Examples() const override { return "vessa table"; }

  void Define(CLI::App&) override {}

  void Run(Session& session) override {
    int number = 0;
    for (const vessa::CallOutRow* row = session.TheLibrary().Table(); row->name != nullptr; ++row) {
      session.Out().WriteLine(fmt::format("{:2}  {:<34}  {}", number++, row->name, row->argument_types));
    }
  }
};

}  // namespace

std::unique_ptr<Command> MakeTableCommand() { return std::make_unique<TableCommand>(); }

}  // namespace emulator::tool
