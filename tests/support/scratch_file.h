#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

/// A file with that content and a name of its own, gone with this object.
class ScratchFile {
 public:
  explicit ScratchFile(const std::string& content) {
    static int number = 0;
    name_ = (std::filesystem::temp_directory_path() /
             ("vessa_scratch_" + std::to_string(std::random_device()()) + "_" + std::to_string(++number)))
                .string();
    std::ofstream(name_, std::ios::binary) << content;
  }
  ~ScratchFile() { std::filesystem::remove(name_); }
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;

  const std::string& Name() const { return name_; }

 private:
  std::string name_;
};
