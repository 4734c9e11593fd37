#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "emulator/call_watcher.h"

namespace emulator::tool {

/// Counts callbacks and adds up where the time of calls went: in the library, or in the host's answers.
class TraceSummary : public CallWatcher {
 public:
  void OnCall(const CallOut& call) override;
  void OnCallback(const Callback& callback) override;
  void OnReturn(const CallOut& call, std::int32_t returned, std::chrono::nanoseconds took) override;

  /// A table on standard error: the longest time first.
  void Print() const;

 private:
  struct Row {
    std::uint64_t calls = 0;
    std::uint64_t bytes = 0;
    std::uint64_t errors = 0;
    std::chrono::nanoseconds time{0};
  };
  /// A call that has not returned yet.
  struct OpenCall {
    std::chrono::nanoseconds callbacks{0};     ///< what its callbacks took
    std::chrono::nanoseconds calls_inside{0};  ///< what calls made in the callback at hand took
  };

  std::map<std::string, Row, std::less<>> rows_;
  std::vector<OpenCall> open_;
};

}  // namespace emulator::tool
