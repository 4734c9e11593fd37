#include <fmt/format.h>

#include "emulator/store/data_sets.h"
#include "emulator/store/storing_sink.h"
#include "emulator/vessa/commands.h"
#include "emulator/vessa/file_options.h"
#include "emulator/vessa/store_options.h"
#include "emulator/vessa/uid_finder.h"

namespace emulator::tool {
namespace {

class ImportCommand : public Command {
 public:
  const char* Name() const override { return "import"; }
  const char* Summary() const override {
    return "Decompose DICOM files into the host's store, all but group lengths (gggg,0000)";
  }
  const char* Examples() const override {
    return "vessa import image.dcm\n"
           "vessa import image.dcm --id image\n"
           "vessa import -r study --jobs 2";
  }

  void Define(CLI::App& app) override {
    file_.Define(app);
    app.add_option("--id", id_, "Name to store the data set under, of one file only [its SOP instance UID]");
    app.add_flag("--replace", replaces_, "Replace data sets that are stored under the same name");
    store_.Define(app);
  }

  std::optional<FilePlan> PlanFiles() override {
    FilePlan plan = file_.Plan();
    if (!id_.empty() && plan.files.size() > 1)
      throw ToolError(kWrongUsage, "--id names one data set, not several files");
    store_.Open();  // finds out early whether there is one; a process must not hand its own on to others
    plan.done_word = "imported";
    plan.unit_word = "elements";
    return plan;
  }

  /// In a process that may end at any time.
  ExitCode RunFile(Session& session, FileTask& task) override {
    const std::string& path = task.path;
    const DicomFile file = file_.Open(path);
    const std::string id = id_.empty() ? FindSopInstanceUid(session, path, file) : id_;
    if (!open_store_) open_store_ = store_.Open();
    WithStore(path, [&] {
      const auto transaction = open_store_->Begin(Access::kWrite);
      MakeRoom(*transaction, path, id);
      StoringSink sink(*transaction, id);
      file.DecomposeInto(session, sink);
      transaction->Commit();
      task.units = static_cast<std::uint64_t>(sink.Elements());
    });
    session.Out().WriteLine(fmt::format("{}  {}", id, path));
    return kDone;
  }

 private:
  void MakeRoom(StoreTransaction& transaction, const std::string& path, const std::string& id) const {
    if (transaction.Nodes()->Defined(kDataGlobal, {id}) == 0 && !FindDataSet(*transaction.Nodes(), id))
      return;
    if (!replaces_) {
      throw ToolError(kOutputUnwritable,
                      fmt::format("{}: a data set is stored as {} already; --replace replaces it", path, id));
    }
    RemoveDataSet(transaction, id);
  }

  FileOptions file_;
  StoreOptions store_;
  std::unique_ptr<DataStore> open_store_;  // of this process
  std::string id_;
  bool replaces_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeImportCommand() { return std::make_unique<ImportCommand>(); }

}  // namespace emulator::tool
