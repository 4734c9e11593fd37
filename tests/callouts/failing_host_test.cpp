#include <vector>

#include "tests/callouts/decomposing.h"
#include "tests/support/stored_data_set.h"

// Hosts whose objects and streams fail or misbehave.

namespace emulator {
namespace {

using dicom_bytes::Item;
using dicom_bytes::kExplicitLittleEndian;
using dicom_bytes::kPixelData;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

constexpr const char16_t* kStepAlone = u" decomposing stream";
constexpr int kStatus = 5;

std::string Name() { return kExplicit.Element(0x00100010, "PN", "ab"); }  // 10 bytes
std::string Names(int count) {
  std::string bytes;
  for (int i = 0; i < count; ++i) bytes += Name();
  return bytes;
}
std::string SmallDataSet() { return kExplicit.Sequence(0x00081140, Item(Name())) + Name(); }

class FailingHost : public Decomposing {
 protected:
  std::size_t ElementCount() const { return static_cast<std::size_t>(log_->Count() - 2) / 3; }
};

std::u16string Wide(const std::string& text) { return {text.begin(), text.end()}; }

// --- The content handler

TEST_F(FailingHost, WhoseHandlerFailsAtAnyEventIsNamedTheEventAndKeepsWhatWasSent) {
  ExpectSuccess(Decompose(SmallDataSet()));
  const Lines whole = log_->Lines();
  ASSERT_EQ(whole.size(), 14U);
  for (std::size_t n = 1; n <= whole.size(); ++n) {
    prepare_log_ = [n](EventLog& log) { log.FailAt(n, kStatus); };
    const std::string event = whole[n - 1].substr(0, whole[n - 1].find(' '));
    ExpectFailure(Decompose(SmallDataSet()),
                  Wide("Callin error calling method '" + event + "': 5 -  decomposing stream"));
    EXPECT_EQ(log_->Lines(), Lines(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(n)));
  }
}

TEST_F(FailingHost, WhoseHandlerIsMissingOrIsAnotherKindOfObjectFailsAtTheFirstEvent) {
  const std::uint32_t stream = host_.Add(std::make_shared<MemoryStream>(Name()));
  const auto call = [&](std::uint32_t handler) {
    return Call("zfDecomposeStream",
                ListBuilder().Integer(stream).String(kExplicitLittleEndian).Integer(handler).Integer(0));
  };
  ExpectFailure(call(4711), u"Callin error calling method 'StartContent': 119 -  decomposing stream");
  ExpectFailure(call(stream), u"Callin error calling method 'StartContent': 120 -  decomposing stream");
}

// --- The stream's methods and properties

TEST_F(FailingHost, WhosePeekFailsIsNamedTheStatus) {
  host_.faults().FailNthMethod("Peek", 1, -3);
  ExpectFailure(Decompose(Names(3)), u"Callin error peeking bytes: -3 -  wrapping input stream");
  for (const std::uint64_t n : {2U, 3U}) {
    host_.faults().Clear();
    host_.faults().FailNthMethod("Peek", n, kStatus);
    ExpectFailure(Decompose(Names(2000)), u"Callin error peeking bytes: 5 -  decomposing stream");
    EXPECT_EQ(Consumed(), static_cast<std::int64_t>(n - 1) * 8000);
  }
}

TEST_F(FailingHost, WhoseSkipFailsInTheMiddleIsNamedTheStatus) {
  host_.faults().FailNthMethod("Skip", 1, kStatus);
  ExpectFailure(Decompose(Names(2000)), u"Callin error skipping bytes: 5 -  decomposing stream");
}

TEST_F(FailingHost, WhoseLastSkipFailsHearsNothingAndStandsWhereItStood) {
  AskClient([](std::uint32_t tag) { return tag == 0x00100020; });
  host_.faults().FailNthMethod("Skip", 1, kStatus);
  ExpectSuccess(Decompose(Name() + kExplicit.Element(0x00100020, "LO", "4711")));
  EXPECT_EQ(host_.faults().Hits(), 1U);
  EXPECT_EQ(Consumed(), 0);  // ten bytes were
}

TEST_F(FailingHost, WhoseStreamDoesNotTellItsPositionIsNamedTheStatus) {
  host_.faults().FailNth(Operation::kGetProperty, 1, kStatus);
  ExpectFailure(Decompose(Name()),
                u"Callin error getting underlying stream position: 5 -  wrapping input stream");
}

TEST_F(FailingHost, ThatTellsNoTextWhereOneShouldBeHasFailed) {
  for (const Lie lie : {Lie::kNegativeLength, Lie::kNoBytes}) {
    host_.faults().Clear();
    host_.faults().LieNth(lie, 1);
    ExpectFailure(Decompose(Name()), u"Callin error peeking bytes: -1 -  wrapping input stream");
    host_.faults().Clear();
    host_.faults().LieNth(lie, 2);
    ExpectFailure(Decompose(Names(2000)), u"Callin error peeking bytes: -1 -  decomposing stream");
  }
}

TEST_F(FailingHost, ThatReturnsACountAboveTheCapacityHasFailed) {
  for (const std::uint64_t n : {1U, 3U}) {
    host_.faults().Clear();
    host_.faults().LieNth(Lie::kCountAboveCapacity, n);
    const std::string event = n == 1 ? "StartContent" : "Data";
    ExpectFailure(Decompose(Name()),
                  Wide("Callin error calling method '" + event + "': -1 -  decomposing stream"));
  }
}

// --- Peeks that hand out more or less than they should

TEST_F(FailingHost, WhosePeekHandsOutMoreThanWasAskedForLosesNothing) {
  const auto stream = std::make_shared<MemoryStream>(Names(5000));
  stream->PeekBeyond(1234);
  ExpectSuccess(DecomposeFrom(stream));
  EXPECT_EQ(ElementCount(), 5000U);
  EXPECT_EQ(Consumed(), 50000);
}

TEST_F(FailingHost, WhosePeekHandsOutLessThanATagGetsATagOfStaleBytes) {
  // The tag is (0010,1010). Of its last byte the look-ahead holds what stood there before, at first a zero.
  const auto stream = std::make_shared<MemoryStream>(kExplicit.Element(0x00101010, "AS", "042Y"));
  stream->HandOutAtMost(3);
  ExpectSuccess(DecomposeFrom(stream));
  EXPECT_EQ(Events()[0], "StartElement 00100010 AS 4");
  EXPECT_EQ(Events()[1], "Data 00100010 1 30343259");
}

TEST_F(FailingHost, WhosePeekHandsOutFourBytesAtATimeLosesNothing) {
  const auto stream = std::make_shared<MemoryStream>(kExplicit.Element(0x00101010, "AS", "042Y"));
  stream->HandOutAtMost(4);
  ExpectSuccess(DecomposeFrom(stream));
  EXPECT_EQ(Events()[0], "StartElement 00101010 AS 4");
}

TEST_F(FailingHost, WhosePeekHandsOutNothingBeforeTheEndMayHaveHalfADataSetTakenForTheWhole) {
  const auto stream = std::make_shared<MemoryStream>(Names(2000));
  stream->EmptyPeekAt(2);  // of the elements that begin at byte 8000
  ExpectSuccess(DecomposeFrom(stream));
  EXPECT_EQ(ElementCount(), 800U);
  EXPECT_EQ(Consumed(), 8000);
}

TEST_F(FailingHost, WhosePeekHandsOutNothingInsideAnElementIsTakenForACutStream) {
  const auto stream =
      std::make_shared<MemoryStream>(kExplicit.Element(kPixelData, "OW", std::string(9000, 'x')));
  stream->EmptyPeekAt(2);
  ExpectFailure(DecomposeFrom(stream), kStepAlone);
}

// --- Streams that move, and streams that are vast

TEST_F(FailingHost, ThatMovesTheStreamInsideAnEventGetsGarbageAndNothingWorse) {
  for (unsigned seed = 0; seed < 50; ++seed) {
    const auto stream = std::make_shared<MemoryStream>(Names(2000));
    int moves_left = 50;
    prepare_log_ = [&](EventLog& log) {
      log.OnEvent([&, random = seed](std::string_view, std::span<const Value>) mutable {
        random = random * 1103515245U + 12345U;
        if (moves_left-- > 0) stream->MoveTo(random % 20001);
      });
    };
    const ListResult result = DecomposeFrom(stream);
    EXPECT_EQ(result.returned, 0);
    EXPECT_LE(result.status, 1);
    EXPECT_LE(Consumed(), 20000);
  }
}

TEST_F(FailingHost, WhosePositionIsAboveTheRangeOf32BitsIsReadAsAnyOther) {
  const std::string bytes = kExplicit.Sequence(0x00081140, Item(Names(1000))) + Name();
  ExpectSuccess(Decompose(bytes));
  const Lines expected = log_->Lines();
  // The range ends in front of the stream, inside it, and far before it.
  for (const std::int64_t before : {(std::int64_t{1} << 31) - 1, (std::int64_t{1} << 31) - 5000,
                                    (std::int64_t{1} << 32) - 5000, std::int64_t{5} << 32}) {
    const auto stream = std::make_shared<MemoryStream>(bytes);
    stream->PretendLarger(before);
    ExpectSuccess(DecomposeFrom(stream));
    EXPECT_EQ(log_->Lines(), expected) << before;
    EXPECT_EQ(Consumed(), static_cast<std::int64_t>(bytes.size()));
  }
}

/// Composing a data set of pixel data alone, out of a stream of four bytes.
class FailingPixelStream : public LoadedLibrary {
 protected:
  ListResult Compose() {
    data_.Top(kPixelData, 1, "OW", "");
    return Call("zfComposeStream", ListBuilder()
                                       .Integer(host_.Add(output_))
                                       .String(StoredDataSet::kId)
                                       .String(kExplicitLittleEndian)
                                       .String(kExplicitLittleEndian)
                                       .Integer(host_.Add(pixels_)));
  }

