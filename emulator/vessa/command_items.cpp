#include <fmt/format.h>

#include "emulator/vessa/commands.h"
#include "emulator/vessa/element_query.h"
#include "emulator/vessa/file_options.h"
#include "emulator/vessa/null_sink.h"
#include "emulator/vessa/printable_text.h"
#include "emulator/vessa/property_reference.h"
#include "emulator/vessa/reference_options.h"

namespace emulator::tool {
namespace {

class ItemsCommand : public Command {
 public:
  const char* Name() const override { return "items"; }
  const char* Summary() const override { return "Print the numbers of the items of a sequence"; }
  const char* Examples() const override {
    return "vessa items plan.dcm 'BeamSequence[]'\n"
           "vessa items plan.dcm 'BeamSequence[2].ControlPointSequence[]'\n"
           "vessa items plan.dcm 'BeamSequence[1]'\n"
           "vessa items -r study -e 'ReferencedImageSequence[]'";
  }

  void Define(CLI::App& app) override {
    file_.DefineWithOneFile(app);
    references_.Define(
        app,
        "A subscript reference: the items behind the one that its last number names; all where "
        "that is empty");
  }

  std::optional<FilePlan> PlanFiles() override { return file_.Plan(references_.FileWords()); }

  ExitCode RunFile(Session& session, FileTask& task) override {
    const DicomFile file = file_.Open(task.path);
    return references_.AskForEach(
        session, task, [&](const std::string& reference) { PrintItems(session, task, file, reference); });
  }

 private:
  /// Asks for the next item until there is none, as a host enumerates a sequence.
  void PrintItems(Session& session, const FileTask& task, const DicomFile& file,
                  const std::string& reference) const {
    std::vector<std::uint32_t> properties =
        PropertiesIn(PropertyListOf(session, ReferenceKind::kItem, reference));
    const std::string start =
        (task.is_named ? PrintableUtf8(task.path) + ": " : "") + references_.Label(reference);
    for (;;) {
      NullSink no_meta;
      const std::uint32_t next =
          NextItem(session, file.OpenDataSet(session, no_meta), PropertyListFrom(properties));
      if (next == 0) return;
      session.Out().WriteLine(fmt::format("{}{}", start, next));
      properties.back() = next;
    }
  }

  FileOptions file_;
  ReferenceOptions references_;
};

}  // namespace

std::unique_ptr<Command> MakeItemsCommand() { return std::make_unique<ItemsCommand>(); }

}  // namespace emulator::tool
