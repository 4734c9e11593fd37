#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "tests/callouts/fault_run.h"
#include "tests/callouts/loaded_library.h"
#include "tests/callouts/scenarios.h"

// Each callback of a call that reads fails in turn, once alone and once with all behind it: the call answers with the
// failure that is meant for that place and tells nothing behind it, the host's stream stands behind the last byte that
// was read, and the next call works as if nothing had been.

namespace emulator {
namespace {

using fault_run::Access;
using fault_run::CleanRun;
using fault_run::kSwallowed;
using fault_run::RunWithoutFaults;

/// A method or property of the streams, and the words for its failure.
struct StreamWords {
  std::string_view name;
  std::string_view words;
};

const StreamWords* WordsOfStream(const Access& access) {
  static constexpr std::array<StreamWords, 4> kWords{{
      {"Peek", "Callin error peeking bytes: 5 - "},
      {"Skip", "Callin error skipping bytes: 5 - "},
      {"Write", "Callin error writing bytes: 5 - "},
      {"Position", "Callin error getting underlying stream position: 5 - "},
  }};
  for (const StreamWords& words : kWords) {
    if (access.Name() == words.name) return &words;
  }
  return nullptr;
}

bool IsEvent(const Access& access) {
  return access.Begins("PushMethod") && WordsOfStream(access) == nullptr &&
         access.Name() != "ShouldStopDecomposition";
}

std::string WordsFor(const Access& access) {
  if (const StreamWords* words = WordsOfStream(access)) return std::string(words->words);
  return IsEvent(access) ? "Callin error calling method '" + access.Name() + "': 5 - " : "";
}

/// What ends a stream's life, and whose failure nobody hears of: the last Skip of the stream that is read, the last
/// Write of a result stream.
bool IsSwallowed(const CleanRun& run, const Access& access) {
  return &access == &run.accesses.back() && (access.Name() == "Skip" || access.Name() == "Write");
}

std::vector<std::string> ExpectedMessages(const CleanRun& run) {
  std::vector<std::string> messages;
  std::string step = " wrapping input stream";
  for (const Access& access : run.accesses) {
    if (access.Begins("PushGlobal")) step = " decomposing stream";
    const std::string message = IsSwallowed(run, access) ? kSwallowed : WordsFor(access) + step;
    messages.insert(messages.end(), access.lines.size(), message);
  }
  return messages;
}

/// Where the stream that is read must stand: behind what the events up to and with that of the access are made from.
std::int64_t PlaceBehindEvents(const CleanRun& run, const Access& access) {
  const std::size_t told = run.before[access.first].events + (IsEvent(access) ? 1 : 0);
  const auto& events = run.attempt.events;
  return 1 + BytesBehind({events.begin(), events.begin() + static_cast<std::ptrdiff_t>(told)});
}

/// The end of the stream's life moves it behind the last byte read, wherever the look-ahead began.
void ExpectTheStreamBehindWhatWasRead(CleanRun& run) {
  if (run.attempt.positions.empty()) return;  // a file is read
  for (const Access& access : run.accesses) {
    if (WordsOfStream(access) != nullptr) continue;
    const std::int64_t place = PlaceBehindEvents(run, access);
    for (std::size_t i = 0; i < access.lines.size(); ++i) run.left_at[access.first + i].front() = place;
  }
}

int TryEveryFault(const Scenario& scenario) {
  CleanRun clean = RunWithoutFaults(scenario);
  ExpectTheStreamBehindWhatWasRead(clean);
  return TryAllFaults(scenario, clean, ExpectedMessages(clean));
}

TEST(FaultInjection, NamesThePlaceTellsNothingBehindItAndTheNextCallWorks) {
  int faults = 0;
  for (const Scenario& scenario : Decompositions()) faults += TryEveryFault(scenario);
  for (const Scenario& scenario : Queries()) faults += TryEveryFault(scenario);
  std::printf("%d faults tried\n", faults);
  EXPECT_GT(faults, 3000);
}

TEST(FaultInjection, LeavesTheStreamBehindWhatTheEventsTellWhereNothingFails) {
  for (const Scenario& scenario : Decompositions()) {
    const CleanRun clean = RunWithoutFaults(scenario);
    EXPECT_EQ(clean.attempt.positions.front(), 1 + BytesBehind(clean.attempt.events)) << scenario.name;
  }
}

TEST(FaultInjection, FindsNothingToFailWhereTheHostIsNotCalled) {
  for (const Scenario& scenario : Lookups()) {
    Host host;
    EXPECT_EQ(scenario.call(host, TheLibrary()).status, 0) << scenario.name;
    EXPECT_EQ(host.CallbackCount(), 0U) << scenario.name;
  }
}

}  // namespace
}  // namespace emulator
