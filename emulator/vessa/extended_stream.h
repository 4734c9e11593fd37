#pragma once

#include <memory>
#include <string>
#include <utility>

#include "emulator/stream_object.h"

namespace emulator::tool {

/// A stream that goes on, behind its end, with bytes of our own.
class ExtendedStream : public StreamObject {
 public:
  ExtendedStream(std::shared_ptr<StreamObject> stream, std::string more_bytes)
      : stream_(std::move(stream)), more_bytes_(std::move(more_bytes)) {}

  std::int64_t ByteCount() const override {
    return stream_->ByteCount() + static_cast<std::int64_t>(more_bytes_.size());
  }
  std::string_view BytesAt(std::int64_t offset, std::int64_t count) override;

 protected:
  void Append(std::string_view) override { throw HostError{kWriteError}; }

 private:
  std::shared_ptr<StreamObject> stream_;
  std::string more_bytes_;
  std::string handed_out_;
};

}  // namespace emulator::tool
