#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <system_error>

namespace emulator {

/// A folder that lives as long as the object.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::random_device random;
    path_ = std::filesystem::temp_directory_path() / ("vessa_test_" + std::to_string(random()));
    std::filesystem::create_directories(path_);
  }
  ~ScratchFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  std::string Path(const std::string& name = "") const {
    return name.empty() ? path_.string() : (path_ / name).string();
  }

  /// Files in a folder of it; 0 when there is no such folder.
  std::size_t CountFiles(const std::string& name) const {
    std::error_code error;
    const std::filesystem::directory_iterator files(path_ / name, error);
    if (error) return 0;
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
  }

  void Write(const std::string& name, const std::string& bytes) const {
    std::ofstream(path_ / name, std::ios::binary) << bytes;
  }

 private:
  std::filesystem::path path_;
};

}  // namespace emulator
