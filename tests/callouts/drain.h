#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "emulator/host_error.h"
#include "emulator/object.h"
#include "tests/support/resident_memory.h"

namespace emulator {

/// A stream to be written that keeps no bytes, only how they came.
class Drain : public Object {
 public:
  Value Call(std::string_view method, std::span<const Value> arguments) override {
    if (method != "Write") return Object::Call(method, arguments);
    const auto* bytes = std::get_if<std::string>(arguments.data());
    if (bytes == nullptr) throw HostError{kWrongParameters};
    if (writes_++ % kLookEvery == 0) LookAtMemory();
    total_ += bytes->size();
    largest_ = std::max(largest_, bytes->size());
    return {};
  }

  std::uint64_t Total() const { return total_; }
  std::size_t Largest() const { return largest_; }
  /// How far the process has grown since the first looks at it; 0 where that tells nothing.
  std::size_t MemoryGrowth() const { return kResidentMemoryTells && most_ > base_ ? most_ - base_ : 0; }

 private:
  static constexpr std::uint64_t kLookEvery = 100;
  static constexpr std::uint64_t kSettled = 2 * kLookEvery;  // by then all buffers have been touched

  void LookAtMemory() {
    const std::size_t now = ResidentMemory();
    if (writes_ <= kSettled) base_ = std::max(base_, now);
    most_ = std::max(most_, now);
  }

  std::uint64_t total_ = 0;
  std::uint64_t writes_ = 0;
  std::size_t largest_ = 0;
  std::size_t base_ = 0;
  std::size_t most_ = 0;
};

}  // namespace emulator
