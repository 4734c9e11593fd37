#pragma once

#include <cstdint>
#include <functional>

#include "stream/input_stream.h"

/// Thrown when a stream is peeked at behind its end again and again: a decomposition that would never return.
struct NeverReturns {
  std::uint64_t callbacks_while_waiting;
};

/// A stream in front of another, that loses its patience with a reader who does not take the end for an end.
class ImpatientStream : public vessa::CVessaInputStream {
 public:
  /// @param callbacks  tells how many callbacks the host has answered so far
  ImpatientStream(vessa::CVessaInputStream& stream, std::function<std::uint64_t()> callbacks)
      : stream_{stream}, callbacks_{std::move(callbacks)} {}

  vessa::Status Peek(std::span<std::uint8_t> destination, bool& at_end) override {
    const vessa::Status status = stream_.Peek(destination, at_end);
    if (!at_end) {
      peeks_at_end_ = 0;
    } else if (peeks_at_end_++ == 0) {
      callbacks_at_end_ = callbacks_();
    } else if (peeks_at_end_ == kPatience) {
      throw NeverReturns{callbacks_() - callbacks_at_end_};
    }
    return status;
  }
  vessa::Status Read(std::span<std::uint8_t> destination) override { return stream_.Read(destination); }
  vessa::Status Skip(std::int64_t count) override { return stream_.Skip(count); }
  std::int64_t GetPosition() override { return stream_.GetPosition(); }
  std::int32_t GetSize() override { return stream_.GetSize(); }
  vessa::Status Open() override { return stream_.Open(); }
  std::uint32_t GetOref() override { return stream_.GetOref(); }
  bool PassOver(std::uint64_t count) override { return stream_.PassOver(count); }

 private:
  static constexpr int kPatience = 1000;

  vessa::CVessaInputStream& stream_;
  std::function<std::uint64_t()> callbacks_;
  std::uint64_t callbacks_at_end_ = 0;
  int peeks_at_end_ = 0;
};
