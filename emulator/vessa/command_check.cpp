#include "emulator/vessa/check_report.h"
#include "emulator/vessa/commands.h"
#include "emulator/vessa/file_prediction.h"

namespace emulator::tool {
namespace {

class CheckCommand : public Command {
 public:
  const char* Name() const override { return "check"; }
  const char* Summary() const override {
    return "Say what the library will do with files, without having it read them";
  }
  const char* Examples() const override {
    return "vessa check image.dcm\n"
           "vessa check study --ignore placeholder-vr\n"
           "vessa check --json study\n"
           "vessa check --whole --syntax explicit image.dcm";
  }

  void Define(CLI::App& app) override {
    file_.Define(app);
    file_.SetRecursive();
    app.add_flag("--json", is_json_, "Print what was found as a JSON object in a line");
    app.add_flag(
        "--whole", is_whole_,
        "Take the file as a host would that does not pass over preamble and group 0002; needs --syntax");
    app.add_option("--ignore", ignored_,
                   "Findings that count for nothing, with commas between them; --help names all")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check(CLI::IsMember(FindingNames()));
  }

  std::optional<FilePlan> PlanFiles() override {
    if (is_whole_ && file_.TransferSyntax().empty())
      throw ToolError(kWrongUsage, "--whole needs --syntax, the transfer syntax that the host names");
    FilePlan plan = file_.Plan();
    plan.done_word = "checked";
    return plan;
  }

  ExitCode RunFile(Session& session, FileTask& task) override {
    FileReport report = PredictFile(session, file_, task.path, is_whole_);
    for (const std::string& name : ignored_) report.findings.Drop(FindingNamed(name).value());
    session.Out().WriteLine(is_json_ ? ReportJson(task.path, report) : ReportText(task.path, report));
    return report.IsFine() ? kDone : kFindings;
  }

 private:
  static std::vector<std::string> FindingNames() {
    std::vector<std::string> names;
    for (std::size_t kind = 0; kind < kFindingKinds; ++kind)
      names.emplace_back(NameOf(static_cast<FindingKind>(kind)));
    return names;
  }

  FileOptions file_;
  bool is_json_ = false;
  bool is_whole_ = false;
  std::vector<std::string> ignored_;
};

}  // namespace

std::unique_ptr<Command> MakeCheckCommand() { return std::make_unique<CheckCommand>(); }

}  // namespace emulator::tool
