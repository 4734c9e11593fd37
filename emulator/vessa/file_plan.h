#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "emulator/vessa/input_files.h"

namespace emulator::tool {

/// Files that a command works through one by one.
struct FilePlan {
  static constexpr int kMostJobs = 64;

  std::vector<InputFile> files;
  bool names_files = false;  ///< the output has to say which file it is about
  int jobs = 1;              ///< processes at once, at most kMostJobs
  bool stops_at_failure = false;
  const char* done_word = "read";  ///< for the totals: what was done to a file
  const char* unit_word = "";      ///< what FileTask::units counts; empty for nothing
};

/// One of them.
struct FileTask {
  const std::string& path;  ///< in UTF-8
  bool is_named;            ///< see FilePlan::names_files
  /// Tells of a failure that does not end the work on the file.
  std::function<void(const std::string& message)> report;
  std::uint64_t units = 0;  ///< for the totals
};

}  // namespace emulator::tool
