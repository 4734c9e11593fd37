#include "stream/unbuffered_input_stream.h"

#include <gmock/gmock.h>

#include "tests/support/emulated_host.h"

namespace {

using emulator::MemoryStream;
using testing::ElementsAre;
using vessa::CVessaUnbufferedInputStream;
using vessa::E_INVALIDARG;
using vessa::E_NOTIMPL;
using vessa::kSuccess;

class UnbufferedInputStream : public EmulatedHost {
 protected:
  explicit UnbufferedInputStream(std::size_t bytes = 20000)
      : served_{std::make_shared<MemoryStream>(SomeBytes(bytes))}, stream_(Add(served_)) {}

  std::shared_ptr<MemoryStream> served_;
  CVessaUnbufferedInputStream stream_;
};

TEST_F(UnbufferedInputStream, OpenAsksNobody) {
  EXPECT_THAT(CallsOf([&] { EXPECT_EQ(stream_.Open(), kSuccess); }), testing::IsEmpty());
  EXPECT_EQ(stream_.GetPosition(), 1);
}

TEST_F(UnbufferedInputStream, ReadsByOneCall) {
  EXPECT_THAT(
      CallsOf([&] { EXPECT_EQ(ReadBytes(stream_, 5), SomeBytes(5)); }),
      ElementsAre("PushMethod 1 \"Read\" 1", "PushInteger 5", "InvokeMethod 1", "PopString -> 5 bytes"));
  EXPECT_EQ(stream_.GetPosition(), 6);
  EXPECT_EQ(served_->Position(), 6);
  ExpectCleanStack();
}

TEST_F(UnbufferedInputStream, TellsSizeAndOref) {
  EXPECT_EQ(stream_.GetSize(), 20001);
  EXPECT_EQ(stream_.GetOref(), 1U);
}

TEST_F(UnbufferedInputStream, DoesNotPeek) { EXPECT_EQ(PeekBytes(stream_, 1), StatusText(E_NOTIMPL)); }

TEST_F(UnbufferedInputStream, DoesNotPassOverBytesWithoutReadingThem) {
  EXPECT_THAT(CallsOf([&] { EXPECT_FALSE(stream_.PassOver(5)); }), testing::IsEmpty());
  EXPECT_EQ(stream_.GetPosition(), 1);
}

TEST_F(UnbufferedInputStream, AShortReadIsAFailure) {
  EXPECT_EQ(FailureOf([&] { ReadBytes(stream_, 20001); }), "ReadBytes: too few bytes were read");
  EXPECT_EQ(stream_.GetPosition(), 1);
}

TEST_F(UnbufferedInputStream, SkipsInBlocks) {
  stream_.Skip(16001);
  EXPECT_EQ(served_->Reads(), 3U);
  EXPECT_EQ(stream_.GetPosition(), 16002);
  EXPECT_EQ(ReadBytes(stream_, 2), SomeBytes(16003).substr(16001));
}

TEST_F(UnbufferedInputStream, SkippingPastTheEndIsAFailureWhateverTheCount) {
  EXPECT_EQ(FailureOf([&] { stream_.Skip(std::int64_t{1} << 32); }), "ReadBytes: too few bytes were read");
}

TEST_F(UnbufferedInputStream, DoesNotSkipBackwards) {
  EXPECT_EQ(stream_.Skip(-1), E_INVALIDARG);
  EXPECT_EQ(stream_.Skip(0), kSuccess);
  EXPECT_EQ(stream_.GetPosition(), 1);
}

TEST_F(UnbufferedInputStream, ReportsAFailedReadAsAPeek) {
  host_.faults().FailNthMethod("Read", 1, 7);
  EXPECT_EQ(FailureOf([&] { ReadBytes(stream_, 1); }), "Callin error peeking bytes: 7");
}

TEST_F(UnbufferedInputStream, NamesAFailedSize) {
  host_.faults().FailNth(emulator::Operation::kPushProperty, 1, 119);
  EXPECT_EQ(FailureOf([&] { stream_.GetSize(); }), "Callin error getting stream size: 119");
}

}  // namespace
