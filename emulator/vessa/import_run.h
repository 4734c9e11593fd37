#pragma once

#include <functional>
#include <string>
#include <vector>

#include "emulator/vessa/import_board.h"
#include "emulator/vessa/progress_bar.h"
#include "emulator/vessa/session.h"

namespace emulator::tool {

/// Works through many files, in several processes, so that one file that ends its process, or on which the library
/// never returns, does not keep the others from their turn.
class ImportRun {
 public:
  /// Imports a file and returns the number of its elements. Throws what a command throws.
  using ImportFile = std::function<std::uint64_t(Session& session, const std::string& path)>;

  ImportRun(const Settings& settings, std::vector<std::string> paths, ImportFile import_file);

  /// @param jobs  processes at once
  /// @throws ToolError  with the files' exit code, or 1 when they had different ones
  void Run(int jobs);

 private:
  void WorkInTurns(ImportBoard& board) const;
  int Work(ImportBoard& board, CallProgress& progress) const;
  void ImportOne(ImportBoard& board, Session& session, const std::string& path) const;
  void Fail(ImportBoard& board, int code, const std::string& message) const;
  void Summarize(ImportBoard& board) const;

  const Settings& settings_;
  std::vector<std::string> paths_;
  ImportFile import_file_;
  ProgressBar bar_;
};

}  // namespace emulator::tool
