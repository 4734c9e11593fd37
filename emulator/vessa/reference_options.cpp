#include "emulator/vessa/reference_options.h"

#include <algorithm>

#include "emulator/vessa/printable_text.h"

namespace emulator::tool {

void ReferenceOptions::Define(CLI::App& app, const std::string& description) {
  app.add_option("REFERENCE", words_, description + "; with -e, more files");
  app.add_option("-e,--reference", options_, "A reference, once for each; all other words are then files")
      ->allow_extra_args(false);
}

std::vector<std::string> ReferenceOptions::FileWords() const {
  if (References().empty())
    throw ToolError(kWrongUsage, "name the element: FILE REFERENCE, or -e REFERENCE FILE");
  return options_.empty() ? std::vector<std::string>() : words_;
}

ExitCode ReferenceOptions::AskForEach(Session& session, const FileTask& task,
                                      const std::function<void(const std::string&)>& ask) const {
  ExitCode worst = kDone;
  for (const std::string& reference : References()) {
    try {
      ask(reference);
    } catch (const ToolError& error) {
      if (session.Out().HasFailed()) throw;
      session.Out().Flush();
      const std::string start = References().size() == 1 ? "" : PrintableUtf8(reference) + ": ";
      task.report(start + error.what());
      worst = std::max(worst, error.Code());
    }
  }
  return worst;
}

std::string ReferenceOptions::Label(const std::string& reference) const {
  return References().size() == 1 ? std::string() : reference + "\t";
}

}  // namespace emulator::tool
