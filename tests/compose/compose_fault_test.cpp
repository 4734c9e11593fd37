#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "tests/compose/compose_host.h"

namespace vessa {
namespace {

/// Sequences, long values, chunks and pixel data.
void FillEverything(ComposeHost& host) {
  host.TopSequence(0x00081140, 1);
  host.InItem(1, 1, 0x00081150, 2, "UI", "1.");
  host.SequenceInItem(1, 1, 0x00081199, 3);
  host.InItem(3, 1, 0x00081155, 4, "UI", "2.");
  host.Top(0x00100010, 5, "PN", std::string(9000, 'x'));
  host.Chunk(5, 1, "yz");
  host.Top(0x00280100, 6, "US", Hex("1000"));
  host.Top(0x7FE00010, 7, "OW", "");
  host.PixelData(std::string(40000, 'p'));
}

bool NamesItsCause(const std::string& failure) {
  constexpr const char* kCauses[] = {
      "NextTagKey: Vessa' callin error: max string",
      "NextSequenceTagKey: Vessa' callin error: max string",
      "GetDataLength: Vessa' callin error: max string",
      "GetNextDataChunk: Vessa' callin error: max string",
      "status 5",
      "Callin error getting underlying stream position: 5",
      "Callin error getting stream size: 5",
      "Callin error peeking bytes: 5",
      "Callin error skipping bytes: 5",
      "Callin error writing bytes: 5",
  };
  for (const char* cause : kCauses) {
    if (failure == cause) return true;
  }
  return false;
}

std::string WholeOutput() {
  ComposeHost host;
  FillEverything(host);
  EXPECT_EQ(host.Compose(kExplicitLittle, kExplicitBig), "");
  return host.Written();
}

/// Fails the nth callback, for every n; returns how many faults were tried.
std::uint64_t TryEveryFault(const std::string& whole, bool from_then_on) {
  for (std::uint64_t n = 1;; ++n) {
    ComposeHost host;
    FillEverything(host);
    host.Host().faults().FailNth(n, 5, from_then_on);
    const std::string failure = host.Compose(kExplicitLittle, kExplicitBig);
    if (host.Host().faults().Hits() == 0) {
      EXPECT_EQ(failure, "");
      return n - 1;
    }
    // A last write that fails is swallowed: what the host then has is still the start of the whole.
    EXPECT_TRUE(failure.empty() || NamesItsCause(failure)) << n << ": " << failure;
    if (!from_then_on) {
      host.Host().faults().Clear();
      host.Host().ResetStack();
      EXPECT_EQ(host.ComposeAgain(kExplicitLittle, kExplicitBig), whole) << n;
    }
  }
}

TEST(ComposeFaults, EveryFailingCallbackIsNamedAndTheNextCallWorks) {
  const std::string whole = WholeOutput();
  const std::uint64_t once = TryEveryFault(whole, false);
  const std::uint64_t from_then_on = TryEveryFault(whole, true);
  EXPECT_GT(once, 200U);
  EXPECT_EQ(once, from_then_on);
  RecordProperty("faults", static_cast<int>(once + from_then_on));
}

}  // namespace
}  // namespace vessa
