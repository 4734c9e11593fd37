#pragma once

#include <span>
#include <string>

#include "emulator/host_error.h"
#include "emulator/stream_object.h"

namespace fuzz {

/// An output that is full some day, as a disk is: small inputs may stand for very long outputs.
class BoundedStream : public emulator::MemoryStream {
 public:
  explicit BoundedStream(std::int64_t most_bytes) : most_bytes_{most_bytes} {}

  emulator::Value Call(std::string_view method, std::span<const emulator::Value> arguments) override {
    if (method == "Write" && IsFull()) throw emulator::HostError{emulator::kWriteError};
    return MemoryStream::Call(method, arguments);
  }

  bool IsFull() const { return ByteCount() > most_bytes_; }

 private:
  std::int64_t most_bytes_;
};

}  // namespace fuzz
