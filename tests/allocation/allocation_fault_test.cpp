#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>

#include "emulator/host.h"
#include "emulator/library.h"
#include "modules/VessaDCM/call_out_table.h"
#include "tests/allocation/allocation_faults.h"
#include "tests/callouts/scenarios.h"

// Each allocation of a call fails in turn, once with all behind it and once alone: the call answers with a failure, whose
// text needs no memory, and the next call works as if nothing had been. All behind it comes first, so that what the
// compiler's runtime needs for the first exception of the process is among them.

namespace emulator {
namespace {

const Library& TheLibrary() {
  static const Library library = Library::Linked(GetZFTable);
  return library;
}

ListResult AnswerWithoutFaults(const Scenario& scenario) {
  Host host;
  return scenario.call(host, TheLibrary());
}

bool AnswersAlike(const ListResult& one, const ListResult& other) {
  const auto same_data = [](const ListValue& a, const ListValue& b) { return a.data == b.data; };
  return one.status == other.status && !other.values.empty() &&
         std::equal(one.values.begin(), one.values.end(), other.values.begin(), other.values.end(),
                    same_data);
}

/// Fails the nth allocation of the scenario. @return  false when the scenario makes fewer
bool TryFault(const Scenario& scenario, std::uint64_t n, bool from_then_on) {
  Host host;
  AllocationFaults::FailNth(n, from_then_on);
  const ListResult result = scenario.call(host, TheLibrary());
  const std::uint64_t failed = AllocationFaults::Failed();
  AllocationFaults::FailNth(0, false);
  EXPECT_EQ(result.returned, 0);
  if (failed == 0) {
    EXPECT_EQ(result.status, 0);
    return false;
  }
  // A stop that found its memory in the runtime's reserve is as good as any.
  EXPECT_TRUE(result.status == 1 || AnswersAlike(result, AnswerWithoutFaults(scenario)))
      << "succeeded although allocation " << n << " failed";
  return true;
}

int TryEveryFault(const Scenario& scenario) {
  SCOPED_TRACE(scenario.name);
  int faults = 0;
  for (const bool from_then_on : {true, false}) {
    for (std::uint64_t n = 1; TryFault(scenario, n, from_then_on); ++n) {
      ++faults;
      Host host;
      EXPECT_EQ(scenario.call(host, TheLibrary()).status, 0) << "after allocation " << n << " had failed";
      EXPECT_EQ(host.StackDepth(), 0U);
    }
  }
  return faults;
}

TEST(AllocationFaults, AreFailuresOfTheCallAndOfNoOther) {
  int faults = 0;
  for (const auto& scenarios : {Decompositions(), Queries(), Compositions(), Packings(), Lookups()}) {
    for (const Scenario& scenario : scenarios) {
      const int tried = TryEveryFault(scenario);
      std::printf("%4d allocation faults: %s\n", tried, scenario.name.c_str());
      faults += tried;
    }
  }
  std::printf("%d faults tried\n", faults);
  EXPECT_GT(faults, 100);
}

}  // namespace
}  // namespace emulator
