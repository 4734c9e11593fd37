#include "compose/pixel_element.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "tests/compose/compose_host.h"

namespace vessa {
namespace {

constexpr std::uint32_t kPixels = 0x7FE00010;
constexpr const char* kEarlyEnd = "ComposePixelElement: Read error or unexpected end of file in pixel data";
constexpr const char* kNoLook = "PixelDataIsFramed: Read error or unexpected end of file in pixel data";

/// An empty offset table, one fragment of 4 bytes, the delimiter.
constexpr const char* kFrames = "FEFF00E0 00000000 FEFF00E0 04000000 01020304 FEFFDDE0 00000000";

class PixelElement : public ::testing::Test {
 protected:
  void ExpectBytes(std::string_view syntax, std::string_view original, std::string_view digits,
                   bool simple_frames = false) {
    EXPECT_EQ(host_.Compose(syntax, original, simple_frames), "");
    EXPECT_EQ(Digits(host_.Written()), Digits(Hex(digits)));
  }

  ComposeHost host_;
};

TEST_F(PixelElement, NeedsAStream) {
  host_.Top(kPixels, 1, "OW", "never read");
  EXPECT_EQ(host_.Compose(kExplicitLittle),
            "ComposePixelElement: No pixel data stream was passed to Compose");
  EXPECT_EQ(host_.Written(), "");
}

TEST_F(PixelElement, NativeDataHaveTheLengthOfWhatIsLeftInTheStream) {
  host_.Top(kPixels, 1, "OW", "never read");
  host_.PixelData("skipped:abcd").MoveTo(9);
  ExpectBytes(kExplicitLittle, kExplicitLittle, "E07F 1000 4F57 0000 04000000 61626364");
}

TEST_F(PixelElement, NativeDataInImplicitVr) {
  host_.Top(kPixels, 1, "OW", "");
  host_.PixelData("abcd");
  ExpectBytes(kImplicitLittle, kExplicitLittle, "E07F 1000 04000000 61626364");
}

TEST_F(PixelElement, TheStreamIsLeftBehindTheLastByte) {
  host_.Top(kPixels, 1, "OB", "");
  emulator::MemoryStream& stream = host_.PixelData(std::string(100000, 'x'));
  EXPECT_EQ(host_.Compose(kExplicitLittle), "");
  EXPECT_EQ(stream.Position(), 100001);
  EXPECT_EQ(host_.Written().size(), 12U + 100000);
}

TEST_F(PixelElement, IsReadInBlocksOf32648Bytes) {
  host_.Top(kPixels, 1, "OB", "");
  host_.PixelData(std::string(2 * 32648 + 5, 'x'));
  host_.Host().Record(true);
  EXPECT_EQ(host_.Compose(kExplicitLittle), "");
  const std::vector<std::string>& calls = host_.Host().Calls();
  // Two peeks for the blocks, one for the rest, one for the end; a skip before each but the first.
  EXPECT_THAT(calls, ::testing::Contains("PushMethod 2 \"Peek\" 1").Times(4));
  EXPECT_THAT(calls, ::testing::Contains("PushMethod 2 \"Skip\" 0").Times(3));
  EXPECT_THAT(calls, ::testing::Contains("PopString -> 32648 bytes").Times(2));
  EXPECT_THAT(calls, ::testing::Contains("PopString -> 5 bytes").Times(1));
}

TEST_F(PixelElement, FramedDataHaveAnUndefinedLengthAndNothingIsAdded) {
  host_.Top(kPixels, 1, "OB", "");
  host_.PixelData(Hex(kFrames));
  ExpectBytes(kJpeg, kExplicitLittle, std::string("E07F 1000 4F42 0000 FFFFFFFF") + kFrames);
}

TEST_F(PixelElement, TheDebugSwitchTakesFramedDataAsNative) {
  host_.Top(kPixels, 1, "OB", "");
  host_.PixelData(Hex(kFrames));
  ExpectBytes(kJpeg, kExplicitLittle, std::string("E07F 1000 4F42 0000 1C000000") + kFrames, true);
}

TEST_F(PixelElement, MarkedDataHaveAnUndefinedLengthWhateverTheyAre) {
  host_.Top(kPixels, 1, "OB", "");
  host_.MarkUndefined(1);
  host_.PixelData("ab");
  ExpectBytes(kExplicitLittle, kExplicitLittle, "E07F 1000 4F42 0000 FFFFFFFF 6162");
}

TEST_F(PixelElement, AnEmptyMarkedStreamEndsWithADelimiter) {
  host_.Top(kPixels, 1, "OB", "");
  host_.MarkUndefined(1);
  host_.PixelData("");
  ExpectBytes(kExplicitLittle, kExplicitLittle, "E07F 1000 4F42 0000 FFFFFFFF FEFF DDE0 00000000");
}

TEST_F(PixelElement, AnEmptyStreamIsAValueOfLengthZero) {
  host_.Top(kPixels, 1, "OW", "");
  host_.PixelData("");
  ExpectBytes(kExplicitLittle, kExplicitLittle, "E07F 1000 4F57 0000 00000000");
}

TEST_F(PixelElement, ASizeSmallerThanThePositionLeavesNothing) {
  class Backward : public emulator::MemoryStream {
   public:
    using MemoryStream::MemoryStream;
    emulator::Value Property(std::string_view name) override {
      if (name == "Size") return std::int64_t{-2147483648};
      return MemoryStream::Property(name);
    }
  };
  host_.Top(kPixels, 1, "OW", "");
  host_.PixelStream(std::make_shared<Backward>("abcd"));
  ExpectBytes(kExplicitLittle, kExplicitLittle, "E07F 1000 4F57 0000 00000000");
}

TEST_F(PixelElement, SwapsByTheUnitOfItsVr) {
  host_.Top(kPixels, 1, "OW", "");
  host_.PixelData(Hex("01020304 05"));
  ExpectBytes(kImplicitLittle, kExplicitBig, "E07F 1000 05000000 02010403 05");
}

TEST_F(PixelElement, ByteDataAreNotSwapped) {
  host_.Top(kPixels, 1, "OB", "");
  host_.PixelData(Hex("01020304"));
  ExpectBytes(kImplicitLittle, kExplicitBig, "E07F 1000 04000000 01020304");
}

TEST_F(PixelElement, SwapsAcrossBlocks) {
  host_.Top(kPixels, 1, "OF", "");
  std::string pixels;
  std::string swapped;
  for (int unit = 0; unit < 30000; ++unit) {
    std::string numbered = Hex("00010203");
    numbered[0] = static_cast<char>(unit);
    pixels += numbered;
    swapped += std::string(numbered.rbegin(), numbered.rend());
  }
  host_.PixelData(pixels);
  EXPECT_EQ(host_.Compose(kImplicitLittle, kExplicitBig), "");
  EXPECT_TRUE(host_.Written().substr(8) == swapped);
}

TEST_F(PixelElement, AVrWithoutAUnitIsAnUnexpectedStatusOnlyWhenSwapping) {
  host_.Top(kPixels, 1, "LO", "");
  host_.PixelData("abcd");
  EXPECT_EQ(host_.Compose(kImplicitLittle, kExplicitBig), "status " + std::to_string(MakeStatus(0x8000FFFF)));
  EXPECT_EQ(Digits(host_.Written()), Digits(Hex("E07F 1000 04000000")));
  EXPECT_EQ(host_.Compose(kImplicitLittle, kExplicitLittle), "");
}

TEST_F(PixelElement, AVrComesFromTheDictionaryWhereTheContentHasNone) {
  host_.Top(kPixels, 1, "", "");
  host_.PixelData("ab");
  ExpectBytes(kExplicitLittle, kExplicitLittle, "E07F 1000 4F58 0000 02000000 6162");
}

TEST_F(PixelElement, AShortLengthDoesNotHoldAnUndefinedOne) {
  host_.Top(kPixels, 1, "US", "");
  host_.MarkUndefined(1);
  host_.PixelData("ab");
  EXPECT_EQ(host_.Compose(kExplicitLittle), "ComposeElement writing VR writing value length");
}

TEST_F(PixelElement, AShortLengthDoesNotHoldALongStream) {
  host_.Top(kPixels, 1, "US", "");
  host_.PixelData(std::string(65536, 'x'));
  EXPECT_EQ(host_.Compose(kExplicitLittle), "ComposeElement writing VR writing value length");
}

TEST_F(PixelElement, AStreamThatEndsBeforeItsSizeFailsAfterWhatThereWas) {
  host_.Top(kPixels, 1, "OB", "");
  class Shrinking : public emulator::MemoryStream {
   public:
    using MemoryStream::MemoryStream;
    emulator::Value Property(std::string_view name) override {
      if (name == "Size") return ByteCount() + 1 + 10;
      return MemoryStream::Property(name);
    }
  };
  host_.PixelStream(std::make_shared<Shrinking>(std::string(40000, 'x')));
  EXPECT_EQ(host_.Compose(kExplicitLittle), kEarlyEnd);
  EXPECT_EQ(host_.Written().size(), 12U + 32648);
}

TEST_F(PixelElement, AStreamThatGivesNothingThoughItHasASizeCannotBeLookedAt) {
  host_.Top(kPixels, 1, "OB", "");
  host_.PixelData("abcd").EmptyPeekAt(1);
  EXPECT_EQ(host_.Compose(kExplicitLittle), kNoLook);
  EXPECT_EQ(host_.Written(), "");
}

TEST_F(PixelElement, WithoutALookTheSameStreamFailsInTheCopy) {
  host_.Top(kPixels, 1, "OB", "");
  host_.PixelData("abcd").EmptyPeekAt(1);
  EXPECT_EQ(host_.Compose(kExplicitLittle, kExplicitLittle, true), kEarlyEnd);
  EXPECT_EQ(Digits(host_.Written()), Digits(Hex("E07F 1000 4F42 0000 04000000")));
}

TEST_F(PixelElement, ShortPeeksOnlyTakeLonger) {
  host_.Top(kPixels, 1, "OB", "");
  host_.PixelData(std::string(5000, 'x')).HandOutAtMost(7);
  EXPECT_EQ(host_.Compose(kExplicitLittle), "");
  EXPECT_TRUE(host_.Written().substr(12) == std::string(5000, 'x'));
}

TEST_F(PixelElement, FailuresOfTheStreamKeepItsTexts) {
  struct Case {
    const char* method;
    std::uint64_t n;
    const char* failure;
  };
  for (const Case& fault :
       {Case{"Peek", 1, "Callin error peeking bytes: 5"}, Case{"Peek", 2, "Callin error peeking bytes: 5"},
        Case{"Skip", 1, "Callin error skipping bytes: 5"},
        Case{"Write", 1, "Callin error writing bytes: 5"}}) {
    ComposeHost host;
    host.Top(kPixels, 1, "OB", "");
    host.PixelData(std::string(40000, 'x'));
    host.Host().faults().FailNthMethod(fault.method, fault.n, 5, true);
    EXPECT_EQ(host.Compose(kExplicitLittle), fault.failure);
  }
  for (const auto& [n, failure] :
       {std::pair<std::uint64_t, const char*>{1, "Callin error getting underlying stream position: 5"},
        {2, "Callin error getting stream size: 5"}}) {
    ComposeHost host;
    host.Top(kPixels, 1, "OB", "");
    host.PixelData("abcd");
    host.Host().faults().FailNth(emulator::Operation::kGetProperty, n, 5);
    EXPECT_EQ(host.Compose(kExplicitLittle), failure);
  }
}

TEST_F(PixelElement, AFailingSkipAtTheEndIsSwallowed) {
  host_.Top(kPixels, 1, "OB", "");
  host_.PixelData("abcd");
  host_.Top(0xFFFCFFFC, 2, "OB", "");
  host_.Host().faults().FailNthMethod("Skip", 1, 5, true);
  // The skip behind the last byte comes with the look for the end of the stream: that one is told.
  EXPECT_EQ(host_.Compose(kExplicitLittle), "Callin error skipping bytes: 5");
}

}  // namespace
}  // namespace vessa
