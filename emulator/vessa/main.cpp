#include <exception>

#include "emulator/platform/standard_streams.h"
#include "emulator/vessa/call_supervisor.h"
#include "emulator/vessa/command_line.h"
#include "emulator/vessa/file_run.h"

namespace emulator::tool {
namespace {

/// Hands out what was printed before a failure. The failure is what the exit code will tell, whatever happens here.
void FlushQuietly(CallProgress& progress) {
  try {
    Output(progress).Flush();
  } catch (const std::exception&) {
    return;
  }
}

int Fail(CallProgress& progress, ExitCode code, const char* message) {
  FlushQuietly(progress);
  WriteFailure(message);
  return code;
}

/// In the process that may end at any time.
int RunCommand(const Settings& settings, Command& command, const std::optional<FilePlan>& plan,
               CallProgress& progress) {
  try {
    Session session(settings, progress);
    if (command.CallsLibrary()) session.LoadLibrary();
    const int code = command.RunHere(session, plan);
    session.Out().Flush();
    return code;
  } catch (const ReaderGone&) {
    return kDone;
  } catch (const ToolError& error) {
    return Fail(progress, error.Code(), error.what());
  } catch (const std::exception& error) {
    return Fail(progress, kToolFailed, error.what());
  }
}

int RunTool(int argc, const char* const* argv) {
  CommandLine command_line;
  try {
    command_line.Parse(ProgramArguments(argc, argv));
  } catch (const CLI::ParseError& error) {
    return command_line.Answer(error);
  }
  const Settings& settings = command_line.TheSettings();
  Command& command = command_line.ChosenCommand();
  const std::optional<FilePlan> plan = command.PlanFiles();
  if (plan && plan->files.size() > 1) return FileRun(settings, command, *plan).Run();
  return Supervise(settings.timeout_seconds,
                   [&](CallProgress& progress) { return RunCommand(settings, command, plan, progress); });
}

}  // namespace
}  // namespace emulator::tool

int main(int argc, char** argv) {
  try {
    emulator::PrepareStandardStreams();
    return emulator::tool::RunTool(argc, argv);
  } catch (const emulator::tool::ToolError& error) {
    emulator::tool::WriteFailure(error.what());
    return error.Code();
  } catch (const std::exception& error) {
    emulator::tool::WriteFailure(error.what());
    return emulator::tool::kToolFailed;
  }
}
