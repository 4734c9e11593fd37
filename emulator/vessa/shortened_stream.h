#pragma once

#include <memory>
#include <string_view>
#include <utility>

#include "emulator/stream_object.h"

namespace emulator::tool {

/// A stream that ends where another one goes on.
class ShortenedStream : public StreamObject {
 public:
  /// @param byte_count  at most that of `stream`
  ShortenedStream(std::shared_ptr<StreamObject> stream, std::int64_t byte_count)
      : stream_(std::move(stream)), byte_count_(byte_count) {}

  std::int64_t ByteCount() const override { return byte_count_; }
  std::string_view BytesAt(std::int64_t offset, std::int64_t count) override {
    return stream_->BytesAt(offset, count);
  }

 protected:
  void Append(std::string_view) override { throw HostError{kWriteError}; }

 private:
  std::shared_ptr<StreamObject> stream_;
  std::int64_t byte_count_;
};

}  // namespace emulator::tool
