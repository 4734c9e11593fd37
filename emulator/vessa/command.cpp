#include "emulator/vessa/command.h"

namespace emulator::tool {

ExitCode Command::RunHere(Session& session, const std::optional<FilePlan>& plan) {
  if (!plan) {
    Run(session);
    return kDone;
  }
  ExitCode found = kDone;
  for (const InputFile& file : plan->files) {
    if (!file.problem.empty()) throw ToolError(kInputUnreadable, file.path + ": " + file.problem);
    FileTask task{file.path, plan->names_files, WriteFailure};
    const ExitCode code = RunFile(session, task);
    if (code != kDone) found = code;
  }
  return found;
}

}  // namespace emulator::tool
