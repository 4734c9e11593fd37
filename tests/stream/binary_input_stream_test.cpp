#include "stream/binary_input_stream.h"

#include <gmock/gmock.h>

#include <random>

#include "tests/support/emulated_host.h"

namespace {

using emulator::MemoryStream;
using testing::IsEmpty;
using vessa::CVessaBinaryInputStream;
using vessa::E_FAIL;
using vessa::E_INVALIDARG;
using vessa::kSuccess;

using Lines = std::vector<std::string>;

class BinaryInputStream : public EmulatedHost {
 protected:
  /// The object that the library's stream is going to read.
  std::uint32_t Serve(std::string bytes) {
    served_ = std::make_shared<MemoryStream>(std::move(bytes));
    return Add(served_);
  }

  std::shared_ptr<MemoryStream> served_;
};

std::mt19937 RandomNumbers(unsigned seed) { return std::mt19937(seed); }

Lines SkipCalls(int oref, int count) {
  return {"PushMethod " + std::to_string(oref) + " \"Skip\" 0", "PushInteger " + std::to_string(count),
          "InvokeMethod 1"};
}

Lines PeekCalls(int oref, int wanted, int given) {
  return {"PushMethod " + std::to_string(oref) + " \"Peek\" 1", "PushInteger " + std::to_string(wanted),
          "InvokeMethod 1", "PopString -> " + std::to_string(given) + " bytes"};
}

Lines operator+(Lines left, const Lines& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

TEST_F(BinaryInputStream, OpenAsksForThePositionAndLooksAhead) {
  CVessaBinaryInputStream stream(Serve("abc"));
  const Lines position = {"PushProperty 1 \"Position\"", "GetProperty", "ConvertResult 1 -> 1"};

  EXPECT_EQ(CallsOf([&] { EXPECT_EQ(stream.Open(), kSuccess); }), position + PeekCalls(1, 8000, 3));
  EXPECT_EQ(stream.GetPosition(), 1);
  EXPECT_EQ(stream.GetSize(), 4);
  EXPECT_EQ(stream.GetOref(), 1U);
  ExpectCleanStack();
}

TEST_F(BinaryInputStream, AnEmptyStreamIsAtItsEndFromTheStart) {
  CVessaBinaryInputStream stream(Serve(""));
  EXPECT_EQ(stream.Open(), kSuccess);
  EXPECT_EQ(PeekBytes(stream, 4), "end");
  EXPECT_EQ(FailureOf([&] { ReadBytes(stream, 1); }), StatusText(E_FAIL));
  EXPECT_EQ(stream.GetPosition(), 1);
  EXPECT_EQ(stream.GetSize(), 1);
  EXPECT_EQ(ReadBytes(stream, 0), "");
}

TEST_F(BinaryInputStream, LooksAheadAtTheFirstReadWhenNobodyHasOpenedIt) {
  CVessaBinaryInputStream stream(Serve("abc"));
  EXPECT_EQ(ReadBytes(stream, 2), "ab");
}

TEST_F(BinaryInputStream, ReadsOfAStreamThatStandsInTheMiddleGoOnThere) {
  const std::uint32_t oref = Serve("0123456789");
  served_->MoveTo(6);
  CVessaBinaryInputStream stream(oref);
  stream.Open();
  EXPECT_EQ(stream.GetPosition(), 6);
  EXPECT_EQ(ReadBytes(stream, 3), "567");
  EXPECT_EQ(stream.GetPosition(), 9);
  EXPECT_EQ(stream.GetSize(), 11);
}

TEST_F(BinaryInputStream, PeeksNoFurtherThanTheLookAhead) {
  CVessaBinaryInputStream stream(Serve(SomeBytes(9000)));
  stream.Open();
  EXPECT_EQ(PeekBytes(stream, 8001), StatusText(E_INVALIDARG));
  EXPECT_EQ(PeekBytes(stream, 8000), SomeBytes(9000).substr(0, 8000));
  ReadBytes(stream, 1000);
  EXPECT_EQ(PeekBytes(stream, 8000), SomeBytes(9000).substr(1000));
  EXPECT_EQ(PeekBytes(stream, 8001), StatusText(E_INVALIDARG));
}

TEST_F(BinaryInputStream, APeekInsideTheLookAheadAsksNobody) {
  CVessaBinaryInputStream stream(Serve("abcd"));
  stream.Open();
  EXPECT_THAT(CallsOf([&] { EXPECT_EQ(PeekBytes(stream, 4), "abcd"); }), IsEmpty());
}

TEST_F(BinaryInputStream, TheLastByteTellsTheEnd) {
  CVessaBinaryInputStream stream(Serve("abcd"));
  stream.Open();
  EXPECT_EQ(CallsOf([&] { EXPECT_EQ(ReadBytes(stream, 4), "abcd"); }),
            SkipCalls(1, 4) + PeekCalls(1, 8000, 0));
  EXPECT_THAT(CallsOf([&] {
                EXPECT_EQ(PeekBytes(stream, 4), "end");
                EXPECT_EQ(PeekBytes(stream, 9000), "end");
              }),
              IsEmpty());
}

TEST_F(BinaryInputStream, AStreamOf8000BytesIsOneLookAhead) {
  Lines calls;
  {
    CVessaBinaryInputStream stream(Serve(SomeBytes(8000)));
    stream.Open();
    EXPECT_THAT(CallsOf([&] { ReadBytes(stream, 7999); }), IsEmpty());
    calls = CallsOf([&] { ReadBytes(stream, 1); });
  }
  EXPECT_EQ(calls, SkipCalls(1, 8000) + PeekCalls(1, 8000, 0));
  EXPECT_EQ(served_->Position(), 8001);
}

TEST_F(BinaryInputStream, AStreamOf8001BytesIsTwo) {
  CVessaBinaryInputStream stream(Serve(SomeBytes(8001)));
  stream.Open();
  EXPECT_EQ(CallsOf([&] { EXPECT_EQ(ReadBytes(stream, 8001), SomeBytes(8001)); }),
            SkipCalls(1, 8000) + PeekCalls(1, 8000, 1) + SkipCalls(1, 1) + PeekCalls(1, 8000, 0));
}

TEST_F(BinaryInputStream, APeekAcrossTheLookAheadMovesItUp) {
  CVessaBinaryInputStream stream(Serve(SomeBytes(8002)));
  stream.Open();
  stream.Skip(7998);
  EXPECT_EQ(CallsOf([&] { EXPECT_EQ(PeekBytes(stream, 4), SomeBytes(8002).substr(7998)); }),
            SkipCalls(1, 7998) + PeekCalls(1, 8000, 4));
  EXPECT_EQ(stream.GetPosition(), 7999);
}

TEST_F(BinaryInputStream, APeekPastAFreshStreamsLastByteGivesZeros) {
  CVessaBinaryInputStream stream(Serve("ab"));
  stream.Open();
  EXPECT_EQ(PeekBytes(stream, 4), std::string("ab\0\0", 4));
}

TEST_F(BinaryInputStream, APeekPastTheLastByteGivesWhatStoodThereBefore) {
  CVessaBinaryInputStream stream(Serve("abcdefgh"));
  stream.Open();
  ReadBytes(stream, 6);
  EXPECT_EQ(PeekBytes(stream, 4), "ghcd");
  EXPECT_EQ(ReadBytes(stream, 2), "gh");
  EXPECT_EQ(PeekBytes(stream, 4), "end");
}

TEST_F(BinaryInputStream, ReadingPastTheEndMovesToTheEnd) {
  CVessaBinaryInputStream stream(Serve("abcdef"));
  stream.Open();
  ReadBytes(stream, 2);
  EXPECT_EQ(FailureOf([&] { ReadBytes(stream, 5); }), StatusText(E_FAIL));
  EXPECT_EQ(stream.GetPosition(), 7);
}

TEST_F(BinaryInputStream, SkippingPastTheEndMovesToTheEnd) {
  CVessaBinaryInputStream stream(Serve(SomeBytes(20000)));
  stream.Open();
  EXPECT_EQ(FailureOf([&] { stream.Skip(std::int64_t{1} << 40); }), StatusText(E_FAIL));
  EXPECT_EQ(stream.GetPosition(), 20001);
}

TEST_F(BinaryInputStream, DoesNotSkipBackwards) {
  CVessaBinaryInputStream stream(Serve("abcdef"));
  stream.Open();
  ReadBytes(stream, 2);
  EXPECT_EQ(stream.Skip(-1), E_INVALIDARG);
  EXPECT_EQ(ReadBytes(stream, 2), "cd");
}

TEST_F(BinaryInputStream, LeavesTheHostsStreamBehindWhatWasRead) {
  {
    CVessaBinaryInputStream stream(Serve(SomeBytes(100)));
    stream.Open();
    ReadBytes(stream, 6);
    EXPECT_EQ(served_->Position(), 1);
  }
  EXPECT_EQ(served_->Position(), 7);
}

TEST_F(BinaryInputStream, UnreadItLeavesTheHostsStreamAlone) {
  const std::uint32_t oref = Serve("abc");
  EXPECT_THAT(CallsOf([&] { const CVessaBinaryInputStream stream(oref); }), IsEmpty());
}

TEST_F(BinaryInputStream, KeepsNoBytesOfTheHost) {
  CVessaBinaryInputStream stream(Serve(SomeBytes(16000)));
  stream.Open();
  EXPECT_EQ(stream.GetSize(), 16001);  // the host overwrites what it handed out before
  EXPECT_EQ(ReadBytes(stream, 16000), SomeBytes(16000));
}

TEST_F(BinaryInputStream, TakesNoMoreThanItsLookAheadOfAnOverlongPeek) {
  const std::uint32_t oref = Serve(SomeBytes(20000));
  served_->PeekBeyond(500);
  CVessaBinaryInputStream stream(oref);
  stream.Open();
  EXPECT_EQ(ReadBytes(stream, 20000), SomeBytes(20000));
  EXPECT_EQ(PeekBytes(stream, 1), "end");
}

TEST_F(BinaryInputStream, ReadsAHostThatHandsOutLittleAtATime) {
  const std::uint32_t oref = Serve(SomeBytes(1000));
  served_->HandOutAtMost(3);
  CVessaBinaryInputStream stream(oref);
  stream.Open();
  EXPECT_EQ(ReadBytes(stream, 1000), SomeBytes(1000));
  EXPECT_EQ(PeekBytes(stream, 1), "end");
}

TEST_F(BinaryInputStream, AShortPeekOfTheHostShowsStaleBytes) {
  const std::uint32_t oref = Serve("abcdefgh");
  served_->HandOutAtMost(3);
  CVessaBinaryInputStream stream(oref);
  stream.Open();
  EXPECT_EQ(PeekBytes(stream, 4), std::string("abc\0", 4));
}

TEST_F(BinaryInputStream, TakesAnEmptyPeekForTheEnd) {
  const std::uint32_t oref = Serve(SomeBytes(9000));
  served_->EmptyPeekAt(2);
  CVessaBinaryInputStream stream(oref);
  stream.Open();
  ReadBytes(stream, 8000);
  EXPECT_EQ(PeekBytes(stream, 1), "end");
}

TEST_F(BinaryInputStream, CountsPositionsAbove2GiB) {
  const std::uint32_t oref = Serve(SomeBytes(100));
  served_->PretendLarger(0x7FFFFFFE);
  CVessaBinaryInputStream stream(oref);
  stream.Open();
  EXPECT_EQ(stream.GetPosition(), 0x7FFFFFFF);
  ReadBytes(stream, 10);
  EXPECT_EQ(stream.GetPosition(), 0x80000009);
  EXPECT_LT(stream.GetSize(), 0) << "sizes are 32-bit integers";
}

TEST_F(BinaryInputStream, LooksAheadAsFarAsItWasTold) {
  const std::uint32_t oref = Serve(SomeBytes(40000));
  CVessaBinaryInputStream stream(oref, 32648);
  EXPECT_THAT(CallsOf([&] { stream.Open(); }), testing::Contains("PushInteger 32648"));
  EXPECT_EQ(PeekBytes(stream, 32648), SomeBytes(40000).substr(0, 32648));
  EXPECT_EQ(PeekBytes(stream, 32649), StatusText(E_INVALIDARG));
}

/// Calls without the number of the object that they are about.
std::vector<std::string> WithoutOref(std::vector<std::string> calls) {
  for (std::string& call : calls) {
    const std::size_t name = call.find('"');
    if (name != std::string::npos) call.erase(0, name);
  }
  return calls;
}

TEST_F(BinaryInputStream, PassesOverBytesWithTheCallsOfReadingThem) {
  const std::string bytes = SomeBytes(20000);
  for (const std::size_t count : {1U, 7999U, 8000U, 8001U, 16000U, 19999U, 20000U}) {
    CVessaBinaryInputStream read(Serve(bytes));
    const std::vector<std::string> expected = CallsOf([&] {
      read.Open();
      ReadBytes(read, count);
    });
    const std::string rest = ReadBytes(read, bytes.size() - count);
    CVessaBinaryInputStream passed_over(Serve(bytes));
    const std::vector<std::string> calls = CallsOf([&] {
      passed_over.Open();
      EXPECT_TRUE(passed_over.PassOver(count));
    });
    EXPECT_EQ(WithoutOref(calls), WithoutOref(expected)) << count;
    EXPECT_EQ(ReadBytes(passed_over, bytes.size() - count), rest) << count;
  }
}

TEST_F(BinaryInputStream, PassingOverMoreThanThereIsFailsAsReadingDoes) {
  CVessaBinaryInputStream stream(Serve(SomeBytes(20000)));
  stream.Open();
  EXPECT_EQ(FailureOf([&] { stream.PassOver(20001); }), StatusText(E_FAIL));
  EXPECT_EQ(stream.GetPosition(), 20001);
}

// Whatever the order of operations and the size of the look-ahead, the bytes are those of the stream, and the
// host's stream ends behind the last one read.
TEST_F(BinaryInputStream, GivesTheBytesOfTheStreamInOrder) {
  const std::string bytes = SomeBytes(5000);
  std::mt19937 random = RandomNumbers(1);
  for (const std::size_t look_ahead : {std::size_t{1}, std::size_t{7}, std::size_t{64}, std::size_t{8000}}) {
    std::size_t at = 0;
    {
      CVessaBinaryInputStream stream(Serve(bytes), look_ahead);
      stream.Open();
      while (at < 4800) {
        const std::size_t count = random() % 100;
        const std::size_t peeked = std::min(count, look_ahead);
        ASSERT_EQ(PeekBytes(stream, peeked), bytes.substr(at, peeked));
        if (random() % 3 == 0) {
          ASSERT_EQ(stream.Skip(static_cast<std::int64_t>(count)), kSuccess);
        } else {
          ASSERT_EQ(ReadBytes(stream, count), bytes.substr(at, count));
        }
        at += count;
        ASSERT_EQ(stream.GetPosition(), static_cast<std::int64_t>(at) + 1);
      }
    }
    EXPECT_EQ(served_->Position(), static_cast<std::int64_t>(at) + 1);
    ExpectCleanStack();
  }
}

// --- A host that fails

class FailingHost : public BinaryInputStream {
 protected:
  FailingHost() : oref_{Serve(SomeBytes(20000))} {}

  std::uint32_t oref_;
};

TEST_F(FailingHost, NamesAFailedPosition) {
  host_.faults().FailNth(emulator::Operation::kGetProperty, 1, 121);
  CVessaBinaryInputStream stream(oref_);
  EXPECT_EQ(FailureOf([&] { stream.Open(); }), "Callin error getting underlying stream position: 121");
}

TEST_F(FailingHost, NamesAFailedSize) {
  CVessaBinaryInputStream stream(oref_);
  stream.Open();
  host_.faults().FailNth(emulator::Operation::kConvertResult, 1, -13);
  EXPECT_EQ(FailureOf([&] { stream.GetSize(); }), "Callin error getting stream size: -13");
}

TEST_F(FailingHost, NamesAFailedPeek) {
  host_.faults().FailNthMethod("Peek", 1, 5);
  CVessaBinaryInputStream stream(oref_);
  EXPECT_EQ(FailureOf([&] { stream.Open(); }), "Callin error peeking bytes: 5");
}

TEST_F(FailingHost, NamesAFailedSkip) {
  host_.faults().FailNthMethod("Skip", 1, -4);
  CVessaBinaryInputStream stream(oref_);
  stream.Open();
  EXPECT_EQ(FailureOf([&] { ReadBytes(stream, 8000); }), "Callin error skipping bytes: -4");
}

TEST_F(FailingHost, NamesEveryCallbackOfARefill) {
  const Lines texts = {"Callin error skipping bytes: 3", "Callin error skipping bytes: 3",
                       "Callin error skipping bytes: 3", "Callin error peeking bytes: 3",
                       "Callin error peeking bytes: 3",  "Callin error peeking bytes: 3",
                       "Callin error peeking bytes: 3",  "no failure"};
  for (std::size_t nth = 1; nth <= texts.size(); ++nth) {
    CVessaBinaryInputStream stream(Serve(SomeBytes(20000)));
    stream.Open();
    host_.faults().FailNth(nth, 3);
    EXPECT_EQ(FailureOf([&] { ReadBytes(stream, 8000); }), texts[nth - 1]) << nth;
    host_.faults().Clear();
    host_.ResetStack();
  }
}

TEST_F(FailingHost, AnUnknownObjectIsAFailedPosition) {
  CVessaBinaryInputStream stream(77);
  EXPECT_EQ(FailureOf([&] { stream.Open(); }), "Callin error getting underlying stream position: 119");
}

TEST_F(FailingHost, AFailedPeekBehindASkipDoesNotSkipTwice) {
  {
    CVessaBinaryInputStream stream(oref_);
    stream.Open();
    host_.faults().FailNthMethod("Peek", 1, 5);
    EXPECT_EQ(FailureOf([&] { ReadBytes(stream, 8000); }), "Callin error peeking bytes: 5");
    EXPECT_EQ(served_->Position(), 8001);
    host_.ResetStack();
  }
  EXPECT_EQ(served_->Position(), 8001);
}

TEST_F(FailingHost, AFailedPeekBehindASkipCanBeTriedAgain) {
  CVessaBinaryInputStream stream(oref_);
  stream.Open();
  ReadBytes(stream, 7998);
  host_.faults().FailNthMethod("Peek", 1, 5);
  EXPECT_EQ(FailureOf([&] { PeekBytes(stream, 4); }), "Callin error peeking bytes: 5");
  EXPECT_EQ(PeekBytes(stream, 4), SomeBytes(20000).substr(7998, 4));
  EXPECT_EQ(ReadBytes(stream, 12002), SomeBytes(20000).substr(7998));
}

TEST_F(FailingHost, AFailedSkipIsMadeUpForAtTheEnd) {
  {
    CVessaBinaryInputStream stream(oref_);
    stream.Open();
    host_.faults().FailNthMethod("Skip", 1, 5);
    EXPECT_EQ(FailureOf([&] { ReadBytes(stream, 8000); }), "Callin error skipping bytes: 5");
    EXPECT_EQ(served_->Position(), 1);
    host_.ResetStack();
  }
  EXPECT_EQ(served_->Position(), 8001);
}

TEST_F(FailingHost, TheDestructorSwallowsAFailedSkip) {
  {
    CVessaBinaryInputStream stream(oref_);
    stream.Open();
    ReadBytes(stream, 6);
    host_.faults().FailNthMethod("Skip", 1, 5);
  }
  EXPECT_EQ(host_.faults().Hits(), 1U);
  EXPECT_EQ(served_->Position(), 1);
}

TEST_F(FailingHost, BytesThatAreNoneAreAFailedPeek) {
  for (const emulator::Lie lie : {emulator::Lie::kNegativeLength, emulator::Lie::kNoBytes}) {
    host_.faults().LieNth(lie, 1);
    CVessaBinaryInputStream stream(oref_);
    EXPECT_EQ(FailureOf([&] { stream.Open(); }), "Callin error peeking bytes: -1");
  }
}

}  // namespace
