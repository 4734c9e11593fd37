#pragma once

#include <algorithm>
#include <ctime>
#include <limits>

/// Seconds: no clock ticks slower.
inline constexpr double kCoarseTick = 0.1;

/// Seconds of processor time that `work` takes, the best of three runs: what else the machine does counts little (on
/// Windows, where std::clock tells the time of day, a little more).
template <class Work>
double ProcessorSeconds(Work work) {
  double best = std::numeric_limits<double>::max();
  for (int run = 0; run < 3; ++run) {
    const std::clock_t start = std::clock();
    work();
    best = std::min(best, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
  }
  return best;
}
