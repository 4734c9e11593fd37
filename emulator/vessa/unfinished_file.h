#pragma once

#include <filesystem>
#include <optional>

#include "emulator/platform/new_file.h"

namespace emulator::tool {

/// A new, empty file beside the one whose name it takes when it is complete: `target`.unfinished or, where there is such
/// a file already, `target`.unfinished2 and so on. It is removed with the object, or when the process is interrupted,
/// unless it took the name.
class UnfinishedFile {
 public:
  /// @throws std::system_error  no such file can be made, or what is there under the name may not be written
  explicit UnfinishedFile(std::filesystem::path target);
  ~UnfinishedFile();
  UnfinishedFile(const UnfinishedFile&) = delete;
  UnfinishedFile& operator=(const UnfinishedFile&) = delete;

  const std::filesystem::path& Path() const { return path_; }

  /// Replaces what was there under the name; the permissions of that stay. To be called once the file is closed.
  /// @throws std::system_error
  void TakeName();

 private:
  std::filesystem::path target_;
  std::filesystem::path path_;
  std::optional<RemovedWhenInterrupted> removed_when_interrupted_;  ///< until it took the name
};

}  // namespace emulator::tool
