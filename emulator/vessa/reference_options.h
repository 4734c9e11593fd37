#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

#include "emulator/vessa/exit_code.h"
#include "emulator/vessa/file_plan.h"
#include "emulator/vessa/session.h"

namespace emulator::tool {

/// The property references of a command that asks files for single elements: words behind the file's name, or, where
/// there are many files, options.
class ReferenceOptions {
 public:
  void Define(CLI::App& app, const std::string& description);

  const std::vector<std::string>& References() const { return options_.empty() ? words_ : options_; }
  /// Words behind the first FILE that are files as well. Throws ToolError (kWrongUsage) when there is no reference.
  std::vector<std::string> FileWords() const;
  /// Asks for each of them, whatever became of those before. Failures are reported as they come.
  /// @return  the worst exit code
  ExitCode AskForEach(Session& session, const FileTask& task,
                      const std::function<void(const std::string& reference)>& ask) const;
  /// What comes in front of an answer where there is more than one reference.
  std::string Label(const std::string& reference) const;

 private:
  std::vector<std::string> words_;
  std::vector<std::string> options_;
};

}  // namespace emulator::tool
