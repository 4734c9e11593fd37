#include "emulator/vessa/output_file.h"

#include <fmt/format.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "emulator/vessa/exit_code.h"

namespace emulator::tool {
namespace {

namespace fs = std::filesystem;

fs::path PathOf(const std::string& utf8) { return std::u8string(utf8.begin(), utf8.end()); }

bool IsLink(const fs::path& path) {
  std::error_code error;
  return fs::is_symlink(fs::symlink_status(path, error));
}

/// The system's links to what is open stand in such a folder.
bool IsOfTheSystem(const fs::path& path) {
  std::error_code error;
  const std::string folder = fs::weakly_canonical(fs::absolute(path).parent_path(), error).generic_string();
  return folder == "/dev" || folder.starts_with("/dev/") || folder.starts_with("/proc/");
}

/// Follows links as far as they are a user's.
fs::path EndOfLinks(fs::path path) {
  constexpr int kMostLinks = 40;
  std::error_code error;
  for (int links = 0; links < kMostLinks && IsLink(path) && !IsOfTheSystem(path); ++links)
    path = path.parent_path() / fs::read_symlink(path, error);
  return path;
}

bool CanBeReplaced(const fs::path& path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  return !IsLink(path) && (!fs::exists(status) || fs::is_regular_file(status));
}

}  // namespace

OutputFile::OutputFile(const std::string& path) : path_(path), path_for_now_(path) {
  try {
    Open();
  } catch (const std::system_error& error) {
    Fail(error.code().message());
  }
}

void OutputFile::Open() {
  fs::path end = EndOfLinks(PathOf(path_));
  if (CanBeReplaced(end)) {
    end = unfinished_.emplace(end).Path();
    const std::u8string name = end.u8string();
    path_for_now_.assign(name.begin(), name.end());
  }
  errno = 0;
  file_.open(end, std::ios::binary | std::ios::trunc);
  if (!file_) Fail();
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
  try {
    if (unfinished_) unfinished_->TakeName();
  } catch (const std::system_error& error) {
    Fail(error.code().message());
  }
}

void OutputFile::Fail() const { Fail(std::generic_category().message(errno == 0 ? EIO : errno)); }

void OutputFile::Fail(const std::string& reason) const {
  throw ToolError(kOutputUnwritable, fmt::format("{}: {}", path_, reason));
}

}  // namespace emulator::tool
