#include <fmt/format.h>

#include "emulator/store/data_sets.h"
#include "emulator/vessa/commands.h"
#include "emulator/vessa/store_options.h"

namespace emulator::tool {
namespace {

class KillCommand : public Command {
 public:
  const char* Name() const override { return "kill"; }
  const char* Summary() const override { return "Remove data sets from the host's store"; }
  const char* Examples() const override { return "vessa kill 1.2.826.0.1.3680043.8.498.1"; }

  void Define(CLI::App& app) override {
    app.add_option("ID", ids_, "Names under which the data sets are stored")->required();
    store_.Define(app);
  }

  bool CallsLibrary() const override { return false; }

  void Run(Session& /*session*/) override {
    const auto store = store_.OpenExisting();
    WithStore("kill", [&] {
      const auto transaction = store->Begin(Access::kWrite);
      for (const std::string& id : ids_) {
        if (!FindDataSet(*transaction->Nodes(), id))
          throw ToolError(kInputUnreadable, fmt::format("no data set is stored as {}", id));
        RemoveDataSet(*transaction, id);
      }
      transaction->Commit();
    });
  }

 private:
  StoreOptions store_;
  std::vector<std::string> ids_;
};

}  // namespace

std::unique_ptr<Command> MakeKillCommand() { return std::make_unique<KillCommand>(); }

}  // namespace emulator::tool
