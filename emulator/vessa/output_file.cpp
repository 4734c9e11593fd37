#include "emulator/vessa/output_file.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "emulator/vessa/exit_code.h"

namespace emulator::tool {
namespace {

namespace fs = std::filesystem;

constexpr const char* kUnfinished = ".unfinished";

fs::path PathOf(const std::string& utf8) { return std::u8string(utf8.begin(), utf8.end()); }

bool IsNoPlainFile(const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::status(PathOf(path), error);
  return fs::exists(status) && !fs::is_regular_file(status);
}

}  // namespace

OutputFile::OutputFile(const std::string& path)
    : path_(path), path_for_now_(IsNoPlainFile(path) ? path : path + kUnfinished) {
  errno = 0;
  file_.open(PathOf(path_for_now_), std::ios::binary | std::ios::trunc);
  if (!file_) Fail();
}

OutputFile::~OutputFile() {
  if (is_finished_ || !IsPlainFile()) return;
  file_.close();
  std::error_code error;
  fs::remove(PathOf(path_for_now_), error);
}

void OutputFile::Write(std::string_view bytes) {
  errno = 0;
  if (!file_.write(bytes.data(), static_cast<std::streamsize>(bytes.size()))) Fail();
}

void OutputFile::Flush() {
  errno = 0;
  if (!file_.flush()) Fail();
}

void OutputFile::Finish() {
  Flush();
  file_.close();
  if (!file_) Fail();
  std::error_code error;
  if (IsPlainFile()) fs::rename(PathOf(path_for_now_), PathOf(path_), error);
  if (error) throw ToolError(kOutputUnwritable, fmt::format("{}: {}", path_, error.message()));
  is_finished_ = true;
}

void OutputFile::Fail() const {
  const int code = errno == 0 ? EIO : errno;
  throw ToolError(kOutputUnwritable, fmt::format("{}: {}", path_, std::strerror(code)));
}

}  // namespace emulator::tool
