#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "emulator/object.h"

namespace emulator {

/// A client object: answers ShouldStopDecomposition(tag) with 1 when its predicate says so, else with 0.
class StopAtTag : public Object {
 public:
  explicit StopAtTag(std::uint32_t tag);
  explicit StopAtTag(std::function<bool(std::uint32_t tag)> predicate);

  Value Call(std::string_view method, std::span<const Value> arguments) override;

  /// Tags that it was asked about, in order.
  const std::vector<std::uint32_t>& Asked() const { return asked_; }

  /// The nth question, counted from 1, fails with that status.
  void FailAt(std::uint64_t n, int status);

 private:
  std::function<bool(std::uint32_t)> predicate_;
  std::vector<std::uint32_t> asked_;
  std::uint64_t fail_at_ = 0;
  int fail_status_ = 0;
};

}  // namespace emulator
