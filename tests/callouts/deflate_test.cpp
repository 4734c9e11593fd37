#include <gmock/gmock.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/stream_object.h"
#include "tests/callouts/drain.h"
#include "tests/callouts/loaded_library.h"
#include "tests/support/packed_bytes.h"

namespace emulator {
namespace {

using packed_bytes::InflatedAsFarAsPossible;
using packed_bytes::kGzipWindow;
using packed_bytes::kRawWindow;
using packed_bytes::kZlibWindow;
using packed_bytes::Noise;
using packed_bytes::Packed;
using packed_bytes::Pattern;
using packed_bytes::Unpacked;
using testing::Contains;
using testing::ElementsAre;

constexpr std::int32_t kDefaultLevel = -1;
constexpr std::int32_t kFailed = -1;
constexpr std::size_t kSizes[] = {0, 1, 32766, 32767, 32768, 1U << 20, 64U << 20};

/// What a call-out made of one stream.
struct Outcome {
  std::int32_t returned = 0;
  std::string written;
};

/// Both directions over streams of their own, with the objects in the places where each call-out takes them.
class Packing : public LoadedLibrary {
 protected:
  Outcome Deflate(const std::string& bytes, std::int32_t level = kDefaultLevel) {
    return DeflateFrom(std::make_shared<MemoryStream>(bytes), level);
  }
  Outcome DeflateFrom(std::shared_ptr<Object> input, std::int32_t level = kDefaultLevel) {
    const auto in = static_cast<std::int32_t>(host_.Add(std::move(input)));
    auto [output, out] = Make<MemoryStream>();
    return {TheLibrary().Call("zfDeflateStream", level, in, static_cast<std::int32_t>(out)), output->Bytes()};
  }
  Outcome Inflate(const std::string& bytes) { return InflateFrom(std::make_shared<MemoryStream>(bytes)); }
  Outcome InflateFrom(std::shared_ptr<Object> input, std::int32_t ignored = 0) {
    const auto in = static_cast<std::int32_t>(host_.Add(std::move(input)));
    auto [output, out] = Make<MemoryStream>();
    return {TheLibrary().Call("zfInflateStream", in, static_cast<std::int32_t>(out), ignored),
            output->Bytes()};
  }

