#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

#include "emulator/stream_object.h"

namespace emulator {
namespace {

/// Bytes of the file that are kept, so that small peeks do not go to the system one by one.
constexpr std::int64_t kWindowBytes = std::int64_t{256} * 1024;

[[noreturn]] void ThrowSystemError(int code, const std::string& path) {
  throw std::system_error(code == 0 ? EIO : code, std::generic_category(), path);
}

std::filesystem::path PathOf(const std::string& utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

std::ios::openmode OpenMode(FileStream::Mode mode) {
  constexpr auto kReading = std::ios::in | std::ios::binary;
  return mode == FileStream::Mode::kRead ? kReading : kReading | std::ios::out | std::ios::trunc;
}

}  // namespace

struct FileStream::File {
  std::fstream stream;
  std::vector<char> window;
  std::int64_t window_offset = 0;

  bool Holds(std::int64_t offset, std::int64_t count) const {
    return offset >= window_offset &&
           offset + count <= window_offset + static_cast<std::int64_t>(window.size());
  }

  void Load(std::int64_t offset, std::int64_t count) {
    window.resize(static_cast<std::size_t>(count));
    window_offset = offset;
    stream.seekg(offset);
    stream.read(window.data(), count);
    if (stream.gcount() == count) return;
    window.clear();
    stream.clear();
    throw HostError{kReadError};
  }
};

FileStream::FileStream(const std::string& path, Mode mode) : file_(std::make_unique<File>()) {
  const std::filesystem::path file_path = PathOf(path);
  if (std::filesystem::is_directory(file_path)) ThrowSystemError(EISDIR, path);
  errno = 0;
  file_->stream.open(file_path, OpenMode(mode));
  if (!file_->stream) ThrowSystemError(errno, path);
  byte_count_ = static_cast<std::int64_t>(file_->stream.seekg(0, std::ios::end).tellg());
  if (byte_count_ < 0) ThrowSystemError(errno, path);
}

FileStream::~FileStream() = default;

std::string_view FileStream::BytesAt(std::int64_t offset, std::int64_t count) {
  if (!file_->Holds(offset, count)) {
    file_->Load(offset, std::min(std::max(count, kWindowBytes), byte_count_ - offset));
  }
  return {file_->window.data() + (offset - file_->window_offset), static_cast<std::size_t>(count)};
}

void FileStream::Append(std::string_view bytes) {
  file_->stream.seekp(0, std::ios::end);
  file_->stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!file_->stream) throw HostError{kWriteError};
  byte_count_ += static_cast<std::int64_t>(bytes.size());
}

void FileStream::Flush() {
  if (!file_->stream.flush()) throw HostError{kWriteError};
}

}  // namespace emulator
