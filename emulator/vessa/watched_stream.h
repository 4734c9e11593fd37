#pragma once

#include <memory>
#include <span>
#include <string_view>
#include <utility>

#include "emulator/stream_object.h"
#include "emulator/vessa/call_progress.h"

namespace emulator::tool {

/// A stream as the library sees it, whose position the watching process is told.
class WatchedStream : public Object {
 public:
  WatchedStream(std::shared_ptr<StreamObject> stream, CallProgress& progress)
      : stream_(std::move(stream)), progress_(progress) {}

  Value Call(std::string_view method, std::span<const Value> arguments) override;
  Value Property(std::string_view name) override;

  /// Tells the watching process where the stream stands.
  void Publish();
  /// True when the system failed to read the file behind the stream.
  bool HasReadError() const { return has_read_error_; }

 private:
  std::shared_ptr<StreamObject> stream_;
  CallProgress& progress_;
  bool has_read_error_ = false;
};

}  // namespace emulator::tool
