#pragma once

#include <string>

namespace emulator {

/// Makes an empty file under a name that nothing has yet.
/// @param path  in UTF-8
/// @throws std::system_error  std::errc::file_exists when something has the name
void CreateNewFile(const std::string& path);

/// A file that is to be removed should the process be interrupted (SIGINT, SIGTERM, SIGHUP) while the object lives. Of
/// several at once the first eight are. On Windows, where nothing interrupts the process but its end, nothing is done.
class RemovedWhenInterrupted {
 public:
  /// @param path  in UTF-8
  explicit RemovedWhenInterrupted(std::string path);
  ~RemovedWhenInterrupted();
  RemovedWhenInterrupted(const RemovedWhenInterrupted&) = delete;
  RemovedWhenInterrupted& operator=(const RemovedWhenInterrupted&) = delete;

 private:
  std::string path_;
};

}  // namespace emulator
