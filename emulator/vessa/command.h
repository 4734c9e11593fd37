#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <stdexcept>

#include "emulator/vessa/exit_code.h"
#include "emulator/vessa/file_plan.h"
#include "emulator/vessa/session.h"

namespace emulator::tool {

/// One command of the tool: its words on the command line and what it does. It is one piece of work (Run), or one for
/// each of its files (PlanFiles, RunFile).
class Command {
 public:
  virtual ~Command() = default;

  virtual const char* Name() const = 0;
  virtual const char* Summary() const = 0;
  /// Command lines that a reader can try, one a line.
  virtual const char* Examples() const = 0;

  /// Says which arguments it takes.
  virtual void Define(CLI::App& app) = 0;

  /// For a command whose words hold a command line: reads it, once its own words are known. `settings` are what stands
  /// before it, and become what it says.
  virtual void ReadInnerCommand(Settings& /*settings*/) {}

  /// False for a command that needs no library.
  virtual bool CallsLibrary() const { return true; }

  /// Does the work, in a process that may end at any time. Throws ToolError, ReaderGone or, for a failure that has no
  /// words yet, any other exception.
  virtual void Run(Session&) { throw std::logic_error("a command that works through files"); }

  /// The files to work through; nothing for a command that is one piece of work. Throws ToolError.
  virtual std::optional<FilePlan> PlanFiles() { return std::nullopt; }
  /// Works on one of them, as Run does. @return  kDone, or kFindings
  virtual ExitCode RunFile(Session&, FileTask&) { throw std::logic_error("a command without files"); }

  /// Does all of the work in this process, one file after the other up to the first failure. Throws as Run does.
  ExitCode RunHere(Session& session, const std::optional<FilePlan>& plan);

 protected:
  Command() = default;
  Command(const Command&) = default;
  Command& operator=(const Command&) = default;
};

}  // namespace emulator::tool
