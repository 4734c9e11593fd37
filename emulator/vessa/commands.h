#pragma once

#include <memory>
#include <vector>

#include "emulator/vessa/command.h"

namespace emulator::tool {

/// All commands, in the order of the help text.
std::vector<std::unique_ptr<Command>> AllCommands();

// Each in a file of its own.
std::unique_ptr<Command> MakeTableCommand();
std::unique_ptr<Command> MakeTagCommand();
std::unique_ptr<Command> MakeDumpCommand();
std::unique_ptr<Command> MakeEventsCommand();
std::unique_ptr<Command> MakeCallCommand();
std::unique_ptr<Command> MakeBigHexCommand();
std::unique_ptr<Command> MakeSwapCommand();

}  // namespace emulator::tool
