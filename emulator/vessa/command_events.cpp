#include "emulator/vessa/commands.h"
#include "emulator/vessa/dictionary.h"
#include "emulator/vessa/event_printer.h"
#include "emulator/vessa/file_options.h"
#include "emulator/vessa/file_title.h"

namespace emulator::tool {
namespace {

class EventsCommand : public Command {
 public:
  const char* Name() const override { return "events"; }
  const char* Summary() const override {
    return "Print every call that the library makes to a content handler";
  }
  const char* Examples() const override {
    return "vessa events image.dcm\n"
           "vessa events --stop-at PixelData image.dcm\n"
           "vessa events --json image.dcm | grep StartElement\n"
           "vessa events -r study";
  }

  void Define(CLI::App& app) override {
    file_.Define(app);
    app.add_flag("--json", is_json_, "Print each call as a JSON object in a line, with all bytes");
    app.add_flag("--full", shows_all_bytes_, "Print all bytes of each chunk, not its first 32");
    app.add_option("--stop-at", stop_at_,
                   "Pass a client object that stops at the first element of the data set "
                   "with this tag (or keyword) or a higher one");
    app.add_flag(
        "--simple-frames", has_simple_frames_,
        "Set ^KevDICOM.Debug(\"simplepixeldataframes\"), so that the end of the fragments is not marked");
  }

  std::optional<FilePlan> PlanFiles() override { return file_.Plan(); }

  ExitCode RunFile(Session& session, FileTask& task) override {
    const DicomFile file = file_.Open(task.path);
    if (task.is_named) PrintFileName(session.Out(), task.path, is_json_);
    if (has_simple_frames_) {
      session.TheHost().globals().Set("KevDICOM.Debug", {std::string("simplepixeldataframes")},
                                      std::int64_t{1});
    }
    StopRule stop;
    if (!stop_at_.empty()) {
      stop = [last = Dictionary(session).TagNamed(stop_at_)](std::uint32_t tag) { return tag >= last; };
    }
    if (is_json_) {
      EventJsonPrinter printer(session.Out());
      file.DecomposeInto(session, printer, stop);
    } else {
      EventTextPrinter printer(session.Out(), shows_all_bytes_);
      file.DecomposeInto(session, printer, stop);
    }
    return kDone;
  }

 private:
  FileOptions file_;
  bool is_json_ = false;
  bool shows_all_bytes_ = false;
  bool has_simple_frames_ = false;
  std::string stop_at_;
};

}  // namespace

std::unique_ptr<Command> MakeEventsCommand() { return std::make_unique<EventsCommand>(); }

}  // namespace emulator::tool
