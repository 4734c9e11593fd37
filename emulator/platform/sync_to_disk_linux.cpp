#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "emulator/platform/sync_to_disk.h"

namespace emulator {

void SyncToDisk(const std::string& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) throw std::system_error(errno, std::generic_category(), path);
  const int code = fsync(file) == 0 ? 0 : errno;
  close(file);
  if (code != 0) throw std::system_error(code, std::generic_category(), path);
}

}  // namespace emulator
