#include <fmt/format.h>

#include <algorithm>

#include "emulator/store/data_sets.h"
#include "emulator/store/storing_sink.h"
#include "emulator/vessa/commands.h"
#include "emulator/vessa/dicom_file.h"
#include "emulator/vessa/import_run.h"
#include "emulator/vessa/store_options.h"
#include "emulator/vessa/syntax_name.h"
#include "emulator/vessa/uid_finder.h"

namespace emulator::tool {
namespace {

class ImportCommand : public Command {
 public:
  const char* Name() const override { return "import"; }
  const char* Summary() const override { return "Decompose DICOM files into the host's store"; }
  const char* Examples() const override {
    return "vessa import image.dcm\n"
           "vessa import image.dcm --id image\n"
           "vessa import study/*.dcm --jobs 2";
  }

  void Define(CLI::App& app) override {
    app.add_option("FILE", paths_, "Files to read")->required();
    app.add_option("--id", id_, "Name to store the data set under, of one file only [its SOP instance UID]");
    app.add_flag("--replace", replaces_, "Replace data sets that are stored under the same name");
    app.add_option("--jobs", jobs_, "Processes that read files at once; one at a time writes")
        ->check(CLI::Range(1, 64))
        ->capture_default_str();
    app.add_option(
        "--syntax", syntax_,
        "Transfer syntax of the data sets, in place of the ones that the files name: a UID, 'implicit' or "
        "'explicit' (both little endian)");
    app.add_option("--max-output", most_output_,
                   "Most bytes that a deflated data set may inflate to, such as 64M")
        ->transform(CLI::AsSizeValue(false))
        ->capture_default_str();
    store_.Define(app);
  }

  void Run(Session& session) override {
    if (!id_.empty() && paths_.size() > 1)
      throw ToolError(kWrongUsage, "--id names one data set, not several files");
    store_.Open();  // finds out early whether there is one; a process must not hand its own on to others
    ImportRun run(session.TheSettings(), paths_,
                  [this](Session& worker, const std::string& path) { return Import(worker, path); });
    run.Run(static_cast<int>(std::min(static_cast<std::size_t>(jobs_), paths_.size())));
  }

 private:
  /// In a process that may end at any time.
  std::uint64_t Import(Session& session, const std::string& path) {
    const DicomFile file({path, SyntaxNamed(syntax_), most_output_});
    const std::string id = id_.empty() ? FindSopInstanceUid(session, path, file) : id_;
    if (!open_store_) open_store_ = store_.Open();
    std::uint64_t elements = 0;
    WithStore(path, [&] {
      const auto transaction = open_store_->Begin(Access::kWrite);
      MakeRoom(*transaction, path, id);
      StoringSink sink(*transaction, id);
      file.DecomposeInto(session, sink);
      transaction->Commit();
      elements = static_cast<std::uint64_t>(sink.Elements());
    });
    session.Out().WriteLine(fmt::format("{}  {}", id, path));
    return elements;
  }

  void MakeRoom(StoreTransaction& transaction, const std::string& path, const std::string& id) const {
    if (transaction.Nodes()->Defined(kDataGlobal, {id}) == 0 && !FindDataSet(*transaction.Nodes(), id))
      return;
    if (!replaces_) {
      throw ToolError(kOutputUnwritable,
                      fmt::format("{}: a data set is stored as {} already; --replace replaces it", path, id));
    }
    RemoveDataSet(transaction, id);
  }

  StoreOptions store_;
  std::unique_ptr<DataStore> open_store_;  // of this process
  std::vector<std::string> paths_;
  std::string id_;
  std::string syntax_;
  std::uint64_t most_output_ = std::uint64_t{1} << 30U;
  int jobs_ = 1;
  bool replaces_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeImportCommand() { return std::make_unique<ImportCommand>(); }

}  // namespace emulator::tool
