#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "tests/callouts/loaded_library.h"
#include "tests/callouts/scenarios.h"

// Each callback of a call that reads fails in turn, once alone and once with all behind it: the call answers with the
// failure that is meant for that place, and the next call works as if nothing had been.

namespace emulator {
namespace {

constexpr int kStatus = 5;

/// What the callback that failed was about, read off the recorded calls: the method or property that it belongs to.
struct Place {
  std::string owner;  // "Peek", "Position", "StartElement", ...; "" for a global
  bool opening;       // still wrapping the stream
  bool closing;       // moving the host's stream when the call is over
};

std::string Quoted(const std::string& line) {
  const std::size_t first = line.find('"');
  return line.substr(first + 1, line.find('"', first + 1) - first - 1);
}

Place PlaceOfFirstFailure(const std::vector<std::string>& calls) {
  const std::string failed = " = " + std::to_string(kStatus);
  Place place{"", true, false};
  for (const std::string& call : calls) {
    if (call.starts_with("PushMethod") || call.starts_with("PushProperty")) place.owner = Quoted(call);
    if (call.starts_with("PushGlobal")) place = {"", false, false};
    if (call.ends_with(failed)) return place;
  }
  return place;
}

std::u16string ExpectedMessage(const Place& place) {
  const std::string step = place.opening ? " wrapping input stream" : " decomposing stream";
  std::string text;
  if (place.owner == "Peek") text = "Callin error peeking bytes: 5 - ";
  if (place.owner == "Skip") text = "Callin error skipping bytes: 5 - ";
  if (place.owner == "Write") text = "Callin error writing bytes: 5 - ";
  if (place.owner == "Position") text = "Callin error getting underlying stream position: 5 - ";
  if (text.empty() && !place.owner.empty() && place.owner != "ShouldStopDecomposition") {
    text = "Callin error calling method '" + place.owner + "': 5 - ";
  }
  const std::string message = text + step;
  return {message.begin(), message.end()};
}

/// True when the failing callback belongs to what ends a stream's life, whose failure nobody hears of: the last Skip of
/// the stream that is read, the last Write of a result stream.
bool IsSwallowed(const std::vector<std::string>& calls, const Place& place) {
  if (place.owner != "Skip" && place.owner != "Write") return false;
  std::size_t last = 0;
  for (std::size_t i = 0; i < calls.size(); ++i) {
    if (calls[i].find('"' + place.owner + '"') != std::string::npos) last = i;
  }
  for (std::size_t i = last; i < calls.size(); ++i) {
    if (calls[i].find("\"Peek\"") != std::string::npos) return false;
  }
  return true;
}

/// Fails the nth callback of the scenario. @return  false when the scenario makes fewer
bool TryFault(const Scenario& scenario, std::uint64_t n, bool from_then_on) {
  Host host;
  host.Record(true);
  host.faults().FailNth(n, kStatus, from_then_on);
  const ListResult result = scenario.call(host, TheLibrary());
  EXPECT_EQ(result.returned, 0);
  if (host.faults().Hits() == 0) {
    EXPECT_EQ(result.status, 0);
    return false;
  }
  const Place place = PlaceOfFirstFailure(host.Calls());
  if (result.status == 0) {
    EXPECT_TRUE(IsSwallowed(host.Calls(), place)) << "succeeded although callback " << n << " failed";
  } else {
    EXPECT_EQ(result.message, ExpectedMessage(place)) << "callback " << n;
  }
  return true;
}

int TryEveryFault(const Scenario& scenario) {
  SCOPED_TRACE(scenario.name);
  int faults = 0;
  for (const bool from_then_on : {false, true}) {
    for (std::uint64_t n = 1; TryFault(scenario, n, from_then_on); ++n) {
      ++faults;
      Host host;
      const ListResult next = scenario.call(host, TheLibrary());
      EXPECT_EQ(next.status, 0) << "after callback " << n << " had failed";
      EXPECT_EQ(host.StackDepth(), 0U);
    }
  }
  return faults;
}

TEST(FaultInjection, NamesThePlaceOfEveryFailureAndTheNextCallWorks) {
  int faults = 0;
  for (const Scenario& scenario : Decompositions()) faults += TryEveryFault(scenario);
  for (const Scenario& scenario : Queries()) faults += TryEveryFault(scenario);
  std::printf("%d faults tried\n", faults);
  EXPECT_GT(faults, 3000);
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
