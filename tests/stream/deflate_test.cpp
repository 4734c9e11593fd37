#include "stream/deflate.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tests/stream/packing_host.h"

namespace vessa {
namespace {

using packed_bytes::Unpacked;
using ::testing::ElementsAre;

constexpr std::size_t kSizes[] = {0, 1, 32766, 32767, 32768, 1U << 20};

TEST(Deflate, ZlibUnpacksEverySizeAtEveryLevel) {
  for (const std::size_t size : kSizes) {
    for (std::int32_t level = -1; level <= 9; ++level) {
      for (const std::string& data : {Noise(size), Pattern(size)}) {
        PackingHost host(data);
        ASSERT_EQ(DeflateStream(level, host.In(), host.Out()), kSuccess) << size << " at " << level;
        ASSERT_TRUE(Unpacked(host.Output(), size) == data) << size << " at " << level;
        ASSERT_EQ(host.Host().StackDepth(), 0U);
      }
    }
  }
}

TEST(Deflate, LevelsOutsideZlibsRangeFailBeforeAnyCallback) {
  for (const std::int32_t level : {-2, 10, 99, 0x7FFFFFFF}) {
    PackingHost host("data");
    EXPECT_LT(DeflateStream(level, host.In(), host.Out()), 0) << level;
    EXPECT_EQ(host.Host().CallbackCount(), 0U) << level;
  }
}

TEST(Deflate, EmptyInputBecomesOneCompleteStreamForNoData) {
  PackingHost host("");
  host.Host().Record(true);
  EXPECT_EQ(DeflateStream(-1, host.In(), host.Out()), kSuccess);
  EXPECT_EQ(host.Output(), std::string("\x78\x9C\x03\x00\x00\x00\x00\x01", 8));
  EXPECT_THAT(host.Host().Calls(),
              ElementsAre("PushMethod 1 \"Read\" 1", "PushInteger 32767", "InvokeMethod 1",
                          "PopString -> 0 bytes", "PushMethod 2 \"Write\" 0",
                          "PushString \"x\\x9C\\x03\\x00\\x00\\x00\\x00\\x01\"", "InvokeMethod 1"));
}

TEST(Deflate, AFullBlockIsFollowedByAnEmptyReadThatFinishes) {
  PackingHost host(std::string(32767, 'a'));
  host.Host().Record(true);
  EXPECT_EQ(DeflateStream(9, host.In(), host.Out()), kSuccess);
  const std::vector<std::string>& calls = host.Host().Calls();
  ASSERT_EQ(calls.size(), 14U);  // two reads, and a write behind each
  EXPECT_EQ(calls[3], "PopString -> 32767 bytes");
  EXPECT_EQ(calls[5], "PushString \"x\\xDA\"");  // zlib's header alone: the data are still with zlib
  EXPECT_EQ(calls[10], "PopString -> 0 bytes");
}

TEST(Deflate, AWriteOfNoBytesIsMadeAsWell) {
  PackingHost host(Pattern(3 * 32767));
  host.Host().Record(true);
  EXPECT_EQ(DeflateStream(9, host.In(), host.Out()), kSuccess);
  EXPECT_THAT(host.Host().Calls(), ::testing::Contains("PushString \"\""));
}

TEST(Deflate, AFullOutputBlockIsFollowedByAnotherPass) {
  PackingHost host(Noise(100000));
  host.Host().Record(true);
  EXPECT_EQ(DeflateStream(0, host.In(), host.Out()), kSuccess);
  EXPECT_THAT(host.Host().Calls(), ::testing::Contains("PushString 32767 bytes"));
  EXPECT_TRUE(Unpacked(host.Output(), 100000) == Noise(100000));
}

TEST(Deflate, AShortReadIsNotTheEnd) {
  auto input = std::make_shared<emulator::MemoryStream>(Noise(1000));
  input->HandOutAtMost(300);
  PackingHost host(input);
  EXPECT_EQ(DeflateStream(6, host.In(), host.Out()), kSuccess);
  EXPECT_EQ(input->Reads(), 5U);  // three full ones, the rest, and the empty one
  EXPECT_TRUE(Unpacked(host.Output(), 1000) == Noise(1000));
}

TEST(Deflate, AReadOfOneByteIsNotTheEnd) {
  auto input = std::make_shared<emulator::MemoryStream>(Noise(3));
  input->HandOutAtMost(1);
  PackingHost host(input);
  EXPECT_EQ(DeflateStream(6, host.In(), host.Out()), kSuccess);
  EXPECT_EQ(input->Reads(), 4U);
  EXPECT_TRUE(Unpacked(host.Output(), 3) == Noise(3));
}

TEST(Deflate, StartsWhereTheInputStands) {
  auto input = std::make_shared<emulator::MemoryStream>("skipped, packed");
  input->MoveTo(10);
  PackingHost host(input);
  EXPECT_EQ(DeflateStream(6, host.In(), host.Out()), kSuccess);
  EXPECT_EQ(Unpacked(host.Output(), 6), "packed");
}

TEST(Deflate, AHostThatGivesMoreThanWasAskedForFails) {
  class Generous : public emulator::Object {
    emulator::Value Call(std::string_view, std::span<const emulator::Value>) override {
      return std::string(32768, 'x');
    }
  };
  PackingHost host(std::make_shared<Generous>());
  EXPECT_LT(DeflateStream(6, host.In(), host.Out()), 0);
  EXPECT_EQ(host.Output(), "");
}

TEST(Deflate, UnknownStreamsFail) {
  PackingHost host("data");
  EXPECT_LT(DeflateStream(6, 77, host.Out()), 0);
  host.Host().ResetStack();
  EXPECT_LT(DeflateStream(6, host.In(), 77), 0);
}

TEST(Deflate, EveryFailingCallbackIsANegativeStatusWhateverTheHostsCode) {
  for (const int code : {-3, 5}) {
    for (const bool from_then_on : {false, true}) {
      for (std::uint64_t n = 1;; ++n) {
        PackingHost host(Noise(70000));
        host.Host().faults().FailNth(n, code, from_then_on);
        const Status status = DeflateStream(6, host.In(), host.Out());
        if (host.Host().faults().Hits() == 0) {
          EXPECT_EQ(status, kSuccess);
          EXPECT_GT(n, 20U);
          break;
        }
        ASSERT_LT(status, 0) << n;
      }
    }
  }
}

TEST(Deflate, LyingPopsFail) {
  for (const emulator::Lie lie : {emulator::Lie::kNegativeLength, emulator::Lie::kNoBytes}) {
    PackingHost host("data");
    host.Host().faults().LieNth(lie, 1);
    EXPECT_LT(DeflateStream(6, host.In(), host.Out()), 0);
  }
}

}  // namespace
}  // namespace vessa
