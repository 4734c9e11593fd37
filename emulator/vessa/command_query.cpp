#include <fmt/format.h>

#include "emulator/transfer_syntax.h"
#include "emulator/vessa/answer_printer.h"
#include "emulator/vessa/answer_scopes.h"
#include "emulator/vessa/commands.h"
#include "emulator/vessa/element_query.h"
#include "emulator/vessa/file_options.h"
#include "emulator/vessa/null_sink.h"
#include "emulator/vessa/output_file.h"
#include "emulator/vessa/printable_text.h"
#include "emulator/vessa/property_reference.h"
#include "emulator/vessa/reference_options.h"
#include "emulator/vessa/tag_text.h"

namespace emulator::tool {
namespace {

/// Why group 0002 and a data set in this syntax cannot be read as if they were one; null where they can.
const char* DifferenceFromMeta(std::string_view syntax) {
  if (HasImplicitVr(syntax)) return "group 0002 has explicit VRs and the data set has none";
  if (syntax == kExplicitBigEndian) return "group 0002 is little endian and the data set is not";
  return nullptr;
}

class QueryCommand : public Command {
 public:
  const char* Name() const override { return "query"; }
  const char* Summary() const override { return "Print the values of single elements"; }
  const char* Examples() const override {
    return "vessa query image.dcm PatientName StudyDate\n"
           "vessa query plan.dcm 'BeamSequence[2].BeamName'\n"
           "vessa query image.dcm PixelData --out pixels.raw\n"
           "vessa query image.dcm '(0028,0010)' --json\n"
           "vessa query -r study -e PatientID -e StudyDate";
  }

  void Define(CLI::App& app) override {
    file_.DefineWithOneFile(app);
    references_.Define(app, "Property references, such as BeamSequence[2].BeamName");
    auto* const json = app.add_flag("--json", is_json_, "Print each answer as a JSON object in a line");
    auto* const raw =
        app.add_flag("--raw", is_raw_, "Write the bytes of the values, and nothing else")->excludes(json);
    app.add_option("--out", out_path_,
                   "Write the value, of any length, to this file; one reference only, and not for compressed "
                   "pixel data, which dump --json --bulk writes")
        ->excludes(raw)
        ->excludes(json);
    app.add_flag("--sequence", sequence_may_answer_, "Let a sequence itself be the answer");
    app.add_flag("--require", is_required_, "Fail when a reference finds nothing");
    app.add_option("--through", through_,
                   "The call-out to use: zfQueryStream or zfQueryFileOrDataSet [stream; file with --out]")
        ->check(CLI::IsMember({"stream", "file"}));
  }

  std::optional<FilePlan> PlanFiles() override {
    FilePlan plan = file_.Plan(references_.FileWords());
    if (!out_path_.empty() && (references_.References().size() > 1 || plan.files.size() > 1))
      throw ToolError(kWrongUsage, "--out takes the value of one reference, in one file");
    if (!out_path_.empty() && through_ == "stream")
      throw ToolError(kWrongUsage, "--out needs the call-out that --through file names");
    return plan;
  }

  ExitCode RunFile(Session& session, FileTask& task) override {
    const DicomFile file = file_.Open(task.path);
    return references_.AskForEach(
        session, task, [&](const std::string& reference) { AskAndPrint(session, task, file, reference); });
  }

 private:
  void AskAndPrint(Session& session, const FileTask& task, const DicomFile& file,
                   const std::string& reference) const {
    const ElementQuery query{PropertyListOf(session, ReferenceKind::kElement, reference),
                             sequence_may_answer_};
    const std::optional<ElementAnswer> answer = AskOrAdvise(session, file, query);
    if (answer) return Print(session, {file, reference, query, task.is_named}, *answer);
    if (is_required_) throw ToolError(kLibraryFailed, fmt::format("{}: no {}", file.Path(), reference));
    if (!out_path_.empty())
      task.report(fmt::format("{}: no {}; {} is not written", file.Path(), reference, out_path_));
  }

  /// The library says what is missing; how to pass it is the tool's to say.
  std::optional<ElementAnswer> AskOrAdvise(Session& session, const DicomFile& file,
                                           const ElementQuery& query) const {
    try {
      return Ask(session, file, query);
    } catch (const LibraryFailure& failure) {
      const std::string message = failure.what();
      if (message.find("Data is too long to be returned") == std::string::npos) throw;
      throw LibraryFailure(
          message + (out_path_.empty() ? "\n  with --out FILE a value of any length is written to a file"
                                       : "\n  vessa convert --syntax explicit makes a file that allows it"));
    }
  }

