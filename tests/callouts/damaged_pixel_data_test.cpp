#include "tests/callouts/decomposing.h"

// Encapsulated pixel data (PS3.5 annex A.4), and what is taken for them.

namespace emulator {
namespace {

using dicom_bytes::Item;
using dicom_bytes::kImplicitLittleEndian;
using dicom_bytes::kItem;
using dicom_bytes::kJpegBaseline;
using dicom_bytes::kPixelData;
using dicom_bytes::kSequenceDelimitation;
using dicom_bytes::kUndefined;
using dicom_bytes::SequenceEnd;
using dicom_bytes::TagAndLength;
using testing::ElementsAre;

constexpr const char* kStarted = "StartElement 7FE00010 OB 4294967295";

class DamagedPixelData : public Decomposing {};

/// Pixel data of undefined length in explicit VR, with nothing behind their header.
std::string Pixels(std::string_view vr) { return kExplicit.Header(kPixelData, vr, kUndefined); }

// --- Undefined lengths elsewhere

TEST_F(DamagedPixelData, OfUndefinedLengthAreRefusedInANativeSyntax) {
  ExpectFailure(Decompose(kExplicit.Fragments("OB", Item(""))),
                u"DecomposeData_UndefLength: Expected an encapsulated transfer syntax, got: "
                u"1.2.840.10008.1.2.1 -  decomposing stream");
  EXPECT_THAT(Events(), ElementsAre(kStarted));
}

TEST_F(DamagedPixelData, AnUndefinedLengthOfAnotherElementIsRefusedInAnEncapsulatedSyntax) {
  ExpectFailure(Decompose(kExplicit.Header(0x00420011, "OB", kUndefined), kJpegBaseline),
                u"DecomposeData_UndefLength: Expected an encapsulated transfer syntax tag, got: 00420011 -  "
                u"decomposing stream");
  EXPECT_THAT(Events(), ElementsAre("StartElement 00420011 OB 4294967295"));
}

TEST_F(DamagedPixelData, OfUnknownVrAreRefused) {
  ExpectFailure(Decompose(Pixels("UN"), kJpegBaseline),
                u"DecomposeData_UndefLength: Expected a VR or 'OB' or 'OW', got: UN -  decomposing stream");
  EXPECT_THAT(Events(), ElementsAre("StartElement 7FE00010 UN 4294967295"));
}

TEST_F(DamagedPixelData, APrivateSequenceOfUndefinedLengthIsTakenForThemWithImplicitVr) {
  // Nothing in the stream says that it is a sequence, and the dictionary knows no private elements: it calls them UN,
  ExpectFailure(Decompose(kImplicit.UndefinedSequence(0x00091101, Item("")), kImplicitLittleEndian),
                u"DecomposeData_UndefLength: Expected an encapsulated transfer syntax, got: "
                u"1.2.840.10008.1.2 -  decomposing stream");
  EXPECT_THAT(Events(), ElementsAre("StartElement 00091101 UN 4294967295"));
  // and LO where the low digits of the element are those of a creator.
  ExpectFailure(
      Decompose(kImplicit.UndefinedSequence(0x00091010, Item("")), kImplicitLittleEndian),
      u"DecomposeElement reading VR and data length: Element specifies undefined length but VR 'LO' "
      u"does not allow it -  decomposing stream");
  EXPECT_TRUE(Events().empty());
}

TEST_F(DamagedPixelData, AnUnknownElementOfUndefinedLengthIsTakenForThem) {
  const std::string unknown = kExplicit.Header(0x00091101, "UN", kUndefined) + Item("") + SequenceEnd();
  ExpectFailure(Decompose(unknown),
                u"DecomposeData_UndefLength: Expected an encapsulated transfer syntax, got: "
                u"1.2.840.10008.1.2.1 -  decomposing stream");
  EXPECT_THAT(Events(), ElementsAre("StartElement 00091101 UN 4294967295"));
  ExpectFailure(Decompose(unknown, kJpegBaseline),
                u"DecomposeData_UndefLength: Expected an encapsulated transfer syntax tag, got: 00091101 -  "
                u"decomposing stream");
  EXPECT_THAT(Events(), ElementsAre("StartElement 00091101 UN 4294967295"));
}

TEST_F(DamagedPixelData, AnUndefinedLengthIsRefusedForOtherVrs) {
  ExpectFailure(
      Decompose(kExplicit.Header(0x00081190, "UT", kUndefined)),
      u"DecomposeElement reading VR and data length: Element specifies undefined length but VR 'UT' "
      u"does not allow it -  decomposing stream");
  EXPECT_TRUE(Events().empty());
  ExpectFailure(
      Decompose(kImplicit.Header(0x00100010, "PN", kUndefined), kImplicitLittleEndian),
      u"DecomposeElement reading VR and data length: Element specifies undefined length but VR 'PN' "
      u"does not allow it -  decomposing stream");
}

// --- Fragments

TEST_F(DamagedPixelData, WithAFragmentOfUndefinedLengthAreRefused) {
  ExpectFailure(Decompose(Pixels("OB") + Item("ab") + TagAndLength(kItem, kUndefined), kJpegBaseline),
                u"DecomposeData_UndefLength: [Item] has undefined length -  decomposing stream");
  EXPECT_EQ(Events().back(), "EndItem FFFEE000 2");
}

TEST_F(DamagedPixelData, AForeignTagAmongFragmentsIsNamedAsThePixelData) {
  ExpectFailure(
      Decompose(Pixels("OB") + Item("ab") + kExplicit.Element(0x00100010, "PN", "ab"), kJpegBaseline),
      u"DecomposeData_UndefLength: Expected [Item] or [Sequence Delimitation Item], got: 7FE00010 -  "
      u"decomposing stream");
  EXPECT_THAT(Events(),
              ElementsAre(kStarted, "StartItem FFFEE000 2", "Data 7FE00010 1 6162", "EndItem FFFEE000 2"));
}

TEST_F(DamagedPixelData, FragmentsGoByTheirLengthsWhateverTheirBytesAre) {
  const std::string delimitation = SequenceEnd();
  ExpectSuccess(Decompose(
      kExplicit.Fragments("OB", Item("") + Item("a") + Item("ab") + Item("abc") + Item(delimitation)),
      kJpegBaseline));
  EXPECT_EQ(Events(), Script(R"(
    StartElement 7FE00010 OB 4294967295
      StartItem FFFEE000 0
        Data 7FE00010 1
      EndItem FFFEE000 0
      StartItem FFFEE000 1
        Data 7FE00010 1 61
      EndItem FFFEE000 1
      StartItem FFFEE000 2
        Data 7FE00010 1 6162
      EndItem FFFEE000 2
      StartItem FFFEE000 3
        Data 7FE00010 1 616263
      EndItem FFFEE000 3
      StartItem FFFEE000 8
        Data 7FE00010 1 FEFFDDE000000000
      EndItem FFFEE000 8
      StartItem FFFEE0DD 0
        Data FFFEE0DD 1
      EndItem FFFEE0DD 0
    EndElement 7FE00010
    EndContent)"));
}

TEST_F(DamagedPixelData, WithoutADelimitationFailWhereTheStreamEnds) {
  for (const std::string& rest : {std::string(), SequenceEnd().substr(0, 5), Item("abcd").substr(0, 10)}) {
    ExpectFailure(Decompose(Pixels("OB") + Item("ab") + rest, kJpegBaseline), u" decomposing stream");
    Lines expected = {kStarted, "StartItem FFFEE000 2", "Data 7FE00010 1 6162", "EndItem FFFEE000 2"};
    if (rest.size() > SequenceEnd().size())
      expected.emplace_back("StartItem FFFEE000 4");  // cut in its value
    EXPECT_EQ(Events(), expected);
  }
}

TEST_F(DamagedPixelData, WhoseDelimitationHasALengthFailBehindTheLastFragment) {
  ExpectFailure(
      Decompose(Pixels("OB") + Item("ab") + TagAndLength(kSequenceDelimitation, 4), kJpegBaseline),
      u"DecomposeData_UndefLength:  [Sequence Delimitation Item] should have zero length, got: 4 -  "
      u"decomposing stream");
  EXPECT_EQ(Events().back(), "EndItem FFFEE000 2");
  ExpectFailure(
      Decompose(Pixels("OB") + TagAndLength(kSequenceDelimitation, kUndefined), kJpegBaseline),
      u"DecomposeData_UndefLength:  [Sequence Delimitation Item] should have zero length, got: -1 -  "
      u"decomposing stream");
}

TEST_F(DamagedPixelData, OfDefinedLengthAreOneValueInAnEncapsulatedSyntax) {
  ExpectSuccess(Decompose(kExplicit.Element(kPixelData, "OW", "abcd"), kJpegBaseline));
  EXPECT_THAT(Events(), ElementsAre("StartElement 7FE00010 OW 4", "Data 7FE00010 1 61626364",
                                    "EndElement 7FE00010", "EndContent"));
}

}  // namespace
}  // namespace emulator
