#include "emulator/vessa/command_line.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <sstream>
#include <system_error>
#include <utility>

#include "emulator/platform/standard_streams.h"
#include "emulator/platform/supervised_process.h"
#include "emulator/vessa/command_description.h"
#include "emulator/vessa/commands.h"
#include "emulator/vessa/library_file.h"

namespace emulator::tool {
namespace {

constexpr const char* kDescription =
    "Runs the VessaDCM call-out library in a stand-in host, on files.\n"
    "\n"
    "Results go to standard output, all else to standard error. Exit codes: 0 done; 1 the library answered "
    "with a\n"
    "failure; 2 wrong usage; 3 input not readable; 4 output not writable; 5 a check found something; 124 a "
    "call did not\n"
    "return in time; 125 the library crashed.";

constexpr const char* kExamples =
    "Examples:\n"
    "  vessa dump image.dcm\n"
    "  vessa tag PatientName\n"
    "  vessa dump --help";

/// The tool's version, and below it the library's own.
std::string VersionText(const std::string& library_path) {
  const std::string identification = LibraryIdentification(library_path);
  return fmt::format("vessa {}\n{}: {}", VESSA_VERSION, library_path,
                     identification.empty() ? "does not say what it is" : identification);
}

std::string ExamplesText(std::string_view lines) {
  std::string text = lines.find('\n') == std::string_view::npos ? "Example:\n  " : "Examples:\n  ";
  for (const char letter : lines) {
    text += letter;
    if (letter == '\n') text += "  ";
  }
  return text;
}

int PrintHelp(const std::string& text) {
  const bool is_written =
      std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
  if (is_written || errno == EPIPE) return kDone;
  WriteError(
      fmt::format("vessa: standard output cannot be written: {}", std::generic_category().message(errno)));
  return kOutputUnwritable;
}

}  // namespace

CommandLine::CommandLine() : CommandLine(Settings{DefaultLibraryPath(), Settings::kTimeoutSeconds, {}}) {}

CommandLine::CommandLine(Settings settings)
    : app_(kDescription, "vessa"), settings_(std::move(settings)), commands_(AllCommands()) {
  app_.footer(kExamples);
  app_.require_subcommand(1);
  app_.fallthrough();
  app_.allow_windows_style_options(false);  // a path may begin with a slash
  DefineSettings();
  DefineCommands();
}

void CommandLine::DefineSettings() {
  app_.add_option("--library", settings_.library_path, "Library to load [the one beside this program]");
  app_.add_option("--timeout", settings_.timeout_seconds,
                  "Seconds that a call may go on without calling the host back; 0 for no limit")
      ->check(CLI::NonNegativeNumber)
      ->capture_default_str();
  app_.add_flag_callback(
      "--color", [this] { settings_.colour = true; }, "Colours, also where no terminal is");
  app_.add_flag_callback(
      "--no-color", [this] { settings_.colour = false; },
      "No colours, as if the environment variable NO_COLOR were set");
  app_.add_option(SupervisedProcess::kSupervisedFlag, supervised_)->group("");
  // Behind --library, which it tells of.
  app_.set_version_flag(
      "--version", [this] { return VersionText(settings_.library_path); },
      "Print the version of this program and that of the library, and exit");
  app_.add_flag_callback("--describe", [this] { throw CLI::CallForVersion(DescribeCommands(app_), kDone); })
      ->group("");
}

void CommandLine::DefineCommands() {
  for (const auto& command : commands_) {
    CLI::App* const words = app_.add_subcommand(command->Name(), command->Summary());
    words->footer(ExamplesText(command->Examples()));
    command->Define(*words);
  }
}

void CommandLine::Parse(std::vector<std::string> arguments) {
  std::reverse(arguments.begin(), arguments.end());  // the parser takes them from the back
  app_.parse(std::move(arguments));
  ChosenCommand().ReadInnerCommand(settings_);
}

int CommandLine::Answer(const CLI::ParseError& error) const {
  if (const auto* answered = dynamic_cast<const CLI::RuntimeError*>(&error)) return answered->get_exit_code();
  std::ostringstream help;
  std::ostringstream explanation;
  if (app_.exit(error, help, explanation) == 0) return PrintHelp(help.str());
  WriteError("vessa: " + explanation.str().substr(0, explanation.str().find_last_not_of('\n') + 1));
  return kWrongUsage;
}

Command& CommandLine::ChosenCommand() const {
  const auto is_chosen = [this](const std::unique_ptr<Command>& command) {
    return app_.got_subcommand(command->Name());
  };
  return **std::find_if(commands_.begin(), commands_.end(), is_chosen);
}

}  // namespace emulator::tool
