#include "emulator/store/data_set_replay.h"
#include "emulator/vessa/commands.h"
#include "emulator/vessa/dicom_export.h"
#include "emulator/vessa/store_options.h"
#include "emulator/vessa/syntax_name.h"

namespace emulator::tool {
namespace {

class ExportCommand : public Command {
 public:
  const char* Name() const override { return "export"; }
  const char* Summary() const override { return "Write a data set of the host's store as a DICOM file"; }
  const char* Examples() const override {
    return "vessa export 1.2.826.0.1.3680043.8.498.1 image.dcm --syntax explicit\n"
           "vessa export 1.2.826.0.1.3680043.8.498.1 image.dcm --syntax 1.2.840.10008.1.2.1.99 --verify";
  }

  void Define(CLI::App& app) override {
    app.add_option("ID", id_, "Name under which the data set is stored")->required();
    app.add_option("OUT", path_, "File to write")->required();
    app.add_option("--syntax", syntax_,
                   "Transfer syntax to write: a UID, 'implicit' or 'explicit' (both little endian)")
        ->required();
    app.add_flag("--verify", is_verified_,
                 "Decompose what was written and compare it with what is stored, which is all but group "
                 "lengths (gggg,0000)");
    store_.Define(app);
  }

  void Run(Session& session) override {
    const auto store = store_.OpenExisting();
    WithStore(id_, [&] {
      const auto transaction = store->Begin(Access::kRead);
      OutputFile file(path_);
      ExportDataSet(session, *transaction, {id_, id_, SyntaxNamed(syntax_)}, file);
      std::size_t entries = 0;
      if (is_verified_) {
        DataSetOutline source;
        ReplayDataSet(*transaction, id_, source);
        entries = VerifyFile(session, source, file);
      }
      file.Finish();
      if (is_verified_) ReportVerified(file, entries);
    });
  }

 private:
  StoreOptions store_;
  std::string id_;
  std::string path_;
  std::string syntax_;
  bool is_verified_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeExportCommand() { return std::make_unique<ExportCommand>(); }

}  // namespace emulator::tool
