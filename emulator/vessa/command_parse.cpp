#include <fmt/format.h>

#include "emulator/vessa/commands.h"
#include "emulator/vessa/dictionary.h"
#include "emulator/vessa/property_reference.h"
#include "emulator/vessa/style.h"
#include "emulator/vessa/tag_text.h"

namespace emulator::tool {
namespace {

class ParseCommand : public Command {
 public:
  const char* Name() const override { return "parse"; }
  const char* Summary() const override { return "Show the property list that a reference stands for"; }
  const char* Examples() const override {
    return "vessa parse 'BeamSequence[2].BeamName'\n"
           "vessa parse 'BeamSequence[2].ControlPointSequence[]'\n"
           "vessa parse '(300A,00B0)[1].(300A,00C2)'";
  }

  void Define(CLI::App& app) override {
    app.add_option("REFERENCE", reference_,
                   "A property reference; one that ends in ']' is read as a subscript reference")
        ->required();
  }

  void Run(Session& session) override {
    const bool is_item = !reference_.empty() && reference_.back() == ']';
    const std::string list =
        PropertyListOf(session, is_item ? ReferenceKind::kItem : ReferenceKind::kElement, reference_);
    Dictionary dictionary(session);
    const Style style = Style::For(session.TheSettings().colour);
    bool is_tag = true;
    for (const std::uint32_t property : PropertiesIn(list)) {
      session.Out().WriteLine(is_tag ? fmt::format("{}  {}", style.Tag(DisplayTag(property)),
                                                   style.Keyword(dictionary.Find(property).keyword))
                                     : fmt::format("{}", property));
      is_tag = !is_tag;
    }
  }

 private:
  std::string reference_;
};

}  // namespace

std::unique_ptr<Command> MakeParseCommand() { return std::make_unique<ParseCommand>(); }

}  // namespace emulator::tool
