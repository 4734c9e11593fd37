#pragma once

#include <span>
#include <string>
#include <utility>

#include "emulator/host_error.h"
#include "emulator/stream_object.h"

namespace fuzz {

/// The stream of a query. Nobody hears from a query while it runs, so a host that knows the bytes to end inside of an
/// item of defined length lets the peek behind their end fail, and the library peeks no more.
class AskedStream : public emulator::MemoryStream {
 public:
  AskedStream(std::string bytes, bool fails_at_end)
      : MemoryStream(std::move(bytes)), fails_at_end_{fails_at_end} {}

  emulator::Value Call(std::string_view method, std::span<const emulator::Value> arguments) override {
    if (fails_at_end_ && method == "Peek" && Position() > ByteCount()) {
      throw emulator::HostError{emulator::kReadError};
    }
    return MemoryStream::Call(method, arguments);
  }

 private:
  bool fails_at_end_;
};

}  // namespace fuzz
