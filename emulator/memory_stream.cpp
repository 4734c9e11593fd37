#include "emulator/stream_object.h"

namespace emulator {

std::string_view MemoryStream::BytesAt(std::int64_t offset, std::int64_t count) {
  const std::string_view bytes = bytes_;
  return bytes.substr(static_cast<std::size_t>(offset), static_cast<std::size_t>(count));
}

}  // namespace emulator
