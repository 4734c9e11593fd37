#include <fmt/format.h>

#include <exception>
#include <optional>

#include "emulator/recording_writer.h"
#include "emulator/vessa/command_line.h"
#include "emulator/vessa/commands.h"
#include "emulator/vessa/fault_words.h"
#include "emulator/vessa/output_file.h"
#include "emulator/vessa/trace_printer.h"
#include "emulator/vessa/trace_summary.h"

namespace emulator::tool {
namespace {

/// Tells several watchers.
class Watchers : public CallWatcher {
 public:
  void Add(CallWatcher& watcher) { watchers_.push_back(&watcher); }
  void OnCall(const CallOut& call) override {
    for (CallWatcher* const watcher : watchers_) watcher->OnCall(call);
  }
  void OnCallback(const Callback& callback) override {
    for (CallWatcher* const watcher : watchers_) watcher->OnCallback(callback);
  }
  void OnReturn(const CallOut& call, std::int32_t returned, std::chrono::nanoseconds took) override {
    for (CallWatcher* const watcher : watchers_) watcher->OnReturn(call, returned, took);
  }

 private:
  std::vector<CallWatcher*> watchers_;
};

/// A recording on its way into a file. What has been recorded can be read at once: the next call may end the process.
class RecordingFile {
 public:
  explicit RecordingFile(const std::string& path)
      : file_(path), writer_([this](std::string_view text) {
          file_.Write(text);
          file_.Flush();
        }) {}

  RecordingWriter& Writer() { return writer_; }
  void Finish() {
    writer_.Finish();
    file_.Finish();
  }

 private:
  OutputFile file_;
  RecordingWriter writer_;
};

class UsageWithCommand : public CLI::Formatter {
 public:
  std::string make_usage(const CLI::App* app, std::string name) const override {
    const std::string usage = Formatter::make_usage(app, std::move(name));
    return usage.substr(0, usage.find('\n')) + " COMMAND ...\n";
  }
};

class TraceCommand : public Command {
 public:
  const char* Name() const override { return "trace"; }
  const char* Summary() const override {
    return "Run a command and show each call of the library and each of its callbacks";
  }
  const char* Examples() const override {
    return "vessa trace dump image.dcm\n"
           "vessa trace -c dump image.dcm\n"
           "vessa trace -o image.recording dump image.dcm\n"
           "vessa trace --inject Peek:error=-3:when=2+ dump image.dcm";
  }

  void Define(CLI::App& app) override {
    app_ = &app;
    app.formatter(std::make_shared<UsageWithCommand>());
    app.fallthrough(false);
    app.prefix_command();
    app.add_flag("-c,--count", counts_, "Print a summary at the end in place of the lines");
    app.add_option(
           "-o,--output", recording_path_,
           "Write a recording for 'vessa replay' into this file, in place of the lines. It holds all bytes "
           "that pass, so what is private in the input is private in it. When the library ends the process, "
           "what it did so far stays in FILE.unfinished, or FILE.unfinished2 where that is taken")
        ->type_name("FILE");
    faults_.Define(app);
  }

  void ReadInnerCommand(Settings& settings) override {
    inner_ = std::make_unique<CommandLine>(settings);
    try {
      inner_->Parse(app_->remaining());
    } catch (const CLI::ParseError& error) {
      throw CLI::RuntimeError(inner_->Answer(error));
    }
    settings = inner_->TheSettings();
  }

  void Run(Session& session) override {
    TracePrinter printer;
    TraceSummary summary;
    std::optional<RecordingFile> recording;
    Watchers watchers;
    if (!recording_path_.empty()) watchers.Add(recording.emplace(recording_path_).Writer());
    if (counts_) watchers.Add(summary);
    if (!counts_ && !recording) watchers.Add(printer);
    faults_.AddTo(session.TheHost().faults());
    session.Watch(watchers);
    const auto finish = [&] {
      if (recording) recording->Finish();
      if (counts_) summary.Print();
    };
    ExitCode code = kDone;
    try {
      code = inner_->ChosenCommand().RunHere(session, inner_->ChosenCommand().PlanFiles());
    } catch (const std::exception&) {
      session.Out().Flush();
      finish();
      throw;
    }
    session.Out().Flush();
    finish();
    if (code != kDone) throw ToolError(code, "the command that was traced has failed, or found something");
  }

 private:
  CLI::App* app_ = nullptr;
  std::unique_ptr<CommandLine> inner_;
  FaultWords faults_;
  std::string recording_path_;
  bool counts_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeTraceCommand() { return std::make_unique<TraceCommand>(); }

}  // namespace emulator::tool
