#include <algorithm>

#include "tests/callouts/decomposing.h"

// Elements that are not as PS3.5 has them, and data sets that are not what they are said to be.

namespace emulator {
namespace {

using dicom_bytes::Hex;
using dicom_bytes::Item;
using dicom_bytes::kExplicitLittleEndian;
using dicom_bytes::kImplicitLittleEndian;
using dicom_bytes::kPixelData;
using dicom_bytes::Number16;
using dicom_bytes::Number32;
using dicom_bytes::TagBytes;
using testing::Contains;
using testing::ElementsAre;

constexpr const char16_t* kOddLength =
    u"DecomposeElement reading VR and data length: Datalength is an odd number -  decomposing stream";
constexpr const char16_t* kStepAlone = u" decomposing stream";

std::string Name() { return kExplicit.Element(0x00100010, "PN", "ab"); }

class DamagedElement : public Decomposing {
 protected:
  std::size_t ElementCount() const {
    const Lines& lines = log_->Lines();
    return static_cast<std::size_t>(std::count_if(lines.begin(), lines.end(), [](const std::string& line) {
      return line.starts_with("StartElement ");
    }));
  }
};

TEST_F(DamagedElement, WithALengthOfNearlyFourGibibytesIsReadUntilTheStreamEnds) {
  for (const char* const vr : {"OB", "UN"}) {
    ExpectFailure(Decompose(kExplicit.Header(kPixelData, vr, 0xFFFFFFFE) + std::string(70000, 'x')),
                  kStepAlone);
    ASSERT_EQ(Events().size(), 3U);  // two whole chunks of 32648 bytes, and not what is left
    EXPECT_EQ(Events()[0], std::string("StartElement 7FE00010 ") + vr + " 4294967294");
    EXPECT_EQ(Events()[1].size(), std::string("Data 7FE00010 1 ").size() + 2 * 32648);
    EXPECT_EQ(Events()[2].size(), std::string("Data 7FE00010 2 ").size() + 2 * 32648);
  }
}

TEST_F(DamagedElement, OfAVrThatNobodyKnowsHasAShortLengthAndKeepsItsVr) {
  for (const char* const vr : {"ZZ", "  ", "--", "pn", "\x01\x80"}) {
    ExpectSuccess(Decompose(kExplicit.Element(0x00100010, vr, "ab") + Name()));
    EXPECT_EQ(Events()[0], std::string("StartElement 00100010 ") + vr + " 2");
    EXPECT_EQ(ElementCount(), 2U);
  }
}

TEST_F(DamagedElement, WithAZeroByteInItsVrHasAVrThatEndsThere) {
  ExpectSuccess(
      Decompose(Hex("10 00 10 00  00 00  02 00  61 62"      // no letter at all
                    "10 00 10 00  50 00  02 00  61 62"      // "P"
                    "10 00 10 00  00 4E  02 00  61 62")));  // a letter behind the zero
  EXPECT_EQ(Events()[0], "StartElement 00100010  2");
  EXPECT_EQ(Events()[3], "StartElement 00100010 P 2");
  EXPECT_EQ(Events()[6], "StartElement 00100010  2");
}

/// PS3.5 gives these a 4-byte length behind two reserved bytes. They are read as a length of two bytes, 0, and the
/// real length and the value then stand where the next element should.
class LaterVr : public DamagedElement, public testing::WithParamInterface<const char*> {};

TEST_P(LaterVr, LosesItsLengthAndMostlyFails) {
  // The real length, 8, is the tag (0008,0000); the value "12345678" is its VR "12", the length "34" and two bytes.
  ExpectFailure(Decompose(kExplicit.Element(0x00100010, GetParam(), "12355678")), kOddLength);
  EXPECT_THAT(Events(), ElementsAre(std::string("StartElement 00100010 ") + GetParam() + " 0",
                                    "Data 00100010 1", "EndElement 00100010"));
}

TEST_P(LaterVr, LosesItsLengthAndMayEndInASuccessWithElementsThatAreNone) {
  ExpectSuccess(Decompose(kExplicit.Element(0x00100010, GetParam(), Hex("58 58 04 00 61 62 63 64"))));
  EXPECT_THAT(Events(), ElementsAre(std::string("StartElement 00100010 ") + GetParam() + " 0",
                                    "Data 00100010 1", "EndElement 00100010", "StartElement 00080000 XX 4",
                                    "Data 00080000 1 61626364", "EndElement 00080000", "EndContent"));
}

INSTANTIATE_TEST_SUITE_P(Vrs, LaterVr, testing::Values("OD", "OL", "OV", "UC", "UR", "SV", "UV"));

// --- Data sets that are read as something else

TEST_F(DamagedElement, OfExplicitVrReadAsImplicitMostlyRunsOverTheEnd) {
  ExpectFailure(Decompose(kExplicit.Element(0x00100010, "PN", "Doe^John"), kImplicitLittleEndian),
                kStepAlone);
  EXPECT_THAT(Events(), ElementsAre("StartElement 00100010 PN 544336"));  // "PN" 08 00 as a length
}

TEST_F(DamagedElement, OfImplicitVrReadAsExplicitMostlyFails) {
  // The length, 8, is VR and length; the value is the next element: tag "Doe^", VR "Jo", length "hn".
  ExpectFailure(Decompose(kImplicit.Element(0x00100010, "PN", "Doe^John"), kExplicitLittleEndian),
                kStepAlone);
  EXPECT_THAT(Events(), ElementsAre(std::string("StartElement 00100010 \b 0"), "Data 00100010 1",
                                    "EndElement 00100010", "StartElement 6F445E65 Jo 28264"));
}

TEST_F(DamagedElement, OfImplicitVrReadAsExplicitMayEndInASuccessWithElementsThatAreNone) {
  ExpectSuccess(Decompose(
      kImplicit.Element(0x00189306, "FD", std::string(8, '\0')) + kImplicit.Element(0x00189307, "FD", ""),
      kExplicitLittleEndian));
  EXPECT_THAT(Events(), Contains("StartElement 00000000  0"));
  EXPECT_EQ(ElementCount(), 3U);
}

TEST_F(DamagedElement, OfAWholeFileFromItsFirstByteOnAreGarbageThatMayEndInASuccess) {
  // PS3.10: 128 zero bytes are 16 elements. "DICM" and the group length element, whose value is 12, are two more:
  //   44 49 43 4D  02 00 00 00     55 4C 04 00  0C 00 00 00
  // From there on the reader is in step, and group 0002 comes as if all were well.
  const std::string meta = kExplicit.Element(0x00020010, "UI", "1.2.");
  ExpectSuccess(Decompose(std::string(128, '\0') + "DICM" +
                          kExplicit.Element(0x00020000, "UL", Number32(12)) + meta + Name()));
  EXPECT_EQ(ElementCount(), 20U);
  EXPECT_EQ(Events()[45], "StartElement 00000000  0");
  EXPECT_EQ(Events()[48], "StartElement 49444D43 \x02 0");
  EXPECT_EQ(Events()[51], "StartElement 4C550004 \f 0");
  EXPECT_EQ(Events()[54], "StartElement 00020010 UI 4");
}

TEST_F(DamagedElement, ZerosBehindTheDataSetAreElements) {
  for (const std::size_t count : {std::size_t{8}, std::size_t{512}}) {
    ExpectSuccess(Decompose(Name() + std::string(count, '\0')));
    EXPECT_EQ(ElementCount(), 1 + count / 8);
    EXPECT_EQ(Events()[3], "StartElement 00000000  0");
    ExpectSuccess(Decompose(kImplicit.Element(0x00100010, "PN", "ab") + std::string(count, '\0'),
                            kImplicitLittleEndian));
    EXPECT_EQ(Events()[3], "StartElement 00000000 UL 0");
  }
}

TEST_F(DamagedElement, ZerosBehindTheDataSetThatAreNoMultipleOfEightFailBehindTheElementsThatTheyMake) {
  for (const std::size_t count : {std::size_t{1}, std::size_t{7}, std::size_t{12}, std::size_t{511}}) {
    ExpectFailure(Decompose(Name() + std::string(count, '\0')), kStepAlone);
    Lines expected = {"StartElement 00100010 PN 2", "Data 00100010 1 6162", "EndElement 00100010"};
    for (std::size_t element = 0; element < count / 8; ++element) {
      expected.insert(expected.end(), {"StartElement 00000000  0", "Data 00000000 1", "EndElement 00000000"});
    }
    EXPECT_EQ(Events(), expected) << count;
  }
}

TEST_F(DamagedElement, OfASyntaxWhoseNameIsPaddedAreRefused) {
  const std::u16string refused = u"DecomposeStream: Expected a supported transfer syntax, got: ";
  ExpectFailure(Decompose(Name(), std::string_view("1.2.840.10008.1.2\0", 18)),
                refused + std::u16string(u"1.2.840.10008.1.2\0", 18) + u" -  decomposing stream");
  EXPECT_TRUE(log_->Lines().empty());
  ExpectFailure(Decompose(Name(), "1.2.840.10008.1.2.1 "),
                refused + u"1.2.840.10008.1.2.1  -  decomposing stream");
  EXPECT_TRUE(log_->Lines().empty());
}

// --- Tags

TEST_F(DamagedElement, MayHaveAnyTagInAnyOrder) {
  std::string bytes;
  for (const std::uint32_t tag :
       {0x7FE10010U, 0x00100010U, 0x00100010U, 0x00020010U, 0x00000000U, 0xFFFE1234U}) {
    bytes += kExplicit.Element(tag, "LO", "ab");
  }
  ExpectSuccess(Decompose(bytes));
  Lines starts;
  for (const std::string& line : Events()) {
    if (line.starts_with("StartElement ")) starts.push_back(line.substr(13, 8));
  }
  EXPECT_THAT(starts, ElementsAre("7FE10010", "00100010", "00100010", "00020010", "00000000", "FFFE1234"));
}

TEST_F(DamagedElement, InFrontOfWhichAClientStopsInsideAnItemFailsTheSequence) {
  AskClient([](std::uint32_t tag) { return tag == 0x00081155; });
  ExpectFailure(
      Decompose(kExplicit.Sequence(0x00081140, Item(kExplicit.Element(0x00081150, "UI", "1.") +
                                                    kExplicit.Element(0x00081155, "UI", "2.")))),
      u"DecomposeItem: Expected [Item] or [Sequence Delimitation Item], got: 00081155 -  decomposing stream");
  EXPECT_EQ(Events().back(), "EndItem 00081140 20");
}

}  // namespace
}  // namespace emulator
