#include <stdio.h>

#include "platform/file.h"

namespace vessa {

std::int64_t TellFile(std::FILE* file) { return _ftelli64(file); }

bool SeekFile(std::FILE* file, std::int64_t offset, int whence) {
  return _fseeki64(file, offset, whence) == 0;
}

}  // namespace vessa
