#include <gmock/gmock.h>

#include <string>

#include "tests/callouts/composing.h"

// What follows from the dictionary and the two transfer syntaxes, and what is looked at first.

namespace emulator {
namespace {

using dicom_bytes::Hex;
using dicom_bytes::kImplicitLittleEndian;
using dicom_bytes::kPixelData;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

constexpr std::uint32_t kReferencedImageSequence = 0x00081140;
constexpr std::uint32_t kReferencedSeriesSequence = 0x00081115;
constexpr std::uint32_t kReferencedSOPInstanceUID = 0x00081155;

/// Where the first of the recorded calls stands that has the text in it.
std::size_t PlaceOf(std::string_view text, const std::vector<std::string>& calls) {
  std::size_t at = 0;
  while (at < calls.size() && calls[at].find(text) == std::string::npos) ++at;
  EXPECT_LT(at, calls.size()) << text;
  return at;
}

TEST_F(ComposeStream, TakesAnElementWithoutAVrForTheSequenceThatTheDictionarySaysItIs) {
  data_.LinkTop(std::int64_t{kReferencedImageSequence}, std::int64_t{1});
  data_.Set({std::int64_t{1}, std::string("c"), std::int64_t{1}, std::int64_t{kReferencedSeriesSequence}},
            std::int64_t{2});
  data_.InItem(2, 1, kReferencedSOPInstanceUID, 3, "", "1.");
  ExpectBytes(Compose(),
              "0800 4011 5351 0000 FFFFFFFF"
              "  FEFF 00E0 FFFFFFFF"
              "    0800 1511 5351 0000 FFFFFFFF"
              "      FEFF 00E0 FFFFFFFF"
              "        0800 5511 5549 0200 312E"
              "      FEFF 0DE0 00000000"
              "    FEFF DDE0 00000000"
              "  FEFF 0DE0 00000000"
              "FEFF DDE0 00000000");
}

TEST_F(ComposeStream, GivesPrivateElementsWithoutAVrTheDictionarysVrs) {
  data_.Top(0x00090010, 1, "", "AB");
  data_.Top(0x00091001, 2, "", "CD");
  ExpectBytes(Compose(), "0900 1000 4C4F 0200 4142 0900 0110 554E 0000 02000000 4344");
}

TEST_F(ComposeStream, ReadsNodeNumbersAsFarAsTheyAreNumbers) {
  data_.LinkTop(std::int64_t{0x00100010}, std::string(" +7x"));
  data_.Vr(7, "PN");
  data_.Value(7, "AB");
  ExpectBytes(Compose(), "1000 1000 504E 0200 4142");
}

TEST_F(ComposeStream, WritesTheVrFormOfEachSyntax) {
  data_.Top(0x00100010, 1, "PN", "AB");
  const char* const with_vr = "1000 1000 504E 0200 4142";
  const char* const without_vr = "1000 1000 02000000 4142";
  for (const char* syntax : {"1.2.840.10008.1.2", "1.2.840.10008.1.20"})
    ExpectBytes(Compose(syntax), without_vr);
  for (const char* syntax :
       {"1.2.840.10008.1.2.1", "1.2.840.10008.1.2.1.99", "1.2.840.10008.1.2.4.50", "1.2.840.10008.1.2.5"})
    ExpectBytes(Compose(syntax), with_vr);
}

TEST_F(ComposeStream, TellsOfTheVrOfBitsAllocatedBeforeTheirLength) {
  data_.Top(0x00280100, 1, "LO", "ABCD");
  ExpectFails(Compose(), "CollectSpecialTagInfo: BitsAllocated (0028,0100) should have a VR of US, got: LO",
              "2800 0001 4C4F 0400 41424344");
}

TEST_F(ComposeStream, AsksForAPixelStreamFirstThenForTheMarkThenForTheStreamsPosition) {
  data_.Top(kPixelData, 1, "OB", "");
  host_.Record(true);
  ExpectFails(Compose(), "ComposePixelElement: No pixel data stream was passed to Compose", "");
  EXPECT_THAT(host_.Calls(), Not(Contains(HasSubstr("\"l\""))));
  host_.ClearCalls();
  Pixels("ab");
  ExpectSuccess(Compose());
  EXPECT_LT(PlaceOf("\"l\"", host_.Calls()), PlaceOf("\"Position\"", host_.Calls()));
  EXPECT_LT(PlaceOf("\"Position\"", host_.Calls()), PlaceOf("\"Peek\"", host_.Calls()));
}

TEST_F(ComposeStream, LooksForFramesInTheByteOrderThatItWrites) {
  data_.Top(kPixelData, 1, "OB", "");
  const std::string frames = "FEFF00E0 00000000 FEFF00E0 04000000 01020304 FEFFDDE0 00000000";
  Pixels(Hex(frames));
  ExpectBytes(Compose(dicom_bytes::kExplicitLittleEndian, kExplicitBigEndian),
              "E07F 1000 4F42 0000 FFFFFFFF" + frames);
  const std::string big_endian = "FFFEE000 00000000 FFFEE000 00000004 01020304 FFFEE0DD 00000000";
  Pixels(Hex(big_endian));
  ExpectBytes(Compose(dicom_bytes::kExplicitLittleEndian, kExplicitBigEndian),
              "E07F 1000 4F42 0000 1C000000" + big_endian);
}

TEST_F(ComposeStream, CountsWhatIsLeftWhereSizeAndPositionAreBothAboveTheRangeOf32Bits) {
  class FarAlong : public MemoryStream {
   public:
    using MemoryStream::MemoryStream;
    Value Property(std::string_view name) override {
      constexpr std::int64_t kBytesBefore = std::int64_t{1} << 31;
      return AsInteger(MemoryStream::Property(name)) + kBytesBefore;
    }
  };
  data_.Top(kPixelData, 1, "OB", "");
  Pixels(std::make_shared<FarAlong>("abcd"));
  ExpectBytes(Compose(), "E07F 1000 4F42 0000 04000000 61626364");
}

TEST_F(ComposeStream, RefusesAVrWithoutAUnitForAnEmptyPixelStreamToo) {
  data_.Top(kPixelData, 1, "LO", "");
  Pixels("");
  ExpectFailure(Compose(kImplicitLittleEndian, kExplicitBigEndian), u" composing stream");
  EXPECT_EQ(Written(), Hex("E07F 1000 00000000"));
}

}  // namespace
}  // namespace emulator
