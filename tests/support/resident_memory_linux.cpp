#include <unistd.h>

#include <fstream>

#include "tests/support/resident_memory.h"

std::size_t ResidentMemory() {
  std::size_t size_in_pages = 0;
  std::size_t resident_pages = 0;
  std::ifstream("/proc/self/statm") >> size_in_pages >> resident_pages;
  return resident_pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}
