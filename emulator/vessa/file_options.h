#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "emulator/vessa/dicom_file.h"
#include "emulator/vessa/file_plan.h"

namespace emulator::tool {

/// The arguments that every command has that reads files with DICOM data.
class FileOptions {
 public:
  void Define(CLI::App& app);
  /// For a command that takes other words behind one FILE.
  void DefineWithOneFile(CLI::App& app);

  /// @param more_words  of the command line that name files, too
  /// @throws ToolError  kInputUnreadable when there are none
  FilePlan Plan(const std::vector<std::string>& more_words = {}) const;

  /// One of the files as the arguments tell to read it. Throws ToolError (kInputUnreadable).
  /// @param more_bytes  see DicomInput
  DicomFile Open(const std::string& path, const std::string& more_bytes = {}) const;

  std::string TransferSyntax() const;
  std::uint64_t MostOutput() const { return most_output_; }
  void SetRecursive() { is_recursive_ = true; }

 private:
  void DefineOptions(CLI::App& app);

  std::vector<std::string> words_;
  bool is_recursive_ = false;
  bool stops_at_failure_ = false;
  int jobs_ = 1;
  std::string syntax_;
  std::uint64_t most_output_ = std::uint64_t{1} << 30U;
};

}  // namespace emulator::tool
