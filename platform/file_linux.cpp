#include <sys/types.h>

#include "platform/file.h"

namespace vessa {

static_assert(sizeof(off_t) == sizeof(std::int64_t));

std::int64_t TellFile(std::FILE* file) { return ftello(file); }

bool SeekFile(std::FILE* file, std::int64_t offset, int whence) { return fseeko(file, offset, whence) == 0; }

}  // namespace vessa
