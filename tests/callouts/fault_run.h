#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/host.h"

// Each callback of a call fails in turn, once alone and once with all behind it. A run without faults tells what each
// callback is about, how much stands on the host's stack before it, and what the output is: from these follow the
// text, the stack and the start of the output that each fault must lead to.

namespace emulator::fault_run {

/// With which the callbacks fail, and the host's words for it.
inline constexpr int kFaultStatus = 5;
inline constexpr const char* kFaultWords = "max string";

/// How one call of a call-out that writes went.
struct Attempt {
  bool succeeded = false;
  std::string message;
  std::string written;
};

/// One call over objects of its own.
struct Scenario {
  std::string name;
  std::function<Attempt(Host&)> call;
};

/// What one access to the host consisted of.
struct Access {
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
  std::vector<std::size_t> depth_before;  ///< of the host's stack, for each callback
};

CleanRun RunWithoutFaults(const Scenario& scenario);

/// Stands for the message where the call goes on in spite of the fault.
inline constexpr const char* kSwallowed = "swallowed";

/// Fails every callback and holds the outcome against what is expected of each.
/// @return  faults tried
int TryAllFaults(const Scenario& scenario, const CleanRun& clean, const std::vector<std::string>& expected);

}  // namespace emulator::fault_run
