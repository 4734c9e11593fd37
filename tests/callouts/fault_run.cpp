#include "tests/callouts/fault_run.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/callouts/loaded_library.h"

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
  const std::size_t first_quote = line.find('"');
  return line.substr(first_quote + 1, line.find('"', first_quote + 1) - first_quote - 1);
}

namespace {

std::vector<Access> AccessesIn(const std::vector<std::string>& calls) {
  std::vector<Access> accesses;
  for (std::size_t callback = 0; callback < calls.size(); ++callback) {
    const std::string& line = calls[callback];
    const bool begins =
        line.starts_with("PushMethod") || line.starts_with("PushProperty") || line.starts_with("PushGlobal");
    if (begins) accesses.push_back({callback, {}});
    accesses.back().lines.push_back(line);
  }
  return accesses;
}

/// See CleanRun::left_at.
std::vector<std::vector<std::int64_t>> PlacesLeft(const CleanRun& run) {
  std::vector<std::vector<std::int64_t>> places;
  for (const Access& access : run.accesses) {
    const bool skips_again = access.Name() == "Skip" && &access != &run.accesses.back();
    for (std::size_t i = 0; i < access.lines.size(); ++i) {
      const std::size_t callback = access.first + (skips_again ? access.lines.size() : i);
      places.push_back(run.before[callback].positions);
    }
  }
  return places;
}

/// What was written before the failure has arrived; a block may still be sent behind it.
void ExpectWrittenSoFar(const Attempt& attempt, const Standing& before) {
  for (std::size_t stream = 0; stream < before.byte_counts.size(); ++stream) {
    EXPECT_GE(attempt.bytes[stream].size(), before.byte_counts[stream]) << "stream " << stream;
  }
}

void ExpectFailedWith(const Attempt& attempt, const std::string& message, const CleanRun& clean,
                      std::size_t callback) {
  EXPECT_EQ(attempt.result.status, 1);
  EXPECT_EQ(attempt.message, message);
  EXPECT_TRUE(IsStartOf(attempt, clean.attempt));
  EXPECT_EQ(attempt.events.size(), clean.before[callback].events);
  ExpectWrittenSoFar(attempt, clean.before[callback]);
}

/// All that does not hang on what the fault hinders is as without it.
void ExpectSwallowed(const Attempt& attempt, const CleanRun& clean) {
  EXPECT_EQ(attempt.result.status, 0) << attempt.message;
  Attempt hindered = clean.attempt;
  hindered.bytes = attempt.bytes;
  hindered.positions = attempt.positions;
  hindered.stack_depth = attempt.stack_depth;
  EXPECT_TRUE(WentAlike(attempt, hindered));
  EXPECT_TRUE(IsStartOf(attempt, clean.attempt));
}

/// Fails one callback of the scenario.
void TryFault(const Scenario& scenario, const CleanRun& clean, const std::string& expected,
              std::size_t callback, bool from_then_on) {
  Host host;
  host.faults().FailNth(callback + 1, kFaultStatus, from_then_on);
  const Attempt attempt = Try(scenario, host, TheLibrary());
  ASSERT_GT(host.faults().Hits(), 0U);
  EXPECT_EQ(attempt.result.returned, 0);
  if (expected == kSwallowed) {
    ExpectSwallowed(attempt, clean);
  } else {
    ExpectFailedWith(attempt, expected, clean, callback);
  }
  EXPECT_EQ(attempt.stack_depth, clean.before[callback].stack_depth);
  EXPECT_EQ(attempt.open_long_strings, 0U);
  EXPECT_EQ(attempt.positions, from_then_on ? clean.before[callback].positions : clean.left_at[callback]);
}

void ExpectTheSameOfTheNextCall(const Scenario& scenario, const CleanRun& clean) {
  Host host;
  EXPECT_TRUE(WentAlike(Try(scenario, host, TheLibrary()), clean.attempt)) << "the next call";
}

}  // namespace

CleanRun RunWithoutFaults(const Scenario& scenario) {
  SCOPED_TRACE(scenario.name);
  CleanRun run;
  Host host;
  host.Record(true);
  host.Observe([&](const Callback&) { run.before.push_back(StandingOf(host)); });
  run.attempt = Try(scenario, host, TheLibrary());
  EXPECT_TRUE(run.attempt.result.Succeeded()) << run.attempt.message;
  EXPECT_EQ(run.attempt.stack_depth, 0U);
  EXPECT_EQ(run.attempt.open_long_strings, 0U);
  run.accesses = AccessesIn(host.Calls());
  Standing start = run.before.front();  // the first callback of all only pushes
  start.stack_depth = 0;
  run.before.insert(run.before.begin(), start);
  run.left_at = PlacesLeft(run);
  return run;
}

int TryAllFaults(const Scenario& scenario, const CleanRun& clean, const std::vector<std::string>& expected) {
  for (std::size_t callback = 0; callback < expected.size() && !testing::Test::HasFailure(); ++callback) {
    SCOPED_TRACE(scenario.name + ", callback " + std::to_string(callback + 1));
    for (const bool from_then_on : {false, true}) {
      TryFault(scenario, clean, expected[callback], callback, from_then_on);
      ExpectTheSameOfTheNextCall(scenario, clean);
    }
  }
  return static_cast<int>(2 * expected.size());
}

}  // namespace emulator::fault_run
