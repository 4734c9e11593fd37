#include "emulator/store/memory_store.h"
#include "emulator/store/storing_sink.h"
#include "emulator/vessa/commands.h"
#include "emulator/vessa/dicom_export.h"
#include "emulator/vessa/dicom_file.h"
#include "emulator/vessa/store_options.h"
#include "emulator/vessa/syntax_name.h"

namespace emulator::tool {
namespace {

class ConvertCommand : public Command {
 public:
  const char* Name() const override { return "convert"; }
  const char* Summary() const override {
    return "Write a DICOM file in another transfer syntax, through the host's globals in memory";
  }
  const char* Examples() const override {
    return "vessa convert image.dcm explicit.dcm --syntax explicit --verify\n"
           "vessa convert data_set.bin image.dcm --input-syntax implicit --syntax explicit";
  }

  void Define(CLI::App& app) override {
    app.add_option("IN", input_.path, "File to read")->required();
    app.add_option("OUT", path_, "File to write")->required();
    app.add_option("--syntax", syntax_,
                   "Transfer syntax to write: a UID, 'implicit' or 'explicit' (both little endian)")
        ->required();
    app.add_option("--input-syntax", input_.syntax,
                   "Transfer syntax of IN, in place of the one that it names");
    app.add_option("--max-output", input_.most_output,
                   "Most bytes that a deflated data set may inflate to, such as 64M")
        ->transform(CLI::AsSizeValue(false))
        ->capture_default_str();
    app.add_flag("--verify", is_verified_,
                 "Decompose what was written and compare it with IN, but for group lengths (gggg,0000), "
                 "which are not kept");
  }

  void Run(Session& session) override {
    const DicomFile input({.path = input_.path,
                           .syntax = SyntaxNamed(input_.syntax),
                           .most_output = input_.most_output,
                           .syntax_option = "--input-syntax"});
    MemoryStore store;
    WithStore(input_.path, [&] {
      const auto transaction = store.Begin(Access::kWrite);
      StoringSink sink(*transaction, kId);
      input.DecomposeInto(session, sink);
      OutputFile file(path_);
      ExportDataSet(session, *transaction, {input_.path, kId, SyntaxNamed(syntax_)}, file);
      const std::size_t entries = is_verified_ ? Verify(session, input, file) : 0;
      file.Finish();
      if (is_verified_) ReportVerified(file, entries);
    });
  }

 private:
  static constexpr const char* kId = "1";

  static std::size_t Verify(Session& session, const DicomFile& input, OutputFile& file) {
    DataSetOutline source;
    input.DecomposeInto(session, source);
    return VerifyFile(session, source, file);
  }

  DicomInput input_{{}, {}, std::uint64_t{1} << 30U};
  std::string path_;
  std::string syntax_;
  bool is_verified_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeConvertCommand() { return std::make_unique<ConvertCommand>(); }

}  // namespace emulator::tool
