#include "emulator/vessa/file_options.h"

#include <algorithm>

#include "emulator/vessa/syntax_name.h"

namespace emulator::tool {

void FileOptions::Define(CLI::App& app) {
  app.add_option("FILE", words_, "Files to read, patterns such as 'study/*.dcm', and, with -r, folders")
      ->required();
  DefineOptions(app);
}

void FileOptions::DefineWithOneFile(CLI::App& app) {
  app.add_option("FILE", words_,
                 "File to read; a pattern such as 'study/*.dcm', or, with -r, a folder, for many")
      ->required()
      ->expected(1)
      ->allow_extra_args(false);
  DefineOptions(app);
}

void FileOptions::DefineOptions(CLI::App& app) {
  app.add_flag("-r,--recursive", is_recursive_,
               "Read all files in the folders that are named, and in theirs");
  app.add_option("--jobs", jobs_, "Processes that read files at once")
      ->check(CLI::Range(1, FilePlan::kMostJobs))
      ->capture_default_str();
  app.add_flag("--fail-first", stops_at_failure_, "Stop at the first file that something is wrong with");
  app.add_option(
      "--syntax", syntax_,
      "Transfer syntax of the data set, in place of the one that the file names: a UID, 'implicit' or "
      "'explicit' (both little endian)");
  app.add_option("--max-output", most_output_,
                 "Most bytes that a deflated data set may inflate to, such as 64M")
      ->transform(CLI::AsSizeValue(false))
      ->capture_default_str();
}

FilePlan FileOptions::Plan(const std::vector<std::string>& more_words) const {
  std::vector<std::string> words = words_;
  words.insert(words.end(), more_words.begin(), more_words.end());
  FilePlan plan;
  plan.files = FilesNamedBy(words, is_recursive_);
  plan.names_files = words.size() > 1 || std::any_of(words.begin(), words.end(), MayNameManyFiles);
  plan.jobs = jobs_;
  plan.stops_at_failure = stops_at_failure_;
  if (plan.files.empty()) throw ToolError(kInputUnreadable, words.front() + ": no file in this folder");
  return plan;
}

DicomFile FileOptions::Open(const std::string& path, const std::string& more_bytes) const {
  return DicomFile({path, SyntaxNamed(syntax_), most_output_, more_bytes});
}

std::string FileOptions::TransferSyntax() const { return SyntaxNamed(syntax_); }

}  // namespace emulator::tool
