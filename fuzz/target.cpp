#include "fuzz/target.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace fuzz {

void Require(bool condition, const char* what) {
  if (condition) return;
  static_cast<void>(std::fprintf(stderr, "FINDING: %s\n", what));
  std::abort();
}

}  // namespace fuzz

/// libFuzzer's entry. Its own limit is of the wall clock, which on a busy machine says little.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::clock_t start = std::clock();
  fuzz::RunInput({data, size});
  fuzz::Require(std::clock() - start < CLOCKS_PER_SEC, "an input took more than a second of processor time");
  return 0;
}