  std::optional<ElementAnswer> Ask(Session& session, const DicomFile& file, const ElementQuery& query) const {
    if (through_ == "file" || !out_path_.empty()) {
      const std::string syntax = file.TransferSyntax(session);
      if (CanUseFileName(file, syntax)) return AskByFileName(session, file, syntax, query);
    }
    NullSink no_meta;
    return QueryStream(
        session, IsMeta(file, query) ? file.OpenMeta(session) : file.OpenDataSet(session, no_meta), query);
  }

  static bool IsMeta(const DicomFile& file, const ElementQuery& query) {
    return file.HasPreamble() && GroupOf(PropertiesIn(query.property_list).at(0)) == kMetaGroup;
  }

  /// zfQueryFileOrDataSet reads group 0002 and the data set in one syntax, from the file as it lies there.
  static bool CanUseFileName(const DicomFile& file, const std::string& syntax) {
    if (syntax.empty()) return false;
    const char* reason = file.HasPreamble() ? DifferenceFromMeta(syntax) : nullptr;
    if (syntax == kDeflatedExplicitLittleEndian) reason = "the data set is deflated";
    if (reason == nullptr) return true;
    WriteError(
        fmt::format("vessa: {}: {}, so the library cannot query the file by its name; a stream is queried "
                    "instead",
                    file.Path(), reason));
    return false;
  }

  std::optional<ElementAnswer> AskByFileName(Session& session, const DicomFile& file,
                                             const std::string& syntax, const ElementQuery& query) const {
    const auto long_value = out_path_.empty() ? nullptr : std::make_shared<MemoryStream>();
    std::optional<ElementAnswer> answer =
        QueryFile(session, file.Path(), file.HasPreamble(), syntax, query, long_value);
    if (answer && long_value != nullptr && long_value->ByteCount() > 0) answer->value = long_value->Bytes();
    return answer;
  }

  struct Question {
    const DicomFile& file;
    const std::string& reference;
    const ElementQuery& query;
    bool names_file;
  };

  void Print(Session& session, const Question& question, ElementAnswer answer) const {
    const auto& [file, reference, query, names_file] = question;
    const std::vector<std::uint32_t> properties = PropertiesIn(query.property_list);
    if (!out_path_.empty()) {
      if (properties.back() == kPixelData) RefuseFragments(session, file);
      return WriteFile(answer.value);
    }
    if (is_raw_) return session.Out().Write(answer.value);
    const DataSetScopes scopes =
        IsMeta(file, query) ? DataSetScopes() : ScopesOfAnswer(session, file, answer.vr, properties);
    answer.vr = scopes.Resolve(properties.back(), answer.vr);
    const std::string file_name = names_file ? file.Path() : std::string();
    if (is_json_)
      return session.Out().WriteLine(AnswerJson(file_name, reference, answer, scopes.Characters()));
    const std::string text = AnswerText(answer, scopes.Characters());
    session.Out().WriteLine((names_file ? PrintableUtf8(file_name) + ": " : "") +
                            references_.Label(reference) + text);
  }

  /// Of encapsulated pixel data the library answers with the first fragment, and of the others it writes the long ones.
  static void RefuseFragments(Session& session, const DicomFile& file) {
    const std::string syntax = file.TransferSyntax(session);
    if (HasNativePixels(syntax)) return;
    throw ToolError(
        kWrongUsage,
        fmt::format("{}: the pixel data in transfer syntax {} come in fragments, of which a query gives some "
                    "only; nothing was written\n  vessa dump --json --bulk FOLDER FILE writes all of them, "
                    "each behind "
                    "its item header",
                    file.Path(), syntax));
  }

  void WriteFile(const std::string& bytes) const {
    OutputFile file(out_path_);
    file.Write(bytes);
    file.Finish();
  }

  FileOptions file_;
  ReferenceOptions references_;
  std::string through_;  ///< empty where the command line leaves it open
  std::string out_path_;
  bool is_json_ = false;
  bool is_raw_ = false;
  bool sequence_may_answer_ = false;
  bool is_required_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeQueryCommand() { return std::make_unique<QueryCommand>(); }

}  // namespace emulator::tool
