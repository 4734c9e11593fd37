#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "tests/callouts/fault_run.h"
#include "tests/callouts/scenarios.h"

namespace emulator {
namespace {

using fault_run::CleanRun;
using fault_run::RunWithoutFaults;

TEST(PackingFaults, FailTheCallLeaveTheStartOfTheOutputAndTheNextCallWorks) {
  int faults = 0;
  for (const Scenario& scenario : Packings()) {
    const CleanRun clean = RunWithoutFaults(scenario);
    faults += TryAllFaults(scenario, clean, std::vector<std::string>(clean.left_at.size()));
  }
  std::printf("%d faults tried\n", faults);
  EXPECT_GT(faults, 300);
}

}  // namespace
}  // namespace emulator
