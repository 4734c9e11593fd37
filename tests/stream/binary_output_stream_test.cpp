#include "stream/binary_output_stream.h"

#include <gmock/gmock.h>

#include "tests/support/emulated_host.h"

namespace {

using emulator::MemoryStream;
using testing::ElementsAre;
using testing::IsEmpty;
using vessa::ByteOrder;
using vessa::CVessaBinaryOutputStream;
using vessa::kSuccess;

class BinaryOutputStream : public EmulatedHost {
 protected:
  BinaryOutputStream() : written_{std::make_shared<MemoryStream>()}, output_(Add(written_)) {}

  vessa::Status Write(const std::string& bytes) { return output_.WriteBytes(BytesOf(bytes)); }

  std::shared_ptr<MemoryStream> written_;
  CVessaBinaryOutputStream output_;
};

TEST_F(BinaryOutputStream, KeepsWhatFillsNoBlock) {
  EXPECT_THAT(CallsOf([&] { EXPECT_EQ(Write(SomeBytes(7999)), kSuccess); }), IsEmpty());
}

TEST_F(BinaryOutputStream, SendsABlockOf8000Bytes) {
  EXPECT_THAT(CallsOf([&] { Write(SomeBytes(8000)); }),
              ElementsAre("PushMethod 1 \"Write\" 1", "PushString 8000 bytes", "InvokeMethod 1",
                          "ConvertResult 3 -> 0 bytes"));
  EXPECT_EQ(written_->Bytes(), SomeBytes(8000));
  ExpectCleanStack();
}

TEST_F(BinaryOutputStream, LeavesTheByteBehindABlockForFlush) {
  Write(SomeBytes(8001));
  EXPECT_EQ(written_->Writes(), 1U);
  EXPECT_EQ(written_->ByteCount(), 8000);
  output_.Flush();
  EXPECT_EQ(written_->Bytes(), SomeBytes(8001));
  EXPECT_THAT(CallsOf([&] { output_.Flush(); }), IsEmpty());
  EXPECT_EQ(output_.Total(), 8001U);
}

TEST_F(BinaryOutputStream, JoinsWritesOfAllSizes) {
  std::string all;
  for (const std::size_t size : {0U, 1U, 7998U, 2U, 8000U, 24000U, 3U, 8001U}) {
    EXPECT_EQ(Write(SomeBytes(size)), kSuccess);
    all += SomeBytes(size);
  }
  output_.Flush();
  EXPECT_EQ(written_->Bytes(), all);
  EXPECT_EQ(output_.Total(), all.size());
}

TEST_F(BinaryOutputStream, NamesAFailedWrite) {
  host_.faults().FailNthMethod("Write", 1, 15);
  EXPECT_EQ(FailureOf([&] { Write(SomeBytes(8000)); }), "Callin error writing bytes: 15");
}

TEST_F(BinaryOutputStream, SendsABlockThatFailedAgain) {
  host_.faults().FailNthMethod("Write", 1, 15);
  EXPECT_EQ(FailureOf([&] { Write(SomeBytes(8000)); }), "Callin error writing bytes: 15");
  host_.ResetStack();
  Write("xyz");
  output_.Flush();
  EXPECT_EQ(written_->Bytes(), SomeBytes(8000) + "xyz");
}

TEST_F(BinaryOutputStream, ABlockThatHasArrivedIsNotSentAgainWhenItsResultFails) {
  host_.faults().FailNth(emulator::Operation::kConvertResult, 1, 15);
  EXPECT_EQ(FailureOf([&] { Write(SomeBytes(8000)); }), "Callin error writing bytes: 15");
  host_.ResetStack();
  output_.Flush();
  EXPECT_EQ(written_->Bytes(), SomeBytes(8000));
}

TEST_F(BinaryOutputStream, FlushSwallowsAFailureAndKeepsTheBytes) {
  Write("abc");
  host_.faults().FailNthMethod("Write", 1, 15);
  EXPECT_EQ(FailureOf([&] { output_.Flush(); }), "no failure");
  EXPECT_EQ(host_.faults().Hits(), 1U);
  EXPECT_EQ(written_->Bytes(), "");
  host_.ResetStack();
  output_.Flush();
  EXPECT_EQ(written_->Bytes(), "abc");
}

TEST_F(BinaryOutputStream, WritesTagsInBothOrders) {
  EXPECT_EQ(WriteTag(output_, ByteOrder::kLittleEndian, vessa::Tag{0x00100020}), kSuccess);
  EXPECT_EQ(WriteTag(output_, ByteOrder::kBigEndian, vessa::Tag{0x00100020}), kSuccess);
  output_.Flush();
  EXPECT_EQ(written_->Bytes(), std::string("\x10\x00\x20\x00\x00\x10\x00\x20", 8));
}

TEST_F(BinaryOutputStream, AnUnknownByteOrderIsAnInternalError) {
  EXPECT_EQ(FailureOf([&] { WriteTag(output_, static_cast<ByteOrder>(2), vessa::kItem); }),
            "Internal error: illegal byte-ordering code");
}

}  // namespace
