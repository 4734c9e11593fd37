#include "emulator/vessa/commands.h"

namespace emulator::tool {
namespace {

using Maker = std::unique_ptr<Command> (*)();

constexpr Maker kMakers[] = {
    MakeTableCommand, MakeTagCommand,     MakeCheckCommand,   MakeDumpCommand,   MakeEventsCommand,
    MakeQueryCommand, MakeItemsCommand,   MakeParseCommand,   MakeCallCommand,   MakeBigHexCommand,
    MakeSwapCommand,  MakeImportCommand,  MakeGlobalsCommand, MakeExportCommand, MakeConvertCommand,
    MakeKillCommand,  MakeDeflateCommand, MakeInflateCommand, MakeTraceCommand,  MakeReplayCommand,
};

}  // namespace

std::vector<std::unique_ptr<Command>> AllCommands() {
  std::vector<std::unique_ptr<Command>> commands;
  for (const Maker make : kMakers) commands.push_back(make());
  return commands;
}

}  // namespace emulator::tool
