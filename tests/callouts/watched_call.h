#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "emulator/host.h"

namespace emulator {

/// How a call went that may never return.
struct WatchedCall {
  bool returned = false;
  /// The callbacks that it made, a line each (see CallbackLine), up to its return or to where it fell silent.
  std::vector<std::string> callbacks;

  /// Methods called and properties read, in order.
  std::vector<std::string> Names() const;

  /// Methods called of one object, in order, with their arguments as they were pushed: `StartElement 1048592 "PN" 2`.
  std::vector<std::string> MethodsOf(std::uint32_t oref) const;
};

/// Runs the call in a process of its own, on a new host that is handed to it. A call that makes no callback for a
/// second is ended with its process; so is any after a minute. To be called once in a test, before anything else there
/// that takes time: where a process cannot be split in two, the program is started again and comes to this test anew.
WatchedCall Watch(const std::function<void(Host&)>& call);

/// Has this program, should Watch start it again, come to that test at once.
void StartAgainWith(const std::string& full_test_name);

}  // namespace emulator
