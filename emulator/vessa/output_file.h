#pragma once

#include <fstream>
#include <optional>
#include <string>
#include <string_view>

#include "emulator/vessa/unfinished_file.h"

namespace emulator::tool {

/// A file that comes to its name only when it is complete: until Finish it is an UnfinishedFile beside it. A link to a
/// file stays a link. Names of what is no plain file are written to directly, and so are the system's names for what is
/// open, such as /dev/stdout.
class OutputFile {
 public:
  /// @param path  in UTF-8
  /// @throws ToolError  kOutputUnwritable
  explicit OutputFile(const std::string& path);

  /// @throws ToolError  kOutputUnwritable
  void Write(std::string_view bytes);
  /// Hands everything to the system; the file can then be read at PathForNow. @throws ToolError
  void Flush();
  /// @throws ToolError  kOutputUnwritable
  void Finish();

  const std::string& Path() const { return path_; }
  const std::string& PathForNow() const { return path_for_now_; }
  /// False for what cannot be read back.
  bool IsPlainFile() const { return unfinished_.has_value(); }

 private:
  void Open();
  [[noreturn]] void Fail() const;
  [[noreturn]] void Fail(const std::string& reason) const;

  std::string path_;
  std::string path_for_now_;
  std::optional<UnfinishedFile> unfinished_;
  std::ofstream file_;  ///< closed before the unfinished file is removed
};

}  // namespace emulator::tool
