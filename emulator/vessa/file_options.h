#pragma once

#include <CLI/CLI.hpp>

#include "emulator/vessa/dicom_file.h"

namespace emulator::tool {

/// The arguments that every command has that reads a file with DICOM data.
class FileOptions {
 public:
  void Define(CLI::App& app);

  /// The file as the arguments name it. Throws ToolError (kInputUnreadable).
  DicomFile Open() const;

 private:
  std::string path_;
  std::string syntax_;
  std::uint64_t most_output_ = std::uint64_t{1} << 30U;
};

}  // namespace emulator::tool