  /// Fails with all that could be inflated before the cut or the damage in the host's stream.
  void ExpectFailureBehind(const std::string& packed, const std::string& readable) {
    const Outcome outcome = Inflate(packed);
    EXPECT_EQ(outcome.returned, kFailed);
    EXPECT_TRUE(outcome.written == readable)
        << outcome.written.size() << " of " << readable.size() << " bytes";
  }
};

// --- Deflate ---

TEST_F(Packing, ZlibInflatesWhatIsDeflatedHereInEverySize) {
  for (const std::size_t size : kSizes) {
    const std::string data = size < (2U << 20) ? Noise(size) : Pattern(size);
    const Outcome outcome = Deflate(data);
    ASSERT_EQ(outcome.returned, 0) << size;
    ASSERT_TRUE(Unpacked(outcome.written, size) == data) << size;
  }
}

TEST_F(Packing, ZlibInflatesWhatIsDeflatedHereAtEveryLevel) {
  const std::string data = Noise(40000) + Pattern(60000);
  for (std::int32_t level = -1; level <= 9; ++level) {
    const Outcome outcome = Deflate(data, level);
    ASSERT_EQ(outcome.returned, 0) << level;
    ASSERT_TRUE(Unpacked(outcome.written, data.size()) == data) << level;
  }
}

TEST_F(Packing, LevelsThatZlibDoesNotHaveFailWithoutACallback) {
  for (const std::int32_t level : {-2, 10, 99, 0x7FFFFFFF}) {
    const std::uint64_t before = host_.CallbackCount();
    EXPECT_EQ(Deflate("data", level).returned, kFailed) << level;
    EXPECT_EQ(host_.CallbackCount(), before) << level;
  }
}

TEST_F(Packing, NoDataBecomeOneCompleteStreamForNoData) {
  host_.Record(true);
  EXPECT_EQ(Deflate("").written, std::string("\x78\x9C\x03\x00\x00\x00\x00\x01", 8));
  EXPECT_THAT(host_.Calls(), ElementsAre(R"(PushMethod 1 "Read" 1)", "PushInteger 32767", "InvokeMethod 1",
                                         "PopString -> 0 bytes", R"(PushMethod 2 "Write" 0)",
                                         R"(PushString "x\x9C\x03\x00\x00\x00\x00\x01")", "InvokeMethod 1"));
}

TEST_F(Packing, ABlockThatFillsTheReadIsFollowedByAnEmptyReadThatFinishes) {
  host_.Record(true);
  EXPECT_EQ(Deflate(std::string(32767, 'a'), 9).returned, 0);
  EXPECT_THAT(
      host_.Calls(),
      ElementsAre(R"(PushMethod 1 "Read" 1)", "PushInteger 32767", "InvokeMethod 1",
                  "PopString -> 32767 bytes", R"(PushMethod 2 "Write" 0)", R"(PushString "x\xDA")",
                  "InvokeMethod 1",  // zlib's header alone: the data are still with zlib
                  R"(PushMethod 1 "Read" 1)", "PushInteger 32767", "InvokeMethod 1", "PopString -> 0 bytes",
                  R"(PushMethod 2 "Write" 0)", testing::StartsWith("PushString "), "InvokeMethod 1"));
}

TEST_F(Packing, AWriteOfNoBytesIsMadeAsWell) {
  host_.Record(true);
  EXPECT_EQ(Deflate(std::string(std::size_t{2} * 32767, 'a'), 9).returned, 0);
  EXPECT_THAT(host_.Calls(), Contains(R"(PushString "")"));
}

TEST_F(Packing, AFullOutputBlockIsFollowedByAnotherOfTheSameInput) {
  host_.Record(true);
  EXPECT_EQ(Deflate(Noise(40000), 0).returned, 0);
  EXPECT_THAT(host_.Calls(), Contains("PushString 32767 bytes"));
}

// --- Inflate ---

TEST_F(Packing, InflatesWhatZlibDeflatesInEverySize) {
  for (const std::size_t size : kSizes) {
    const std::string data = size < (2U << 20) ? Noise(size) : Pattern(size);
    const Outcome outcome = Inflate(Packed(data, 6));
    ASSERT_EQ(outcome.returned, 0) << size;
    ASSERT_TRUE(outcome.written == data) << size;
  }
}

TEST_F(Packing, InflatesWhatZlibDeflatesAtEveryLevel) {
  const std::string data = Noise(40000) + Pattern(60000);
  for (int level = -1; level <= 9; ++level) {
    const Outcome outcome = Inflate(Packed(data, level));
    ASSERT_EQ(outcome.returned, 0) << level;
    ASSERT_TRUE(outcome.written == data) << level;
  }
}

TEST_F(Packing, InflateReadsAndWritesByTheBlock) {
  host_.Record(true);
  EXPECT_EQ(Inflate(Packed("abc", 6)).returned, 0);
  EXPECT_THAT(host_.Calls(), ElementsAre(R"(PushMethod 1 "Read" 1)", "PushInteger 32767", "InvokeMethod 1",
                                         "PopString -> 11 bytes", R"(PushMethod 2 "Write" 0)",
                                         R"(PushString "abc")", "InvokeMethod 1"));
}

TEST_F(Packing, InflateWritesABlockOfNoBytesBehindAFullOne) {
  host_.Record(true);
  EXPECT_EQ(Inflate(Packed(std::string(32767, 'a'), 6)).returned, 0);
  EXPECT_THAT(host_.Calls(), ElementsAre(R"(PushMethod 1 "Read" 1)", "PushInteger 32767", "InvokeMethod 1",
                                         testing::StartsWith("PopString -> "), R"(PushMethod 2 "Write" 0)",
                                         "PushString 32767 bytes", "InvokeMethod 1",
                                         R"(PushMethod 2 "Write" 0)", R"(PushString "")", "InvokeMethod 1"));
}

TEST_F(Packing, InflateIgnoresItsThirdArgument) {
  for (const std::int32_t ignored : {-1, 1, 12345}) {
    EXPECT_EQ(InflateFrom(std::make_shared<MemoryStream>(Packed("abc", 6)), ignored).written, "abc");
  }
}

TEST_F(Packing, RawDeflateAndGzipDataAreNotInflated) {
  for (const int window_bits : {kRawWindow, kGzipWindow}) {
    ExpectFailureBehind(Packed(Pattern(1000), 6, window_bits), "");
  }
}

TEST_F(Packing, CutAndDamagedDataFailBehindWhatThereWasAndBytesBehindTheEndAreIgnored) {
  const std::string data = Noise(100000);
  const std::string packed = Packed(data, 6);
  for (const std::size_t size : {std::size_t{1}, std::size_t{32767}, std::size_t{32768}, packed.size() - 1}) {
    ExpectFailureBehind(packed.substr(0, size), InflatedAsFarAsPossible(packed.substr(0, size), data.size()));
  }
  std::string damaged = Packed(data, 0);
  damaged[65536] = static_cast<char>(damaged[65536] ^ 0x55);  // no structure is hit: the checksum tells
  const std::string whole_reads =
      damaged.substr(0, std::size_t{3} * 32767);  // the damage shows in the fourth
  ExpectFailureBehind(damaged, InflatedAsFarAsPossible(whole_reads, data.size()));
  ExpectFailureBehind(Packed("dictionary of words", 6, kZlibWindow, "words of a dictionary"), "");
  for (const std::size_t behind : {std::size_t{1}, std::size_t{40000}}) {
    const Outcome followed = Inflate(packed + std::string(behind, 'z'));
    EXPECT_EQ(followed.returned, 0);
    EXPECT_TRUE(followed.written == data);
  }
}

TEST_F(Packing, EveryTruncationFailsBehindWhatThereWas) {
  const std::string data = Noise(200) + Pattern(300);
  const std::string packed = Packed(data, 6);
  for (std::size_t size = 0; size < packed.size(); ++size) {
    ExpectFailureBehind(packed.substr(0, size), InflatedAsFarAsPossible(packed.substr(0, size), data.size()));
  }
}

TEST_F(Packing, NoCompressedDataAndALevelOf99Fail) {
  ExpectFailureBehind("", "");
  EXPECT_EQ(Deflate("data", 99).returned, kFailed);
}

TEST_F(Packing, DataThatInflateAThousandfoldAreWrittenWholeInConstantMemory) {
  constexpr std::size_t kInflated = 64U << 20;
  const std::string packed = Packed(std::string(kInflated, '\0'), 9);
  ASSERT_LT(packed.size(), kInflated / 1000);
  auto [input, in] = Make<MemoryStream>(packed);
  auto [drain, out] = Make<Drain>();
  EXPECT_EQ(
      TheLibrary().Call("zfInflateStream", static_cast<std::int32_t>(in), static_cast<std::int32_t>(out), 0),
      0);
  EXPECT_EQ(drain->Total(), kInflated);
  EXPECT_EQ(drain->Largest(), 32767U);
  EXPECT_LT(drain->MemoryGrowth(), std::size_t{1} << 20);
}

// --- The host ---

TEST_F(Packing, AHostThatFailsInTheMiddleFailsTheCallBehindWhatWasWritten) {
  const std::string data = Noise(200000);
  const std::string packed = Packed(data, 6);
  for (const char* const method : {"Read", "Write"}) {
    host_.faults().FailNthMethod(method, 3, 5);
    const Outcome deflated = Deflate(data, 0);
    EXPECT_EQ(deflated.returned, kFailed) << method;
    EXPECT_FALSE(deflated.written.empty()) << method;
    EXPECT_TRUE(Deflate(data, 0).written.starts_with(deflated.written)) << method;
    host_.faults().Clear();

    host_.faults().FailNthMethod(method, 3, 5);
    const Outcome inflated = Inflate(packed);
    EXPECT_EQ(inflated.returned, kFailed) << method;
    EXPECT_FALSE(inflated.written.empty()) << method;
    EXPECT_TRUE(data.starts_with(inflated.written)) << method;
    host_.faults().Clear();
  }
}

TEST_F(Packing, AHostThatTellsNoBytesWhereThereShouldBeSomeFailsTheCallBehindWhatWasWritten) {
  const std::string data = Noise(100000);
  const std::string packed = Packed(data, 0);
  const std::string deflated = Deflate(data, 0).written;
  for (const Lie lie : {Lie::kNegativeLength, Lie::kNoBytes}) {
    for (const std::uint64_t read : {1U, 2U, 4U}) {  // of four with bytes
      host_.faults().LieNth(lie, read);
      const Outcome deflating = Deflate(data, 0);
      EXPECT_EQ(deflating.returned, kFailed) << read;
      EXPECT_LT(deflating.written.size(), deflated.size()) << read;
      EXPECT_TRUE(deflated.starts_with(deflating.written)) << read;
      host_.faults().Clear();

      host_.faults().LieNth(lie, read);
      const Outcome inflating = Inflate(packed);
      EXPECT_EQ(inflating.returned, kFailed) << read;
      const std::string whole_reads = packed.substr(0, (read - 1) * 32767);
      EXPECT_TRUE(inflating.written == InflatedAsFarAsPossible(whole_reads, data.size())) << read;
      host_.faults().Clear();
    }
  }
}

TEST_F(Packing, TakesACopyOfWhatTheHostHandsOut) {
  // The emulator overwrites what it has handed out at the next callback; a whole block at level 0 is still being
  // deflated when the first full output block is written.
  for (const std::size_t size : {std::size_t{32767}, std::size_t{100000}}) {
    const std::string data = Noise(size);
    EXPECT_TRUE(Unpacked(Deflate(data, 0).written, size) == data) << size;
    EXPECT_TRUE(Inflate(Packed(data, 0)).written == data) << size;
    const std::string spread = Pattern(size * 100);
    EXPECT_TRUE(Inflate(Packed(spread, 1)).written == spread) << size;
  }
}

TEST_F(Packing, ShortReadsAreNotTheEnd) {
  const std::string data = Noise(1000);
  auto slow = std::make_shared<MemoryStream>(data);
  slow->HandOutAtMost(300);
  EXPECT_TRUE(Unpacked(DeflateFrom(slow).written, 1000) == data);
  auto slow_packed = std::make_shared<MemoryStream>(Packed(data, 6));
  slow_packed->HandOutAtMost(7);
  EXPECT_TRUE(InflateFrom(slow_packed).written == data);
}

TEST_F(Packing, BothStartWhereTheirInputStands) {
  auto input = std::make_shared<MemoryStream>("skipped, packed");
  input->MoveTo(10);
  EXPECT_EQ(Unpacked(DeflateFrom(input).written, 6), "packed");
  auto packed = std::make_shared<MemoryStream>("??" + Packed("abc", 6));
  packed->MoveTo(3);
  EXPECT_EQ(InflateFrom(packed).written, "abc");
}

TEST_F(Packing, UnknownObjectsFail) {
  EXPECT_EQ(TheLibrary().Call("zfDeflateStream", 6, 77, 78), kFailed);
  EXPECT_EQ(TheLibrary().Call("zfInflateStream", 77, 78, 0), kFailed);
}

}  // namespace
}  // namespace emulator
