#include <gmock/gmock.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "tests/callouts/composing.h"
#include "tests/callouts/drain.h"

namespace emulator {
namespace {

using dicom_bytes::Hex;
using dicom_bytes::kExplicitLittleEndian;
using dicom_bytes::kImplicitLittleEndian;
using dicom_bytes::kJpegBaseline;
using dicom_bytes::kPixelData;
using dicom_bytes::Number32;
using testing::Contains;

constexpr const char* kNoStream = "ComposePixelElement: No pixel data stream was passed to Compose";
constexpr const char* kEarlyEnd = "ComposePixelElement: Read error or unexpected end of file in pixel data";
constexpr const char* kNoLook = "PixelDataIsFramed: Read error or unexpected end of file in pixel data";

/// An empty offset table, one fragment of 4 bytes, the delimiter.
constexpr const char* kFrames = "FEFF00E0 00000000 FEFF00E0 04000000 01020304 FEFFDDE0 00000000";

/// Says that it is larger, or smaller, than it is.
class Misjudged : public MemoryStream {
 public:
  Misjudged(std::string bytes, std::int64_t size) : MemoryStream(std::move(bytes)), size_{size} {}
  Value Property(std::string_view name) override {
    return name == "Size" ? size_ : MemoryStream::Property(name);
  }

