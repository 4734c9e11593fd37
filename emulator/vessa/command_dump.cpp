#include <fmt/format.h>

#include <string>
#include <string_view>

#include "emulator/path_text.h"
#include "emulator/platform/standard_streams.h"
#include "emulator/vessa/commands.h"
#include "emulator/vessa/dictionary.h"
#include "emulator/vessa/file_prediction.h"
#include "emulator/vessa/file_title.h"
#include "emulator/vessa/json_model.h"
#include "emulator/vessa/null_sink.h"
#include "emulator/vessa/tree_printer.h"

namespace emulator::tool {
namespace {

/// An item's tag in the place of an element's, which ends a call at once.
constexpr std::string_view kItemInWrongPlace("\xFE\xFF\x00\xE0\0\0\0\0", 8);

class DumpCommand : public Command {
 public:
  const char* Name() const override { return "dump"; }
  const char* Summary() const override {
    return "Show what the library reads in files, as a tree or as DICOM JSON";
  }
  const char* Examples() const override {
    return "vessa dump image.dcm\n"
           "vessa dump --offsets --until StudyID image.dcm\n"
           "vessa dump --json image.dcm | python3 -m json.tool\n"
           "vessa dump --json --bulk values image.dcm\n"
           "vessa dump -r --keep-going study\n"
           "vessa dump --syntax implicit data_set_without_meta_group.bin";
  }

  void Define(CLI::App& app) override {
    file_.Define(app);
    auto* const json =
        app.add_flag("--json", is_json_,
                     "Print the data set in the DICOM JSON model (PS3.18 annex F), without group 0002");
    app.add_option("--bulk", bulk_path_,
                   "With --json: write values of bytes to files in this folder; BulkDataURI names them")
        ->needs(json);
    app.add_option("--until", until_, "Stop behind the element of the data set with this tag or keyword");
    app.add_flag(
        "--keep-going", keeps_going_,
        "Print what can be read of a damaged data set, in JSON as well, and then the error; never wait");
    app.add_flag("--offsets", has_offsets_,
                 "Begin lines of the tree with the offset of the element in the file")
        ->excludes(json);
    app.add_flag("--hex", is_hex_, "Show values in hexadecimal")->excludes(json);
    app.add_option("--width", columns_,
                   "Cut lines of the tree to so many columns; 0 for no cut "
                   "[the terminal's width, no cut elsewhere]");
  }

  std::optional<FilePlan> PlanFiles() override {
    FilePlan plan = file_.Plan();
    if (!bulk_path_.empty() && plan.files.size() > 1)
      throw ToolError(kWrongUsage, "--bulk takes the values of one file");
    return plan;
  }

  ExitCode RunFile(Session& session, FileTask& task) override {
    Dictionary dictionary(session);
    StopRule stop;
    if (!until_.empty())
      stop = [last = dictionary.TagNamed(until_)](std::uint32_t tag) { return tag > last; };
    const std::string waiting = keeps_going_ ? PlaceOfEndlessWait(session, task.path) : std::string();
    const DicomFile file =
        file_.Open(task.path, std::string(waiting.empty() ? std::string_view() : kItemInWrongPlace));
    if (task.is_named && !is_json_) PrintFileName(session.Out(), task.path, false);
    try {
      if (is_json_) {
        PrintJson(session, file, stop);
      } else {
        PrintTree(session, file, stop);
      }
    } catch (const LibraryFailure&) {
      if (waiting.empty()) throw;
      throw LibraryFailure(
          fmt::format("{}: the data set ends inside an item of defined length, where a call does "
                      "not return\n  at {}",
                      task.path, waiting));
    }
    return kDone;
  }

 private:
  /// Where the library would wait for more data and never return; empty for a file on which it returns.
  std::string PlaceOfEndlessWait(Session& session, const std::string& path) const {
    const Prediction prediction = PredictFile(session, file_, path, false).prediction;
    if (prediction.outcome != Prediction::Outcome::kDoesNotReturn) return {};
    return emulator::PlaceText(prediction.offset, prediction.is_at_end, prediction.path);
  }

  void PrintJson(Session& session, const DicomFile& file, const StopRule& stop) const {
    std::optional<BulkFolder> bulk;
    if (!bulk_path_.empty()) bulk.emplace(bulk_path_);
    JsonModel model(session.Out(), bulk ? &*bulk : nullptr);
    model.Begin();
    try {
      file.DecomposeInto(session, model, stop);
    } catch (const LibraryFailure&) {
      if (!keeps_going_) throw;
      model.CloseAll();
      model.Finish();
      throw;
    }
    model.Finish();
    if (model.UnreadTexts() == 0) return;
    WriteError(fmt::format(
        "vessa: {}: {} values hold bytes that their character set does not know; U+FFFD stands for them",
        file.Path(), model.UnreadTexts()));
  }

  void PrintTree(Session& session, const DicomFile& file, const StopRule& stop) const {
    Dictionary dictionary(session);
    const auto look_up = [&dictionary](std::uint32_t tag) { return dictionary.Find(tag); };
    const std::size_t columns = columns_.value_or(TerminalColumns(StandardStream::kOutput));
    TreePrinter printer(session.Out(), {Style::For(session.TheSettings().colour), columns, look_up,
                                        has_offsets_, is_hex_, file.FirstElementOffset()});
    try {
      file.DecomposeInto(session, printer, stop);
    } catch (const LibraryFailure&) {
      printer.Finish();
      // The library names the step of its latest call. That was a look-up of a keyword, made during an event; a second
      // run without look-ups fails alike and names the true one.
      NullSink no_look_ups;
      file.DecomposeInto(session, no_look_ups, stop);
      throw;
    }
  }

  FileOptions file_;
  bool is_json_ = false;
  bool keeps_going_ = false;
  bool has_offsets_ = false;
  bool is_hex_ = false;
  std::string bulk_path_;
  std::string until_;
  std::optional<std::size_t> columns_;
};

}  // namespace

std::unique_ptr<Command> MakeDumpCommand() { return std::make_unique<DumpCommand>(); }

}  // namespace emulator::tool
