#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/event_log.h"
#include "emulator/stream_object.h"
#include "modules/VessaDCM/call_out_table.h"
#include "tests/allocation/allocation_faults.h"
#include "tests/callouts/attempt.h"
#include "tests/callouts/scenarios.h"
#include "tests/support/dicom_bytes.h"

// Each allocation of a call fails in turn, once with all behind it and once alone: the call answers with a failure, whose
// text needs no memory, and the next call works as if nothing had been. All behind it comes first, so that what the
// compiler's runtime needs for the first exception of the process is among them.

namespace emulator {
namespace {

constexpr int kFaultStatus = 5;

const Library& TheLibrary() {
  static const Library library = Library::Linked(GetZFTable);
  return library;
}

Attempt TryWithoutFaults(const Scenario& scenario) {
  Host host;
  return Try(scenario, host, TheLibrary());
}

/// What stands alone in a message where there is no memory for more.
bool IsStepText(std::string_view message) {
  static constexpr std::array<std::string_view, 20> kSteps{
      " fetching arguments list from CBA",
      " fetching argument 1",
      " fetching argument 2",
      " fetching argument 3",
      " fetching argument 4",
      " fetching argument 5",
      " fetching argument 6",
      " looking up tag",
      " looking up tag name",
      " wrapping input stream",
      " wrapping output stream",
      " wrapping input file",
      " reading 128-byte file header",
      " checking DICM file header",
      " setting up content handler",
      " setting up vdoc content handler",
      " setting up content source",
      " decomposing stream",
      " parsing property reference",
      " composing stream",
  };
  return std::find(kSteps.begin(), kSteps.end(), message) != kSteps.end();
}

/// The stream that a decomposition reads stands behind the last byte that was read, also when memory ran out.
void ExpectTheStreamBehindTheEvents(const Attempt& attempt) {
  if (attempt.events.empty()) return;
  EXPECT_GE(attempt.positions.front(), 1 + BytesBehind(attempt.events));
}

/// Holds a call that met with a lack of memory against the same call with memory enough.
void ExpectFailureOf(const Scenario& scenario, const Attempt& attempt, const Attempt& usual) {
  EXPECT_EQ(attempt.result.returned, 0);
  EXPECT_EQ(attempt.result.status, 1);
  EXPECT_EQ(attempt.result.values.size(), scenario.tells_why ? 1U : 0U);
  const bool same = usual.result.status == 1 && attempt.message == usual.message;
  EXPECT_TRUE(!scenario.tells_why || same || IsStepText(attempt.message)) << attempt.message;
}

void ExpectNothingLeftOf(const Attempt& attempt, const Attempt& clean) {
  EXPECT_TRUE(IsStartOf(attempt, clean));
  EXPECT_EQ(attempt.open_long_strings, 0U);
  for (std::size_t stream = 0; stream < attempt.positions.size(); ++stream) {
    EXPECT_LE(attempt.positions[stream], clean.positions[stream]) << "stream " << stream;
  }
}

/// Fails the nth allocation of the scenario. @return  false when the scenario makes fewer
bool TryFault(const Scenario& scenario, const Attempt& clean, std::uint64_t n, bool from_then_on) {
  Host host;
  AllocationFaults::FailNth(n, from_then_on);
  const Attempt attempt = Try(scenario, host, TheLibrary());
  const std::uint64_t failed = AllocationFaults::Failed();
  AllocationFaults::FailNth(0, false);
  // A stop that found its memory in the runtime's reserve is as good as any.
  if (WentAlike(attempt, clean)) return failed != 0;
  EXPECT_NE(failed, 0U);
  ExpectFailureOf(scenario, attempt, clean);
  ExpectNothingLeftOf(attempt, clean);
  const bool host_failed = host.faults().Hits() != 0;
  EXPECT_LE(attempt.stack_depth, host_failed ? clean.stack_depth : 0);
  if (!host_failed) ExpectTheStreamBehindTheEvents(attempt);
  return failed != 0;
}

int TryEveryFault(const Scenario& scenario, std::int64_t status) {
  const Attempt clean = TryWithoutFaults(scenario);
  EXPECT_EQ(clean.result.status, status) << clean.message;
  int faults = 0;
  for (const bool from_then_on : {true, false}) {
    for (std::uint64_t n = 1; !testing::Test::HasFailure(); ++n) {
      SCOPED_TRACE(scenario.name + ", allocation " + std::to_string(n));
      if (!TryFault(scenario, clean, n, from_then_on)) break;
      ++faults;
      EXPECT_TRUE(WentAlike(TryWithoutFaults(scenario), clean)) << "the next call";
    }
  }
  std::printf("%4d allocation faults: %s\n", faults, scenario.name.c_str());
  return faults;
}

TEST(AllocationFaults, AreFailuresOfTheCallAndOfNoOther) {
  int faults = 0;
  for (const auto& scenarios : {Decompositions(), Queries(), Compositions(), Packings(), Lookups()}) {
    for (const Scenario& scenario : scenarios) faults += TryEveryFault(scenario, 0);
  }
  std::printf("%d faults tried\n", faults);
  EXPECT_GT(faults, 200);
}

TEST(AllocationFaults, LeaveAFailureItsMessageOrItsStep) {
  int faults = 0;
  for (const Scenario& scenario : Failures()) faults += TryEveryFault(scenario, 1);
  std::printf("%d faults tried\n", faults);
  EXPECT_GT(faults, 100);
}

// --- A host that fails, and no memory from then on ---

struct HostFault {
  std::uint64_t callback = 1;
  bool from_then_on = false;
};

Attempt TryHostFault(const Scenario& scenario, Host& host, HostFault fault, bool with_memory) {
  host.faults().FailNth(fault.callback, kFaultStatus, fault.from_then_on);
  host.Observe([&host, with_memory](const Callback&) {
    if (host.faults().Hits() == 1 && !with_memory) AllocationFaults::FailNth(1, true);
  });
  const Attempt attempt = Try(scenario, host, TheLibrary());
  AllocationFaults::FailNth(0, false);
  return attempt;
}

/// @return  false when the scenario makes fewer callbacks
bool TryHostFaultWithoutMemory(const Scenario& scenario, const Attempt& clean, HostFault fault) {
  Host sound_host;
  const Attempt usual = TryHostFault(scenario, sound_host, fault, true);
  if (sound_host.faults().Hits() == 0) return false;
  Host host;
  const Attempt attempt = TryHostFault(scenario, host, fault, false);
  if (!WentAlike(attempt, usual)) ExpectFailureOf(scenario, attempt, usual);
  ExpectNothingLeftOf(attempt, clean);
  EXPECT_EQ(attempt.stack_depth, usual.stack_depth);
  EXPECT_EQ(attempt.positions, usual.positions);
  EXPECT_EQ(attempt.events, usual.events);
  return true;
}

int TryEveryHostFaultWithoutMemory(const Scenario& scenario) {
  const Attempt clean = TryWithoutFaults(scenario);
  int faults = 0;
  for (const bool from_then_on : {true, false}) {
    for (std::uint64_t n = 1; !testing::Test::HasFailure(); ++n) {
      SCOPED_TRACE(scenario.name + ", callback " + std::to_string(n));
      if (!TryHostFaultWithoutMemory(scenario, clean, {n, from_then_on})) break;
      ++faults;
      EXPECT_TRUE(WentAlike(TryWithoutFaults(scenario), clean)) << "the next call";
    }
  }
  return faults;
}

TEST(AllocationFaults, BehindAFailingCallbackLeaveItsFailureOrTheStep) {
  int faults = 0;
  for (const auto& scenarios : {Decompositions(), Queries(), Compositions(), Packings()}) {
    for (const Scenario& scenario : scenarios) faults += TryEveryHostFaultWithoutMemory(scenario);
  }
  std::printf("%d callbacks failed, and all allocations behind each\n", faults);
  EXPECT_GT(faults, 3000);
}

// --- How much is asked for ---

constexpr std::uint64_t kMebibyte = 1024U * 1024U;

/// A small data set with an element that claims to be as long as a length can tell.
std::string VastElement(dicom_bytes::VrForm form) {
  constexpr std::uint32_t kVast = 0xFFFFFFFE;
  const std::string vr = form == dicom_bytes::VrForm::kExplicit ? std::string("OW\0\0", 4) : "";
  return dicom_bytes::TagBytes(0x00091001) + vr + dicom_bytes::Number32(kVast) + "abcd";
}

std::uint64_t BytesAskedFor(const std::string& function, const std::string& bytes,
                            const std::string& syntax) {
  Host host;
  ListBuilder arguments;
  arguments.Integer(host.Add(std::make_shared<MemoryStream>(bytes))).String(syntax);
  if (function == "zfDecomposeStream") {
    arguments.Integer(host.Add(std::make_shared<EventLog>())).Integer(0);
  } else {
    arguments.List(ListBuilder().Integer(0x00091001));
  }
  AllocationFaults::FailNth(0, false);
  EXPECT_EQ(TheLibrary().CallList(function, arguments).message, u" decomposing stream");
  return AllocationFaults::BytesAsked();
}

TEST(Allocations, DoNotGrowWithTheLengthThatAnElementClaims) {
  for (const char* const function : {"zfDecomposeStream", "zfQueryStream"}) {
    for (const auto form : {dicom_bytes::VrForm::kImplicit, dicom_bytes::VrForm::kExplicit}) {
      const char* const syntax = dicom_bytes::DataSetBytes(form).TransferSyntax();
      const std::uint64_t bytes = BytesAskedFor(function, VastElement(form), syntax);
      std::printf("%llu bytes asked for by %s, %s\n", static_cast<unsigned long long>(bytes), function,
                  syntax);
      EXPECT_GT(bytes, 0U);
      EXPECT_LT(bytes, kMebibyte);
    }
  }
}

}  // namespace
}  // namespace emulator
