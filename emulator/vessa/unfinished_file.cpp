#include "emulator/vessa/unfinished_file.h"

#include <fstream>
#include <string>
#include <system_error>
#include <utility>

namespace emulator::tool {
namespace {

namespace fs = std::filesystem;

std::string Utf8(const fs::path& path) {
  const std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

/// Whoever may replace a file in its folder could do so although the file is not his to write, or is read-only.
void RequireWritable(const fs::path& path, fs::perms permissions) {
  constexpr fs::perms kWrite = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
  if ((permissions & kWrite) == fs::perms::none || !std::ofstream(path, std::ios::in | std::ios::binary))
    throw std::system_error(std::make_error_code(std::errc::permission_denied));
}

fs::path CreateBeside(const fs::path& target) {
  constexpr int kMostFiles = 1000;
  for (int number = 1;; ++number) {
    fs::path path = target;
    path += number == 1 ? ".unfinished" : ".unfinished" + std::to_string(number);
    try {
      CreateNewFile(Utf8(path));
      return path;
    } catch (const std::system_error& error) {
      if (error.code() != std::errc::file_exists || number == kMostFiles) throw;
    }
  }
}

}  // namespace

UnfinishedFile::UnfinishedFile(fs::path target) : target_(std::move(target)) {
  std::error_code error;
  const fs::file_status older = fs::status(target_, error);
  if (fs::exists(older)) RequireWritable(target_, older.permissions());
  path_ = CreateBeside(target_);
  removed_when_interrupted_.emplace(Utf8(path_));
  if (fs::exists(older)) fs::permissions(path_, older.permissions(), error);
}

UnfinishedFile::~UnfinishedFile() {
  if (!removed_when_interrupted_) return;
  std::error_code error;
  fs::remove(path_, error);
}

void UnfinishedFile::TakeName() {
  fs::rename(path_, target_);
  removed_when_interrupted_.reset();
}

}  // namespace emulator::tool