 private:
  std::int64_t size_;
};

class ComposePixelData : public ComposeStream {
 protected:
  ComposePixelData() { data_.Top(kPixelData, 1, "OB", "never read"); }
};

TEST_F(ComposePixelData, TakesWhatIsLeftInTheStream) {
  Pixels("skipped:abcd").MoveTo(9);
  ExpectBytes(Compose(), "E07F 1000 4F42 0000 04000000 61626364");
  Pixels("");
  ExpectBytes(Compose(), "E07F 1000 4F42 0000 00000000");
}

TEST_F(ComposePixelData, HasNothingLeftWhereTheSizeIsBelowThePosition) {
  for (const std::int64_t size : {std::int64_t{0}, std::int64_t{-2147483648}}) {
    Pixels(std::make_shared<Misjudged>("abcd", size));
    ExpectBytes(Compose(), "E07F 1000 4F42 0000 00000000");
  }
}

TEST_F(ComposePixelData, ReadsTheStreamInBlocksOf32648Bytes) {
  Pixels(std::string(2 * 32648 + 5, 'x'));
  host_.Record(true);
  ExpectSuccess(Compose());
  EXPECT_EQ(Written().size(), 12U + 2 * 32648 + 5);
  EXPECT_THAT(host_.Calls(),
              Contains("PushInteger 32648").Times(4 + 2));  // peeks, and skips of two whole blocks
  EXPECT_THAT(host_.Calls(), Contains("PopString -> 32648 bytes").Times(2));
  EXPECT_THAT(host_.Calls(), Contains("PopString -> 5 bytes").Times(1));
}

TEST_F(ComposePixelData, WritesFramedDataWithAnUndefinedLengthAndAddsNothing) {
  Pixels(Hex(kFrames));
  ExpectBytes(Compose(kJpegBaseline), std::string("E07F 1000 4F42 0000 FFFFFFFF") + kFrames);
  host_.globals().Set("KevDICOM.Debug", {std::string("simplepixeldataframes")}, std::string("0"));
  Pixels(Hex(kFrames));
  ExpectBytes(Compose(kJpegBaseline), std::string("E07F 1000 4F42 0000 1C000000") + kFrames);
}

TEST_F(ComposePixelData, TakesAnOffsetTableOfALengthThatWouldWrapAsNotFramed) {
  for (std::uint32_t length = 0xFFFFFFFF; length >= 0xFFFFFFF8; --length) {
    const std::string bytes = Hex("FEFF00E0") + Number32(length) + Hex("FEFF00E0 00000000 00000000");
    Pixels(bytes);
    ExpectSuccess(Compose());
    EXPECT_EQ(Written(), Hex("E07F 1000 4F42 0000 14000000") + bytes) << length;
  }
}

TEST_F(ComposePixelData, NeedsSixteenBytesBehindTheOffsetTable) {
  const std::string start = Hex("FEFF00E0 02000000 AAAA FEFF00E0");
  for (const std::size_t behind : {std::size_t{11}, std::size_t{12}}) {
    Pixels(start + std::string(behind, '\0'));
    ExpectSuccess(Compose());
    const bool is_framed = Written().substr(8, 4) == Hex("FFFFFFFF");
    EXPECT_EQ(is_framed, behind == 12) << behind;
  }
}

TEST_F(ComposePixelData, WritesMarkedDataWithAnUndefinedLength) {
  data_.MarkUndefined(1);
  Pixels("ab");
  ExpectBytes(Compose(), "E07F 1000 4F42 0000 FFFFFFFF 6162");
  Pixels("");
  ExpectBytes(Compose(), "E07F 1000 4F42 0000 FFFFFFFF FEFF DDE0 00000000");
}

TEST_F(ComposePixelData, IsMarkedByTheValueOneAlone) {
  Pixels("");
  const std::string defined = "E07F 1000 4F42 0000 00000000";
  data_.Set({std::int64_t{1}, std::string("l")}, std::string("01"));
  ExpectBytes(Compose(), defined);
  host_.globals().Kill("KevDICOM.Data", {std::string(StoredDataSet::kId), std::int64_t{1}, std::string("l")});
  data_.Set({std::int64_t{1}, std::string("l"), std::int64_t{1}}, std::string("1"));
  ExpectBytes(Compose(), defined);
}

TEST_F(ComposePixelData, SwapsByTheUnitOfItsVr) {
  Pixels(Hex("01020304"));
  ExpectBytes(Compose(kImplicitLittleEndian, kExplicitBigEndian), "E07F 1000 04000000 01020304");
  data_.Vr(1, "OW");
  Pixels(Hex("01020304 05"));
  ExpectBytes(Compose(kImplicitLittleEndian, kExplicitBigEndian), "E07F 1000 05000000 02010403 05");
}

TEST_F(ComposePixelData, RaisesABareStatusForAVrWithoutAUnit) {
  data_.Vr(1, "LO");
  Pixels("abcd");
  ExpectFailure(Compose(kImplicitLittleEndian, kExplicitBigEndian), u" composing stream");
  EXPECT_EQ(Written(), Hex("E07F 1000 04000000"));
  Pixels("abcd");
  ExpectSuccess(Compose(kImplicitLittleEndian, kExplicitLittleEndian));
}

TEST_F(ComposePixelData, SaysWhatIsWrongWithItsStreamOrWithBitsAllocated) {
  ExpectFails(Compose(), kNoStream, "");
  Pixels(std::make_shared<Misjudged>("abcd", 100));  // it says that 99 bytes are left
  ExpectFails(Compose(), kEarlyEnd, "E07F 1000 4F42 0000 63000000");
  Pixels("abcd").EmptyPeekAt(1);
  ExpectFails(Compose(), kNoLook, "");

  data_.Top(0x00280100, 2, "OW", Hex("1000"));
  ExpectFails(Compose(), "CollectSpecialTagInfo: BitsAllocated (0028,0100) should have a VR of US, got: OW",
              "2800 0001 4F57 0000 02000000 1000");
  data_.Vr(2, "US");
  data_.Value(2, "1");
  ExpectFails(Compose(), "CollectSpecialTagInfo: BitsAllocated (0028,0100) data should have a length of 2",
              "2800 0001 5553 0100 31");
  data_.Value(2, Hex("0010"));
  Pixels("ab");
  ExpectBytes(Compose(kImplicitLittleEndian, kExplicitBigEndian),
              "2800 0001 02000000 1000 E07F 1000 02000000 6162");
}

TEST_F(ComposePixelData, WritesWhatThereWasOfAStreamThatShrinksWhileItIsRead) {
  class Shrinking : public MemoryStream {
   public:
    using MemoryStream::MemoryStream;
    Value Call(std::string_view method, std::span<const Value> arguments) override {
      if (method == "Skip") MoveTo(ByteCount() + 1);  // all behind the first block is gone
      return MemoryStream::Call(method, arguments);
    }
  };
  Pixels(std::make_shared<Shrinking>(std::string(100000, 'x')));
  ExpectFailure(Compose(),
                u"ComposePixelElement: Read error or unexpected end of file in pixel data -  composing "
                u"stream");
  EXPECT_EQ(Written().size(), 12U + 32648);
}

TEST_F(ComposePixelData, AreCopiedInConstantMemory) {
  class Endless : public StreamObject {
   public:
    std::int64_t ByteCount() const override { return std::int64_t{128} << 20; }

   protected:
    std::string_view BytesAt(std::int64_t /*offset*/, std::int64_t count) override {
      return std::string_view(block_).substr(0, static_cast<std::size_t>(count));
    }
    void Append(std::string_view /*bytes*/) override {}

   private:
    std::string block_ = std::string(std::size_t{1} << 16, 'x');
  };
  auto [pixels, pixels_oref] = Make<Endless>();
  auto [drain, output_oref] = Make<Drain>();
  ExpectSuccess(Call("zfComposeStream", ListBuilder()
                                            .Integer(output_oref)
                                            .String(StoredDataSet::kId)
                                            .String(kExplicitLittleEndian)
                                            .String(kExplicitLittleEndian)
                                            .Integer(pixels_oref)));
  EXPECT_EQ(drain->Total(), 12U + (std::uint64_t{128} << 20));
  EXPECT_EQ(drain->Largest(), 8000U);
  EXPECT_LT(drain->MemoryGrowth(), std::size_t{1} << 20);
}

TEST_F(ComposePixelData, KeepsTheStreamsTextsForFailuresOfTheHost) {
  struct Fault {
    const char* method;
    std::uint64_t n;
    const char16_t* message;
  };
  for (const Fault& fault : {Fault{"Peek", 1, u"Callin error peeking bytes: 5 -  composing stream"},
                             Fault{"Skip", 1, u"Callin error skipping bytes: 5 -  composing stream"},
                             Fault{"Write", 1, u"Callin error writing bytes: 5 -  composing stream"}}) {
    Pixels(std::string(40000, 'x'));
    host_.faults().FailNthMethod(fault.method, fault.n, 5, true);
    ExpectFailure(Compose(), fault.message);
    host_.faults().Clear();
  }
  Pixels("abcd");
  host_.faults().FailNth(Operation::kGetProperty, 1, 5);
  ExpectFailure(Compose(), u"Callin error getting underlying stream position: 5 -  composing stream");
  host_.faults().FailNth(Operation::kGetProperty, 2, 5);
  ExpectFailure(Compose(), u"Callin error getting stream size: 5 -  composing stream");
}

TEST_F(ComposePixelData, ReportsTheFirstFailureWhenCleaningUpFailsAsWell) {
  // Peeks that end in the middle of a block leave bytes to be skipped when the stream is let go.
  Pixels(std::string(40000, 'x')).HandOutAtMost(20000);
  host_.faults().FailNthMethod("Write", 1, 5, true);
  host_.faults().FailNthMethod("Skip", 2, 7, true);
  host_.Record(true);
  ExpectFails(Compose(), "Callin error writing bytes: 5", "");
  EXPECT_EQ(host_.faults().Hits(), 3U);  // the block, the skip, and the block again
  EXPECT_THAT(host_.Calls(), Contains("PushInteger 12648").Times(1));
  host_.faults().Clear();
  host_.ResetStack();
  Pixels("abcd");
  ExpectBytes(Compose(), "E07F 1000 4F42 0000 04000000 61626364");
}

}  // namespace
}  // namespace emulator
