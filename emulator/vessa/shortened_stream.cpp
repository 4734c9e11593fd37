#include "emulator/vessa/shortened_stream.h"

#include <array>

namespace emulator::tool {

std::string_view ShortenedStream::BytesAt(std::int64_t offset, std::int64_t count) {
  stream_->MoveTo(offset + 1);
  const std::array<Value, 1> arguments{count};
  handed_out_ = AsBytes(stream_->Call("Read", arguments));
  return handed_out_;
}

}  // namespace emulator::tool
