#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>

#include "stream/input_stream.h"

enum class Passing { kByReading, kByMoving };

/// A stream over bytes in memory that counts what is read. It answers as a local file does: a peek at the
/// last few bytes is a failure, and skipping goes past the end without one.
class MemoryInputStream : public vessa::CVessaInputStream {
 public:
  explicit MemoryInputStream(std::string bytes, Passing passing = Passing::kByReading)
      : bytes_(std::move(bytes)), passing_{passing} {}

  vessa::Status Read(std::span<std::uint8_t> destination) override {
    if (Left() < destination.size()) return vessa::kReadFell;
    Copy(destination);
    position_ += destination.size();
    bytes_read_ += destination.size();
    return vessa::kSuccess;
  }
  vessa::Status Peek(std::span<std::uint8_t> destination, bool& at_end) override {
    at_end = Left() == 0;
    if (at_end) return vessa::kSuccess;
    if (Left() < destination.size()) return vessa::E_INVALIDARG;
    Copy(destination);
    return vessa::kSuccess;
  }
  vessa::Status Skip(std::int64_t count) override {
    position_ = static_cast<std::size_t>(static_cast<std::int64_t>(position_) + count);
    return vessa::kSuccess;
  }
  std::int64_t GetPosition() override { return static_cast<std::int64_t>(position_) + 1; }
  std::int32_t GetSize() override { return static_cast<std::int32_t>(bytes_.size()) + 1; }
  vessa::Status Open() override { return vessa::kSuccess; }
  std::uint32_t GetOref() override { return 0; }
  bool PassOver(std::uint64_t count) override {
    if (passing_ == Passing::kByReading || Left() < count) return false;
    position_ += static_cast<std::size_t>(count);
    return true;
  }

  std::size_t BytesRead() const { return bytes_read_; }

 private:
  std::size_t Left() const { return position_ < bytes_.size() ? bytes_.size() - position_ : 0; }
  void Copy(std::span<std::uint8_t> destination) const {
    std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(position_), destination.size(),
                destination.begin());
  }

  std::string bytes_;
  Passing passing_;
  std::size_t position_ = 0;
  std::size_t bytes_read_ = 0;
};
