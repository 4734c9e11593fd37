#include "emulator/platform/parallel_processes.h"

namespace emulator {

void RunInProcesses(int count, const std::function<void(int)>& body) {
  for (int number = 0; number < count; ++number) body(number);
}

bool CanRunInParallel() { return false; }

}  // namespace emulator
