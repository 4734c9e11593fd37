#include "tests/callouts/fault_run.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace emulator::fault_run {

bool Access::Pushes(std::string_view text) const {
  return std::find(lines.begin(), lines.end(), "PushString \"" + std::string(text) + '"') != lines.end();
}

bool Access::Does(std::string_view operation) const {
  return std::any_of(lines.begin(), lines.end(),
                     [&](const auto& line) { return line.starts_with(operation); });
}

std::string Access::Name() const {
  const std::string& line = lines.front();
  const std::size_t first = line.find('"');
  return line.substr(first + 1, line.find('"', first + 1) - first - 1);
}

CleanRun RunWithoutFaults(const Scenario& scenario) {
  CleanRun run;
  Host host;
  host.Record(true);
  run.depth_before.push_back(0);
  host.Observe([&](const Callback&) { run.depth_before.push_back(host.StackDepth()); });
  run.attempt = scenario.call(host);
  EXPECT_TRUE(run.attempt.succeeded) << run.attempt.message;
  EXPECT_EQ(host.StackDepth(), 0U);
  for (const std::string& line : host.Calls()) {
    const bool begins =
        line.starts_with("PushMethod") || line.starts_with("PushProperty") || line.starts_with("PushGlobal");
    if (begins) run.accesses.emplace_back();
    run.accesses.back().lines.push_back(line);
  }
  return run;
}

namespace {

/// Fails one callback of the scenario.
void TryFault(const Scenario& scenario, const CleanRun& clean, const std::string& expected,
              std::size_t callback, bool from_then_on) {
  Host host;
  host.faults().FailNth(callback + 1, kFaultStatus, from_then_on);
  const Attempt attempt = scenario.call(host);
  ASSERT_GT(host.faults().Hits(), 0U);
  EXPECT_EQ(attempt.succeeded, expected == kSwallowed);
  EXPECT_EQ(attempt.message, expected == kSwallowed ? "" : expected);
  EXPECT_EQ(host.StackDepth(), clean.depth_before[callback]);
  EXPECT_EQ(host.OpenLongStrings(), 0U);
  EXPECT_TRUE(clean.attempt.written.starts_with(attempt.written));
}

}  // namespace

int TryAllFaults(const Scenario& scenario, const CleanRun& clean, const std::vector<std::string>& expected) {
  for (std::size_t callback = 0; callback < expected.size() && !testing::Test::HasFailure(); ++callback) {
    SCOPED_TRACE(scenario.name + ", callback " + std::to_string(callback + 1));
    for (const bool from_then_on : {false, true}) {
      TryFault(scenario, clean, expected[callback], callback, from_then_on);
      Host host;
      EXPECT_EQ(scenario.call(host).written, clean.attempt.written) << "the next call";
      EXPECT_EQ(host.StackDepth(), 0U);
    }
  }
  return static_cast<int>(2 * expected.size());
}

}  // namespace emulator::fault_run
