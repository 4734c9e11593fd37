#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "emulator/vessa/command.h"

namespace emulator::tool {

/// The tool's words on the command line: the options of all commands, and the commands.
class CommandLine {
 public:
  CommandLine();
  /// One inside another command line, which says what holds unless this one says otherwise.
  explicit CommandLine(Settings settings);

  /// Throws CLI::ParseError, which stands for a request for help as well; Answer tells them apart.
  void Parse(std::vector<std::string> arguments);

  /// Prints what a ParseError asks for, help or an explanation, and returns the exit code.
  int Answer(const CLI::ParseError& error) const;

  /// Of a command line that was parsed.
  Command& ChosenCommand() const;
  const Settings& TheSettings() const { return settings_; }

 private:
  void DefineSettings();
  void DefineCommands();

  CLI::App app_;
  Settings settings_;
  std::string supervised_;  ///< accepted and not used, see SupervisedProcess::kSupervisedFlag
  std::vector<std::unique_ptr<Command>> commands_;
};

}  // namespace emulator::tool
