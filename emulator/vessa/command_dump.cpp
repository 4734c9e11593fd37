#include <fmt/format.h>

#include "emulator/platform/standard_streams.h"
#include "emulator/vessa/commands.h"
#include "emulator/vessa/dictionary.h"
#include "emulator/vessa/file_options.h"
#include "emulator/vessa/json_model.h"
#include "emulator/vessa/null_sink.h"
#include "emulator/vessa/tree_printer.h"

namespace emulator::tool {
namespace {

class DumpCommand : public Command {
 public:
  const char* Name() const override { return "dump"; }
  const char* Summary() const override {
    return "Show what the library reads in a file, as a tree or as DICOM JSON";
  }
  const char* Examples() const override {
    return "vessa dump image.dcm\n"
           "vessa dump --json image.dcm | python3 -m json.tool\n"
           "vessa dump --syntax implicit data_set_without_meta_group.bin";
  }

  void Define(CLI::App& app) override {
    file_.Define(app);
    app.add_flag("--json", is_json_,
                 "Print the data set in the DICOM JSON model (PS3.18 annex F), without group 0002");
    app.add_option("--width", columns_,
                   "Cut lines of the tree to so many columns; 0 for no cut "
                   "[the terminal's width, no cut elsewhere]");
  }

  void Run(Session& session) override {
    const DicomFile file = file_.Open();
    if (is_json_) {
      PrintJson(session, file);
    } else {
      PrintTree(session, file);
    }
  }

 private:
  static void PrintJson(Session& session, const DicomFile& file) {
    JsonModel model(session.Out());
    model.Begin();
    file.DecomposeInto(session, model);
    model.Finish();
    if (model.UnreadTexts() == 0) return;
    WriteError(fmt::format(
        "vessa: {} values hold bytes that their character set does not know; U+FFFD stands for them",
        model.UnreadTexts()));
  }

  void PrintTree(Session& session, const DicomFile& file) const {
    Dictionary dictionary(session);
    const auto keyword = [&dictionary](std::uint32_t tag) { return dictionary.Find(tag).keyword; };
    const std::size_t columns = columns_.value_or(TerminalColumns(StandardStream::kOutput));
    TreePrinter printer(session.Out(), {Style::For(session.TheSettings().colour), columns, keyword});
    try {
      file.DecomposeInto(session, printer);
    } catch (const LibraryFailure&) {
      printer.Finish();
      // The library names the step of its latest call. That was a look-up of a keyword, made during an event; a second
      // run without look-ups fails alike and names the true one.
      NullSink no_look_ups;
      file.DecomposeInto(session, no_look_ups);
      throw;
    }
  }

  FileOptions file_;
  bool is_json_ = false;
  std::optional<std::size_t> columns_;
};

}  // namespace

std::unique_ptr<Command> MakeDumpCommand() { return std::make_unique<DumpCommand>(); }

}  // namespace emulator::tool
