#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "emulator/vessa/output_file.h"

namespace emulator::tool {

/// A folder for values that are too long for a document, each in a file of its own.
class BulkFolder {
 public:
  /// Makes the folder unless there is one. @throws ToolError  kOutputUnwritable
  explicit BulkFolder(std::string path);

  /// Begins the file of the next value. @return  its URI, relative where the folder's path is
  std::string Begin(std::uint32_t tag);
  void Write(std::string_view bytes) { file_->Write(bytes); }
  /// The file comes to its name.
  void Finish();

 private:
  std::string path_;
  std::uint64_t values_ = 0;
  std::unique_ptr<OutputFile> file_;
};

}  // namespace emulator::tool
