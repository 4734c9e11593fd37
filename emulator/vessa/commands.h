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
std::unique_ptr<Command> MakeCheckCommand();
std::unique_ptr<Command> MakeEventsCommand();
std::unique_ptr<Command> MakeQueryCommand();
std::unique_ptr<Command> MakeItemsCommand();
std::unique_ptr<Command> MakeParseCommand();
std::unique_ptr<Command> MakeCallCommand();
std::unique_ptr<Command> MakeBigHexCommand();
std::unique_ptr<Command> MakeSwapCommand();
std::unique_ptr<Command> MakeImportCommand();
std::unique_ptr<Command> MakeGlobalsCommand();
std::unique_ptr<Command> MakeExportCommand();
std::unique_ptr<Command> MakeConvertCommand();
std::unique_ptr<Command> MakeKillCommand();
std::unique_ptr<Command> MakeDeflateCommand();
std::unique_ptr<Command> MakeInflateCommand();
std::unique_ptr<Command> MakeTraceCommand();
std::unique_ptr<Command> MakeReplayCommand();

}  // namespace emulator::tool
