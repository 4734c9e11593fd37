#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>

#include "platform/file.h"

namespace vessa {
namespace {

static_assert(sizeof(off_t) == sizeof(std::int64_t));

/// What the system's error number means to readers.
File::Failure FailureOf(int error) {
  if (error == EISDIR) return File::Failure::kDirectory;
  if (error == ESPIPE) return File::Failure::kNoPositions;
  return File::Failure::kOther;
}

}  // namespace

bool File::Open(const std::string& name) {
  Close();
  handle_ = open(name.c_str(), O_RDONLY | O_CLOEXEC);
  return handle_ != kClosed;
}

void File::Close() {
  if (handle_ != kClosed) static_cast<void>(close(static_cast<int>(handle_)));
  handle_ = kClosed;
  failure_ = Failure::kNone;
}

std::size_t File::ReadAt(std::int64_t offset, std::span<std::uint8_t> destination) {
  std::size_t count = 0;
  while (count < destination.size()) {
    const ssize_t got = pread(static_cast<int>(handle_), destination.data() + count,
                              destination.size() - count, offset + static_cast<std::int64_t>(count));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) failure_ = FailureOf(errno);
    if (got <= 0) break;
    count += static_cast<std::size_t>(got);
  }
  return count;
}

std::int64_t File::End() const { return lseek(static_cast<int>(handle_), 0, SEEK_END); }

}  // namespace vessa
