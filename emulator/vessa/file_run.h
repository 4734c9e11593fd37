#pragma once

#include <array>
#include <string>

#include "emulator/platform/supervised_process.h"
#include "emulator/vessa/command.h"
#include "emulator/vessa/file_board.h"
#include "emulator/vessa/progress_bar.h"

namespace emulator::tool {

/// Works through many files, in one or more processes, so that a file that ends its process, or on which the library
/// never returns, does not keep the others from their turn.
class FileRun {
 public:
  FileRun(const Settings& settings, Command& command, const FilePlan& plan);

  /// @return  the exit code that all failures have, 1 where they have different ones; findings count only where nothing
  ///          failed
  int Run();

 private:
  struct Block {
    FileBoard board;
    std::array<CallProgress, FilePlan::kMostJobs> workers;
  };

  void WorkInTurns(int worker);
  int Work(int worker);
  int WorkUntilStopped(CallProgress& progress, const OutputTurn& turn);
  int GiveUp(int code, const char* message);
  void WorkOn(Session& session, const InputFile& file);
  void Report(const std::string& message) const;
  void NoteFailure(const InputFile& file, int code, const std::string& message);
  void NoteEnd(int worker, int code);
  int Summarize();
  std::string Totals();
  std::uint64_t BegunBytes() const;

  const Settings& settings_;
  Command& command_;
  const FilePlan& plan_;
  SupervisedProcess process_;
  Block& block_;
  FileBoard& board_;
  ProgressBar bar_;
};

}  // namespace emulator::tool
