#include <sys/stat.h>

#include "platform/file.h"

namespace vessa {
namespace {

static_assert(sizeof(off_t) == sizeof(std::int64_t));

bool IsDirectory(std::FILE* file) {
  struct stat facts {};
  return fstat(fileno(file), &facts) == 0 && S_ISDIR(facts.st_mode);
}

}  // namespace

std::FILE* OpenForReading(const std::string& name) {
  std::FILE* file = std::fopen(name.c_str(), "rb");
  // The open itself succeeds on a directory here; only reading it fails.
  if (file == nullptr || !IsDirectory(file)) return file;
  static_cast<void>(std::fclose(file));
  return nullptr;
}

std::int64_t TellFile(std::FILE* file) { return ftello(file); }

bool SeekFile(std::FILE* file, std::int64_t offset, int whence) { return fseeko(file, offset, whence) == 0; }

}  // namespace vessa
