#pragma once

#include <fstream>
#include <string>
#include <string_view>

namespace emulator::tool {

/// A file that comes to its name only when it is complete: until Finish it is written under another name beside it,
/// and the destructor removes what was not finished. Names that are no plain files, such as /dev/stdout, are written
/// to directly.
class OutputFile {
 public:
  /// @param path  in UTF-8
  /// @throws ToolError  kOutputUnwritable
  explicit OutputFile(const std::string& path);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /// @throws ToolError  kOutputUnwritable
  void Write(std::string_view bytes);
  /// Hands everything to the system; the file can then be read at PathForNow. @throws ToolError
  void Flush();
  /// @throws ToolError  kOutputUnwritable
  void Finish();

  const std::string& Path() const { return path_; }
  const std::string& PathForNow() const { return path_for_now_; }
  /// False for what cannot be read back.
  bool IsPlainFile() const { return path_for_now_ != path_; }

 private:
  [[noreturn]] void Fail() const;

  std::string path_;
  std::string path_for_now_;
  std::ofstream file_;
  bool is_finished_ = false;
};

}  // namespace emulator::tool