  /// One composition for each text that the host has to tell: that text is a lie. One more without a lie.
  void ExpectEachLieToFailWith(const std::vector<std::string>& messages) {
    for (const Lie lie : {Lie::kNegativeLength, Lie::kNoBytes}) {
      for (std::size_t n = 1; n <= messages.size() + 1; ++n) {
        SCOPED_TRACE(n);
        host_.faults().Clear();
        host_.faults().LieNth(lie, n);
        pixels_->MoveTo(1);
        const ListResult result = Compose();
        if (n <= messages.size()) {
          ExpectFailure(result, Wide(messages[n - 1] + " -  composing stream"));
        } else {
          ExpectSuccess(result);
          EXPECT_EQ(host_.faults().Hits(), 0U);  // there was no text more to lie about
        }
      }
    }
  }

  StoredDataSet data_{host_};
  std::shared_ptr<MemoryStream> output_ = std::make_shared<MemoryStream>();
  std::shared_ptr<MemoryStream> pixels_ = std::make_shared<MemoryStream>("abcd");
};

TEST_F(FailingPixelStream, ThatDoesNotTellItsSizeIsNamedTheStatus) {
  host_.faults().FailNth(Operation::kGetProperty, 2, kStatus);
  ExpectFailure(Compose(), u"Callin error getting stream size: 5 -  composing stream");
}

TEST_F(FailingPixelStream, OfAHostThatTellsNoTextWhereOneShouldBeFailsTheCall) {
  const auto of_the_global = [](const char* operation) {
    return std::string(operation) + ": Vessa' callin error: failure (code -1) (interface error)";
  };
  const std::string key = of_the_global("NextTagKey");
  const std::string length = of_the_global("GetDataLength");
  const std::string chunk = of_the_global("GetNextDataChunk");
  const std::string peek = "Callin error peeking bytes: -1";
  data_.Top(0x00100010, 2, "PN", "ab");
  ExpectEachLieToFailWith({
      key, key, key,                                            // the name: its node, its key, its VR
      length, length, chunk, chunk, key, key, key, peek, peek,  // the pixels
      key,                                                      // no more
  });
}

TEST_F(FailingPixelStream, ThatHoldsFourBytesIsWrittenWhole) {
  ExpectSuccess(Compose());
  EXPECT_EQ(output_->Bytes(), kExplicit.Element(kPixelData, "OW", "abcd"));
}

TEST_F(FailingPixelStream, WhoseSizeIsNegativeIn32BitsHasNothingLeft) {
  // Position 2147483646, size 2147483650, which comes as -2147483646.
  pixels_->PretendLarger((std::int64_t{1} << 31) - 3);
  ExpectSuccess(Compose());
  EXPECT_EQ(output_->Bytes(), kExplicit.Element(kPixelData, "OW", ""));
}

}  // namespace
}  // namespace emulator
