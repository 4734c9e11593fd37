#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tests/callouts/attempt.h"

// Each callback of a call fails in turn, once alone and once with all behind it. A run without faults tells what each
// callback is about, and how far the call has come before it: from these follow the text, the host's stack, the events,
// the output and the streams' positions that each fault must lead to.

namespace emulator::fault_run {

/// With which the callbacks fail, and the host's words for it.
inline constexpr int kFaultStatus = 5;
inline constexpr const char* kFaultWords = "max string";

/// What one access to the host consisted of.
struct Access {
  std::size_t first = 0;           ///< callback that it begins with, counted from 0
  std::vector<std::string> lines;  ///< a callback each, from what it begins with to its last pop

  bool Begins(std::string_view text) const { return lines.front().starts_with(text); }
  bool Pushes(std::string_view text) const;
  bool Does(std::string_view operation) const;
  /// The method or property, or the global.
  std::string Name() const;
};

/// A run without faults.
struct CleanRun {
  Attempt attempt;
  std::vector<Access> accesses;
  std::vector<Standing> before;  ///< each callback; and behind the last
  /// Where the streams stand behind a call in which that callback alone failed. At first: where they stood, and where a
  /// Skip failed, behind it, since the end of the stream's life makes good for it.
  std::vector<std::vector<std::int64_t>> left_at;
};

CleanRun RunWithoutFaults(const Scenario& scenario);

/// Stands for the message where the call goes on in spite of the fault.
inline constexpr const char* kSwallowed = "swallowed";

/// Fails every callback and holds the outcome against what is expected of each.
/// @param expected  messages
/// @return  faults tried
int TryAllFaults(const Scenario& scenario, const CleanRun& clean, const std::vector<std::string>& expected);

}  // namespace emulator::fault_run
