#pragma once

#include <functional>

namespace emulator {

/// Runs `body` in `count` processes at once, each with its number from 0, and returns when all have ended. They die
/// with this one. Where a process cannot be split, one after the other in this process.
/// @throws std::system_error
void RunInProcesses(int count, const std::function<void(int number)>& body);

/// False where RunInProcesses has one run at a time.
bool CanRunInParallel();

}  // namespace emulator
