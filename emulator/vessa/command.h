#pragma once

#include <CLI/CLI.hpp>

#include "emulator/vessa/session.h"

namespace emulator::tool {

/// One command of the tool: its words on the command line and what it does.
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

  /// Does the work, in a process that may end at any time. Throws ToolError, ReaderGone or, for a failure that has no
  /// words yet, any other exception.
  virtual void Run(Session& session) = 0;

 protected:
  Command() = default;
  Command(const Command&) = default;
  Command& operator=(const Command&) = default;
};

}  // namespace emulator::tool
