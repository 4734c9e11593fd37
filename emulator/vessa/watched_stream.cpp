#include "emulator/vessa/watched_stream.h"

#include "emulator/vessa/host_time.h"

namespace emulator::tool {

Value WatchedStream::Call(std::string_view method, std::span<const Value> arguments) {
  const HostTime host_time(progress_);
  try {
    Value result = stream_->Call(method, arguments);
    Publish();
    return result;
  } catch (const HostError& error) {
    if (error.code == kReadError) has_read_error_ = true;
    throw;
  }
}

Value WatchedStream::Property(std::string_view name) {
  const HostTime host_time(progress_);
  return stream_->Property(name);
}

void WatchedStream::Publish() {
  const auto consumed = static_cast<std::uint64_t>(stream_->Position() - 1);
  progress_.stream_offset = consumed;
  progress_.at_end = consumed >= static_cast<std::uint64_t>(stream_->ByteCount()) ? 1 : 0;
}

}  // namespace emulator::tool
