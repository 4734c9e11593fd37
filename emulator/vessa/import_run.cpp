#include "emulator/vessa/import_run.h"

#include <fmt/format.h>

#include "emulator/platform/parallel_processes.h"
#include "emulator/platform/supervised_process.h"
#include "emulator/vessa/call_supervisor.h"

namespace emulator::tool {

ImportRun::ImportRun(const Settings& settings, std::vector<std::string> paths, ImportFile import_file)
    : settings_(settings),
      paths_(std::move(paths)),
      import_file_(std::move(import_file)),
      bar_(paths_.size()) {}

void ImportRun::Run(int jobs) {
  const SupervisedProcess shared(sizeof(ImportBoard));
  ImportBoard& board = *static_cast<ImportBoard*>(shared.SharedBlock());
  if (jobs == 1) {
    WorkInTurns(board);
  } else {
    RunInProcesses(jobs, [&](int) { WorkInTurns(board); });
  }
  Summarize(board);
}

/// Starts a process that works until all files are done; another one when it ends too early.
void ImportRun::WorkInTurns(ImportBoard& board) const {
  int code = 0;
  do {
    code =
        Supervise(settings_.timeout_seconds, [&](CallProgress& progress) { return Work(board, progress); });
    if (code != kDone) Fail(board, code, "");
  } while (code == kCallTimedOut || code == kLibraryCrashed);
}

int ImportRun::Work(ImportBoard& board, CallProgress& progress) const {
  try {
    Session session(settings_, progress);
    for (std::uint64_t index = board.Take(); index < paths_.size(); index = board.Take()) {
      ImportOne(board, session, paths_[index]);
      session.Out().Flush();
      bar_.Show(board.Done(), board.failed);
    }
    return kDone;
  } catch (const ReaderGone&) {
    return kDone;
  } catch (const ToolError& error) {
    WriteError(fmt::format("vessa: {}", error.what()));
    return error.Code();
  } catch (const std::exception& error) {
    WriteError(fmt::format("vessa: {}", error.what()));
    return kToolFailed;
  }
}

void ImportRun::ImportOne(ImportBoard& board, Session& session, const std::string& path) const {
  try {
    board.NoteImport(import_file_(session, path));
  } catch (const ToolError& error) {
    Fail(board, error.Code(), error.what());
  } catch (const std::bad_alloc&) {
    Fail(board, kToolFailed, path + ": out of memory");
  }
}

/// An empty message has been told already.
void ImportRun::Fail(ImportBoard& board, int code, const std::string& message) const {
  bar_.Clear();
  if (!message.empty()) WriteError(fmt::format("vessa: {}", message));
  board.NoteFailure(code);
}

void ImportRun::Summarize(ImportBoard& board) const {
  bar_.Clear();
  const std::string summary =
      fmt::format("imported {} of {} files with {} elements", board.imported, paths_.size(), board.elements);
  if (board.failed > 0) {
    const auto code = board.codes_vary != 0 ? kLibraryFailed : static_cast<ExitCode>(board.exit_code);
    throw ToolError(code, summary + fmt::format("; {} failed", board.failed));
  }
  if (paths_.size() > 1) WriteError(summary);
}

}  // namespace emulator::tool
