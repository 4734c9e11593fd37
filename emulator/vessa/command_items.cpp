#include <fmt/format.h>

#include "emulator/vessa/commands.h"
#include "emulator/vessa/element_query.h"
#include "emulator/vessa/file_options.h"
#include "emulator/vessa/null_sink.h"
#include "emulator/vessa/property_reference.h"

namespace emulator::tool {
namespace {

class ItemsCommand : public Command {
 public:
  const char* Name() const override { return "items"; }
  const char* Summary() const override { return "Print the numbers of the items of a sequence"; }
  const char* Examples() const override {
    return "vessa items plan.dcm 'BeamSequence[]'\n"
           "vessa items plan.dcm 'BeamSequence[2].ControlPointSequence[]'\n"
           "vessa items plan.dcm 'BeamSequence[1]'";
  }

  void Define(CLI::App& app) override {
    file_.Define(app);
    app.add_option("REFERENCE", reference_,
                   "A subscript reference: the items behind the one that its last number names; all where "
                   "that is empty")
        ->required();
  }

  /// Asks for the next item until there is none, as a host enumerates a sequence.
  void Run(Session& session) override {
    const DicomFile file = file_.Open();
    std::vector<std::uint32_t> properties =
        PropertiesIn(PropertyListOf(session, ReferenceKind::kItem, reference_));
    for (;;) {
      NullSink no_meta;
      const std::uint32_t next =
          NextItem(session, file.OpenDataSet(session, no_meta), PropertyListFrom(properties));
      if (next == 0) return;
      session.Out().WriteLine(fmt::format("{}", next));
      properties.back() = next;
    }
  }

 private:
  FileOptions file_;
  std::string reference_;
};

}  // namespace

std::unique_ptr<Command> MakeItemsCommand() { return std::make_unique<ItemsCommand>(); }

}  // namespace emulator::tool
