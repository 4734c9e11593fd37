#include <fmt/format.h>

#include "emulator/vessa/commands.h"
#include "emulator/vessa/dictionary.h"
#include "emulator/vessa/style.h"
#include "emulator/vessa/tag_text.h"

namespace emulator::tool {
namespace {

class TagCommand : public Command {
 public:
  const char* Name() const override { return "tag"; }
  const char* Summary() const override {
    return "Look tags and keywords up in the library's data dictionary";
  }
  const char* Examples() const override {
    return "vessa tag 0010,0010\n"
           "vessa tag 00100010 PatientName BeamSequence";
  }

  void Define(CLI::App& app) override {
    app.add_option("TAG", names_, "Tags, such as 0010,0010 or 00100010, and keywords")->required();
  }

  void Run(Session& session) override {
    Dictionary dictionary(session);
    const Style style = Style::For(session.TheSettings().colour);
    for (const std::string& name : names_) {
      const std::uint32_t tag = dictionary.TagNamed(name);
      const DictionaryEntry& entry = dictionary.Find(tag);
      if (entry.display_tag.empty()) {
        throw ToolError(kLibraryFailed, fmt::format("{}: not in the data dictionary", DisplayTag(tag)));
      }
      session.Out().WriteLine(fmt::format("{}  {}  {}  {}", style.Tag(entry.display_tag), style.Vr(entry.vr),
                                          style.Keyword(entry.keyword), entry.multiplicity));
    }
  }

 private:
  std::vector<std::string> names_;
};

}  // namespace

std::unique_ptr<Command> MakeTagCommand() { return std::make_unique<TagCommand>(); }

}  // namespace emulator::tool
