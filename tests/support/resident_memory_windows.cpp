#include <windows.h>
// Behind the header that it needs.
#include <psapi.h>

#include "tests/support/resident_memory.h"

std::size_t ResidentMemory() {
  PROCESS_MEMORY_COUNTERS counters{};
  K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return counters.WorkingSetSize;
}
