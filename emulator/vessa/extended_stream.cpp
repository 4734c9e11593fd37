#include "emulator/vessa/extended_stream.h"

#include <algorithm>

namespace emulator::tool {

std::string_view ExtendedStream::BytesAt(std::int64_t offset, std::int64_t count) {
  const std::int64_t own = stream_->ByteCount();
  handed_out_.clear();
  if (offset < own) handed_out_ = stream_->BytesAt(offset, std::min(count, own - offset));
  const std::int64_t missing = count - static_cast<std::int64_t>(handed_out_.size());
  handed_out_.append(more_bytes_, static_cast<std::size_t>(std::max(offset - own, std::int64_t{0})),
                     static_cast<std::size_t>(missing));
  return handed_out_;
}

}  // namespace emulator::tool
