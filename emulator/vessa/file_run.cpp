#include "emulator/vessa/file_run.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>

#include "emulator/platform/parallel_processes.h"
#include "emulator/vessa/call_supervisor.h"

namespace emulator::tool {
namespace {

std::uint64_t BytesOf(const std::vector<InputFile>& files) {
  return std::accumulate(files.begin(), files.end(), std::uint64_t{0},
                         [](std::uint64_t sum, const InputFile& file) { return sum + file.bytes; });
}

/// What became of files, by exit code.
struct Outcome {
  int code;
  const char* words;
};

constexpr Outcome kFailures[] = {
    {kLibraryFailed, "in the library"}, {kWrongUsage, "without a transfer syntax or name"},
    {kInputUnreadable, "unreadable"},   {kOutputUnwritable, "unwritable"},
    {kToolFailed, "in the tool"},       {kCallTimedOut, "without return"},
    {kLibraryCrashed, "with a crash"},
};

}  // namespace

FileRun::FileRun(const Settings& settings, Command& command, const FilePlan& plan)
    : settings_(settings),
      command_(command),
      plan_(plan),
      process_(sizeof(Block)),
      block_(*static_cast<Block*>(process_.SharedBlock())),
      board_(block_.board),
      bar_(board_, plan.files.size(), BytesOf(plan.files)) {}

int FileRun::Run() {
  const int jobs = static_cast<int>(std::min(static_cast<std::size_t>(plan_.jobs), plan_.files.size()));
  if (jobs == 1 || !CanRunInParallel()) {
    WorkInTurns(0);
  } else {
    RunInProcesses(jobs, [this](int worker) { WorkInTurns(worker); });
  }
  return Summarize();
}

/// Starts a process that works until all files are done; another one when it ends too early.
void FileRun::WorkInTurns(int worker) {
  CallProgress& progress = block_.workers.at(static_cast<std::size_t>(worker));
  const OutputTurn turn(board_, static_cast<std::uint32_t>(worker) + 1);
  const Supervision supervision{process_,
                                progress,
                                settings_.timeout_seconds,
                                turn,
                                [this] { bar_.Show(BegunBytes(), false); },
                                [this] { bar_.Clear(); }};
  for (bool goes_on = true; goes_on;) {
    const int code = Supervise(supervision, [this, worker] { return Work(worker); });
    goes_on = (code == kCallTimedOut || code == kLibraryCrashed) && progress.file_number > 0;
    if (code != kDone) NoteEnd(worker, code);
    progress = {};
  }
}

/// In the process that may end at any time.
int FileRun::Work(int worker) {
  const OutputTurn turn(board_, static_cast<std::uint32_t>(worker) + 1);
  const int code = WorkUntilStopped(block_.workers.at(static_cast<std::size_t>(worker)), turn);
  turn.Release();  // whatever happened: others wait for it
  return code;
}

int FileRun::WorkUntilStopped(CallProgress& progress, const OutputTurn& turn) {
  try {
    Session session(settings_, progress, turn);
    session.LoadLibrary();
    while (!board_.IsStopped()) {
      const std::uint64_t index = board_.Take();
      if (index >= plan_.files.size()) break;
      progress.file_number = index + 1;
      WorkOn(session, plan_.files[index]);
      session.Out().Flush();
      turn.Release();
      progress.file_number = 0;
      bar_.Show(0, index < 3);
    }
    return kDone;
  } catch (const ReaderGone&) {
    std::atomic_ref(board_.reader_is_gone).store(1);
    board_.Stop();
    return kDone;
  } catch (const ToolError& error) {
    return GiveUp(error.Code(), error.what());
  } catch (const std::exception& error) {
    return GiveUp(kToolFailed, error.what());
  }
}

/// For what is wrong with all files; told by the first process that meets it.
int FileRun::GiveUp(int code, const char* message) {
  if (board_.Stop()) Report(message);
  return code;
}

void FileRun::WorkOn(Session& session, const InputFile& file) {
  FileTask task{file.path, plan_.names_files, [this](const std::string& message) { Report(message); }};
  try {
    if (!file.problem.empty()) throw ToolError(kInputUnreadable, file.path + ": " + file.problem);
    const ExitCode code = command_.RunFile(session, task);
    board_.NoteFile(code, file.bytes, task.units);
    if (code != kDone && plan_.stops_at_failure) board_.Stop();
  } catch (const ReaderGone&) {
    throw;
  } catch (const ToolError& error) {
    if (session.Out().HasFailed()) throw;
    session.Out().Flush();
    NoteFailure(file, error.Code(), error.what());
  } catch (const std::exception& error) {
    NoteFailure(file, kToolFailed, file.path + ": " + error.what());
  }
}

void FileRun::Report(const std::string& message) const {
  bar_.Clear();
  WriteFailure(message);
}

void FileRun::NoteFailure(const InputFile& file, int code, const std::string& message) {
  Report(message);
  board_.NoteFile(code, file.bytes, 0);
  if (plan_.stops_at_failure) board_.Stop();
}

/// For a process that did not come to the end of the files; the reason has been told.
void FileRun::NoteEnd(int worker, int code) {
  const std::uint64_t number = block_.workers.at(static_cast<std::size_t>(worker)).file_number;
  board_.NoteFile(code, number == 0 ? 0 : plan_.files[number - 1].bytes, 0);
  if (number == 0 || plan_.stops_at_failure) board_.Stop();
}

std::uint64_t FileRun::BegunBytes() const {
  return std::accumulate(block_.workers.begin(), block_.workers.end(), std::uint64_t{0},
                         [](std::uint64_t sum, const CallProgress& worker) {
                           return worker.file_number == 0 ? sum : sum + worker.stream_offset;
                         });
}

int FileRun::Summarize() {
  bar_.Clear();
  if (board_.reader_is_gone != 0) return kDone;
  WriteError(Totals());
  int found = board_.FilesWith(kFindings) > 0 ? kFindings : kDone;
  for (const Outcome& outcome : kFailures) {
    if (board_.FilesWith(outcome.code) == 0) continue;
    found = found == kDone || found == kFindings ? outcome.code : kLibraryFailed;
  }
  return found;
}

std::string FileRun::Totals() {
  const std::uint64_t fine = board_.FilesWith(kDone) + board_.FilesWith(kFindings);
  std::string text = fmt::format("{} {} of {} files", plan_.done_word, fine, plan_.files.size());
  if (*plan_.unit_word != '\0') text += fmt::format(" with {} {}", board_.units, plan_.unit_word);
  if (board_.FilesWith(kFindings) > 0) text += fmt::format(", {} with findings", board_.FilesWith(kFindings));
  if (board_.finished > fine) text += fmt::format("; {} failed", board_.finished - fine);
  const char* separator = ": ";
  for (const Outcome& outcome : kFailures) {
    if (board_.FilesWith(outcome.code) == 0) continue;
    text += fmt::format("{}{} {}", separator, board_.FilesWith(outcome.code), outcome.words);
    separator = ", ";
  }
  return text;
}

}  // namespace emulator::tool
