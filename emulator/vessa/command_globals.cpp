#include <fmt/format.h>

#include "emulator/platform/standard_streams.h"
#include "emulator/store/data_set_keys.h"
#include "emulator/vessa/commands.h"
#include "emulator/vessa/global_text.h"
#include "emulator/vessa/printable_text.h"
#include "emulator/vessa/store_options.h"

namespace emulator::tool {
namespace {

class GlobalsCommand : public Command {
 public:
  const char* Name() const override { return "globals"; }
  const char* Summary() const override {
    return "List nodes of the host's store as the host would write them";
  }
  const char* Examples() const override {
    return "vessa globals\n"
           "vessa globals 1.2.826.0.1.3680043.8.498.1\n"
           "vessa globals 1.2.826.0.1.3680043.8.498.1 --subscripts 0,c,0";
  }

  void Define(CLI::App& app) override {
    app.add_option("ID", id_, "Name under which a data set is stored [all]");
    app.add_option("--subscripts", subscripts_,
                   "List the nodes of ^KevDICOM.Data from these subscripts behind ID down, parted by commas")
        ->delimiter(',')
        ->allow_extra_args(false);
    app.add_option("--width", columns_,
                   "Cut lines to so many columns; 0 for no cut [the terminal's width, no cut elsewhere]");
    store_.Define(app);
  }

  bool CallsLibrary() const override { return false; }

  void Run(Session& session) override {
    if (id_.empty() && !subscripts_.empty()) throw ToolError(kWrongUsage, "--subscripts needs an ID");
    const auto store = store_.OpenExisting();
    const auto transaction = store->Begin(Access::kRead);
    const auto nodes = transaction->Nodes();
    std::vector<Value> from;
    if (!id_.empty()) from.emplace_back(id_);
    from.insert(from.end(), subscripts_.begin(), subscripts_.end());
    bool has_found = List(session.Out(), *nodes, kDataGlobal, from);
    if (subscripts_.empty()) has_found |= List(session.Out(), *nodes, kMetaGlobal, from);
    if (!id_.empty() && !has_found) {
      throw ToolError(kInputUnreadable, fmt::format("nothing is stored there as {}", id_));
    }
  }

 private:
  /// True when there was anything to list.
  bool List(Output& output, const Globals& nodes, const char* name, const std::vector<Value>& from) const {
    const std::size_t columns = columns_.value_or(TerminalColumns(StandardStream::kOutput));
    bool has_found = false;
    nodes.Visit(name, from, [&](const GlobalNode& node, const Value& value) {
      has_found = true;
      output.WriteLine(CutToColumns(ReferenceText(node) + "=" + HostLiteral(value), columns));
      return true;
    });
    return has_found;
  }

  StoreOptions store_;
  std::string id_;
  std::vector<std::string> subscripts_;
  std::optional<std::size_t> columns_;
};

}  // namespace

std::unique_ptr<Command> MakeGlobalsCommand() { return std::make_unique<GlobalsCommand>(); }

}  // namespace emulator::tool
