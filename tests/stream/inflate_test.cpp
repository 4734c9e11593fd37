#include "stream/inflate.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "stream/deflate.h"
#include "tests/stream/packing_host.h"

namespace vessa {
namespace {

using packed_bytes::InflatedAsFarAsPossible;
using packed_bytes::kGzipWindow;
using packed_bytes::kRawWindow;
using packed_bytes::kZlibWindow;
using packed_bytes::Packed;

constexpr std::size_t kSizes[] = {0, 1, 32766, 32767, 32768, 2U * 32767, 1U << 20};

TEST(Inflate, UnpacksWhatZlibPackedInEverySizeAtEveryLevel) {
  for (const std::size_t size : kSizes) {
    for (int level = -1; level <= 9; ++level) {
      for (const std::string& data : {Noise(size), Pattern(size)}) {
        PackingHost host(Packed(data, level));
        ASSERT_EQ(InflateStream(host.In(), host.Out()), kSuccess) << size << " at " << level;
        ASSERT_TRUE(host.Output() == data) << size << " at " << level;
        ASSERT_EQ(host.Host().StackDepth(), 0U);
      }
    }
  }
}

TEST(Inflate, UnpacksWhatWePack) {
  const std::string data = Noise(300000) + Pattern(300000);
  PackingHost packing(data);
  ASSERT_EQ(DeflateStream(6, packing.In(), packing.Out()), kSuccess);
  PackingHost unpacking(packing.Output());
  ASSERT_EQ(InflateStream(unpacking.In(), unpacking.Out()), kSuccess);
  EXPECT_TRUE(unpacking.Output() == data);
}

TEST(Inflate, EmptyInputFails) {
  PackingHost host("");
  EXPECT_LT(InflateStream(host.In(), host.Out()), 0);
  EXPECT_EQ(host.Output(), "");
}

TEST(Inflate, CallsReadAndWriteByTheBlock) {
  PackingHost host(Packed("abc", 6));
  host.Host().Record(true);
  EXPECT_EQ(InflateStream(host.In(), host.Out()), kSuccess);
  EXPECT_THAT(host.Host().Calls(),
              ::testing::ElementsAre("PushMethod 1 \"Read\" 1", "PushInteger 32767", "InvokeMethod 1",
                                     "PopString -> 11 bytes", "PushMethod 2 \"Write\" 0",
                                     "PushString \"abc\"", "InvokeMethod 1"));
}

TEST(Inflate, AFullOutputBlockIsFollowedByAWriteOfWhatIsLeft) {
  PackingHost host(Packed(std::string(32767, 'a'), 6));
  host.Host().Record(true);
  EXPECT_EQ(InflateStream(host.In(), host.Out()), kSuccess);
  const std::vector<std::string>& calls = host.Host().Calls();
  ASSERT_EQ(calls.size(), 10U);
  EXPECT_EQ(calls[5], "PushString 32767 bytes");
  EXPECT_EQ(calls[8], "PushString \"\"");
}

TEST(Inflate, EveryTruncationFailsAfterWritingWhatThereWas) {
  const std::string data = Noise(200) + Pattern(300);
  const std::string packed = Packed(data, 6);
  for (std::size_t size = 0; size < packed.size(); ++size) {
    const std::string cut = packed.substr(0, size);
    PackingHost host(cut);
    ASSERT_LT(InflateStream(host.In(), host.Out()), 0) << size;
    ASSERT_EQ(host.Output(), InflatedAsFarAsPossible(cut, data.size())) << size;
  }
}

TEST(Inflate, ALongTruncatedStreamFailsAfterWritingWhatThereWas) {
  const std::string data = Noise(500000);
  const std::string packed = Packed(data, 6);
  for (const std::size_t size : {32766U, 32767U, 32768U, 65534U, 400000U}) {
    const std::string cut = packed.substr(0, size);
    PackingHost host(cut);
    ASSERT_LT(InflateStream(host.In(), host.Out()), 0) << size;
    ASSERT_TRUE(host.Output() == InflatedAsFarAsPossible(cut, data.size())) << size;
  }
}

TEST(Inflate, DamageAnywhereIsFoundAndNothingWrongIsReportedAsSuccess) {
  const std::string data = Pattern(700);
  const std::string packed = Packed(data, 6);
  for (std::size_t at = 0; at < packed.size(); ++at) {
    for (unsigned bit = 0; bit < 8; ++bit) {
      std::string damaged = packed;
      damaged[at] = static_cast<char>(static_cast<unsigned char>(damaged[at]) ^ (1U << bit));
      PackingHost host(damaged);
      const Status status = InflateStream(host.In(), host.Out());
      if (status == kSuccess) {
        ASSERT_EQ(host.Output(), data) << at << " bit " << bit;  // a header bit without a meaning
      }
    }
  }
}

TEST(Inflate, AWrongChecksumFails) {
  std::string packed = Packed("some data", 6);
  packed.back() = static_cast<char>(packed.back() + 1);
  PackingHost host(packed);
  EXPECT_LT(InflateStream(host.In(), host.Out()), 0);
}

TEST(Inflate, RawAndGzipDataFail) {
  for (const int window_bits : {kRawWindow, kGzipWindow}) {
    PackingHost host(Packed(Pattern(1000), 6, window_bits));
    EXPECT_LT(InflateStream(host.In(), host.Out()), 0) << window_bits;
    EXPECT_EQ(host.Output(), "") << window_bits;
  }
}

TEST(Inflate, ABlockThatCannotBeInflatedIsNotWrittenAtAll) {
  std::string packed = Packed(Noise(5000), 6);
  packed[4000] = static_cast<char>(packed[4000] + 1);
  packed.back() = static_cast<char>(packed.back() + 1);
  PackingHost host(packed);
  host.Host().Record(true);
  EXPECT_LT(InflateStream(host.In(), host.Out()), 0);
  EXPECT_EQ(host.Output(), "");
  EXPECT_EQ(host.Host().Calls().back(), "PopString -> " + std::to_string(packed.size()) + " bytes");
}

TEST(Inflate, APresetDictionaryFails) {
  PackingHost host(Packed("dictionary of words", 6, kZlibWindow, "words of a dictionary"));
  host.Host().Record(true);
  EXPECT_LT(InflateStream(host.In(), host.Out()), 0);
  EXPECT_THAT(host.Host().Calls().back(), ::testing::StartsWith("PopString"));  // no write was tried
}

TEST(Inflate, BytesBehindTheEndAreIgnored) {
  const std::string packed = Packed("the data", 6);
  for (const std::size_t behind : {1U, 100U, 40000U}) {
    PackingHost host(packed + std::string(behind, 'z'));
    EXPECT_EQ(InflateStream(host.In(), host.Out()), kSuccess) << behind;
    EXPECT_EQ(host.Output(), "the data") << behind;
  }
}

TEST(Inflate, DataThatUnpackAThousandfoldAreWrittenWhole) {
  const std::string data(20U << 20, '\0');
  PackingHost host(Packed(data, 9));
  EXPECT_EQ(InflateStream(host.In(), host.Out()), kSuccess);
  EXPECT_TRUE(host.Output() == data);
}

TEST(Inflate, ShortReadsInTheMiddleOnlyTakeLonger) {
  auto input = std::make_shared<emulator::MemoryStream>(Packed(Noise(5000), 6));
  input->HandOutAtMost(7);
  PackingHost host(input);
  EXPECT_EQ(InflateStream(host.In(), host.Out()), kSuccess);
  EXPECT_TRUE(host.Output() == Noise(5000));
}

TEST(Inflate, EveryFailingCallbackIsANegativeStatusWhateverTheHostsCode) {
  const std::string packed = Packed(Noise(70000), 6);
  for (const int code : {-3, 5}) {
    for (const bool from_then_on : {false, true}) {
      for (std::uint64_t n = 1;; ++n) {
        PackingHost host(packed);
        host.Host().faults().FailNth(n, code, from_then_on);
        const Status status = InflateStream(host.In(), host.Out());
        if (host.Host().faults().Hits() == 0) {
          EXPECT_EQ(status, kSuccess);
          EXPECT_GT(n, 15U);
          break;
        }
        ASSERT_LT(status, 0) << n;
      }
    }
  }
}

}  // namespace
}  // namespace vessa
