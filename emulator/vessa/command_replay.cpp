#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "emulator/replay_host.h"
#include "emulator/vessa/commands.h"
#include "emulator/vessa/exit_code.h"

namespace emulator::tool {
namespace {

std::ifstream OpenRecording(const std::string& path) {
  errno = 0;
  std::ifstream file(std::filesystem::path(std::u8string(path.begin(), path.end())), std::ios::binary);
  file.peek();  // a folder opens, and then cannot be read
  if (file.bad() || (!file && !file.eof())) {
    throw ToolError(kInputUnreadable, fmt::format("{}: {}", path, std::generic_category().message(errno)));
  }
  return file;
}

/// The line around the place where it begins to differ.
std::string Excerpt(const std::string& line, std::size_t difference) {
  constexpr std::size_t kBefore = 60;
  constexpr std::size_t kMost = 160;
  const std::size_t start = difference > kBefore && line.size() > kMost ? difference - kBefore : 0;
  return fmt::format("{}{}{}", start > 0 ? "..." : "", line.substr(start, kMost),
                     line.size() > start + kMost ? "..." : "");
}

std::string DifferenceText(const std::string& path, const ReplayDifference& found) {
  const std::size_t shorter = std::min(found.recorded.size(), found.made.size());
  const auto same = std::mismatch(
      found.made.begin(), found.made.begin() + static_cast<std::ptrdiff_t>(shorter), found.recorded.begin());
  const auto place = static_cast<std::size_t>(same.first - found.made.begin());
  return fmt::format(
      "{}: line {}, in {}: another answer or callback than recorded\n  recorded: {}\n  now:      {}", path,
      found.line, found.call, Excerpt(found.recorded, place), Excerpt(found.made, place));
}

/// Tells the watching process that calls are made and go on.
class ProgressWatcher : public CallWatcher {
 public:
  explicit ProgressWatcher(CallProgress& progress) : progress_(progress) {}
  void OnCall(const CallOut& call) override {
    progress_.NameCall(call.name);
    progress_.EnterLibrary();
  }
  void OnCallback(const Callback& /*callback*/) override {}
  void OnReturn(const CallOut& /*call*/, std::int32_t /*returned*/,
                std::chrono::nanoseconds /*took*/) override {
    progress_.LeaveLibrary();
  }

 private:
  CallProgress& progress_;
};

class ReplayCommand : public Command {
 public:
  const char* Name() const override { return "replay"; }
  const char* Summary() const override {
    return "Make the calls of a recording again, answer as it says, and name the first difference";
  }
  const char* Examples() const override {
    return "vessa replay image.recording\n"
           "vessa replay --library other/VessaDCM.so image.recording";
  }

  void Define(CLI::App& app) override {
    app.add_option("FILE", path_, "A recording, as 'vessa trace -o' writes it")->required();
  }

  void Run(Session& session) override {
    std::ifstream file = OpenRecording(path_);
    session.Progress().NameInput(path_);
    try {
      Replay(session, file);
    } catch (const RecordingError& error) {
      throw ToolError(kInputUnreadable, fmt::format("{}: {}", path_, error.what()));
    }
  }

 private:
  void Replay(Session& session, std::ifstream& file) const {
    ReplayHost host(file);
    Library library = Library::Load(session.TheSettings().library_path, ReplayHost::Table());
    ProgressWatcher watcher(session.Progress());
    library.Watch(&watcher);
    host.OnCallback([&session] { session.Progress().EnterLibrary(); });
    const std::optional<ReplayDifference> difference = host.Play(library);
    if (difference) throw LibraryFailure(DifferenceText(path_, *difference));
    session.Out().WriteLine(
        fmt::format("{} calls with {} callbacks, as recorded", host.Calls(), host.Callbacks()));
  }

  std::string path_;
};

}  // namespace

std::unique_ptr<Command> MakeReplayCommand() { return std::make_unique<ReplayCommand>(); }

}  // namespace emulator::tool
