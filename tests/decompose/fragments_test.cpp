#include "tests/decompose/decomposition.h"

// Values of undefined length: encapsulated pixel data (PS3.5 annex A.4), and what is taken for them.

namespace {

using dicom_bytes::Hex;
using dicom_bytes::Item;
using dicom_bytes::kExplicitLittleEndian;
using dicom_bytes::kImplicitLittleEndian;
using dicom_bytes::kItem;
using dicom_bytes::kJpegBaseline;
using dicom_bytes::kPixelData;
using dicom_bytes::kSequenceDelimitation;
using dicom_bytes::kUndefined;
using dicom_bytes::SequenceEnd;
using dicom_bytes::TagAndLength;

using Fragments = Decomposition;

const std::string kTwoFragments =
    Hex("E0 7F 10 00  4F 42 00 00  FF FF FF FF"  // (7FE0,0010) OB, undefined length
        "FE FF 00 E0  00 00 00 00"               // offset table, empty
        "FE FF 00 E0  04 00 00 00  FF D8 FF D9"  // fragment
        "FE FF DD E0  00 00 00 00");             // Sequence Delimitation

TEST_F(Fragments, ComeAsItems) {
  EXPECT_EQ(Decompose(kTwoFragments, kJpegBaseline), kNoFailure);
  EXPECT_EQ(Events(), Script(R"(
    StartElement 7FE00010 OB 4294967295
      StartItem FFFEE000 0
        Data 7FE00010 1
      EndItem FFFEE000 0
      StartItem FFFEE000 4
        Data 7FE00010 1 FFD8FFD9
      EndItem FFFEE000 4
      StartItem FFFEE0DD 0
        Data FFFEE0DD 1
      EndItem FFFEE0DD 0
    EndElement 7FE00010
    EndContent)"));
  EXPECT_EQ(Consumed(), 40);
}

TEST_F(Fragments, WithTheSimpleFramesSwitchNothingMarksTheirEnd) {
  simple_pixel_data_frames_ = true;
  EXPECT_EQ(Decompose(kTwoFragments, kJpegBaseline), kNoFailure);
  EXPECT_EQ(Events(), Script(R"(
    StartElement 7FE00010 OB 4294967295
      StartItem FFFEE000 0
        Data 7FE00010 1
      EndItem FFFEE000 0
      StartItem FFFEE000 4
        Data 7FE00010 1 FFD8FFD9
      EndItem FFFEE000 4
    EndElement 7FE00010
    EndContent)"));
}

TEST_F(Fragments, MayHaveAnyLengthAndAnyBytes) {
  const std::string items = Item("") + Item("a") + Item("bc") + Item(SequenceEnd() + "def");
  EXPECT_EQ(Decompose(kExplicit.Fragments("OW", items), kJpegBaseline), kNoFailure);
  Lines data;
  for (const std::string& line : Events()) {
    if (line.starts_with("Data 7FE00010")) data.push_back(line);
  }
  EXPECT_EQ(data, Script(R"(
    Data 7FE00010 1
    Data 7FE00010 1 61
    Data 7FE00010 1 6263
    Data 7FE00010 1 FEFFDDE000000000646566)"));
}

TEST_F(Fragments, MayBeNone) {
  EXPECT_EQ(Decompose(kExplicit.Fragments("OB", ""), kJpegBaseline), kNoFailure);
  EXPECT_EQ(log_->Count(), 2 + 2 + 3U);
}

TEST_F(Fragments, MayStandInAnItem) {
  const std::string icon = kExplicit.UndefinedSequence(0x00880200, Item(kTwoFragments));
  EXPECT_EQ(Decompose(icon, kJpegBaseline), kNoFailure);
  EXPECT_EQ(Events()[3], "StartElement 7FE00010 OB 4294967295");
}

TEST_F(Fragments, PixelDataOfDefinedLengthAreOneValueInAnySyntax) {
  EXPECT_EQ(Decompose(kExplicit.Element(kPixelData, "OB", "abcd"), kJpegBaseline), kNoFailure);
  EXPECT_EQ(Events(), Script(R"(
    StartElement 7FE00010 OB 4
      Data 7FE00010 1 61626364
    EndElement 7FE00010
    EndContent)"));
}

// --- Undefined lengths where no fragments belong. StartElement has been sent by then.

TEST_F(Fragments, BelongIntoAnEncapsulatedSyntax) {
  EXPECT_EQ(Decompose(kTwoFragments, kExplicitLittleEndian),
            "DecomposeData_UndefLength: Expected an encapsulated transfer syntax, got: 1.2.840.10008.1.2.1");
  EXPECT_EQ(Events(), Script("StartElement 7FE00010 OB 4294967295"));
}

TEST_F(Fragments, BelongIntoPixelData) {
  const std::string bytes = kExplicit.Header(0x00109999, "OB", kUndefined) + Item("") + SequenceEnd();
  EXPECT_EQ(Decompose(bytes, kJpegBaseline),
            "DecomposeData_UndefLength: Expected an encapsulated transfer syntax tag, got: 00109999");
  EXPECT_EQ(Events(), Script("StartElement 00109999 OB 4294967295"));
}

TEST_F(Fragments, AreOfVrObOrOw) {
  EXPECT_EQ(Decompose(kExplicit.Fragments("UN", Item("")), kJpegBaseline),
            "DecomposeData_UndefLength: Expected a VR or 'OB' or 'OW', got: UN");
  EXPECT_EQ(Events(), Script("StartElement 7FE00010 UN 4294967295"));
}

// Legal since CP-246, and what every private sequence looks like with implicit VR; refused all the same.
TEST_F(Fragments, AValueOfUnknownVrAndUndefinedLengthIsRefused) {
  const std::string item = Item(kImplicit.Element(0x00100010, "PN", "ab"));
  EXPECT_EQ(Decompose(kExplicit.Header(0x00091001, "UN", kUndefined) + item + SequenceEnd()),
            "DecomposeData_UndefLength: Expected an encapsulated transfer syntax, got: 1.2.840.10008.1.2.1");
  EXPECT_EQ(Decompose(kImplicit.UndefinedSequence(0x00091001, item), kImplicitLittleEndian),
            "DecomposeData_UndefLength: Expected an encapsulated transfer syntax, got: 1.2.840.10008.1.2");
}

TEST_F(Fragments, OfUndefinedLengthAreRefused) {
  EXPECT_EQ(Decompose(kExplicit.Fragments("OB", Item("ab") + TagAndLength(kItem, kUndefined)), kJpegBaseline),
            "DecomposeData_UndefLength: [Item] has undefined length");
  EXPECT_EQ(Events().back(), "EndItem FFFEE000 2");
}

TEST_F(Fragments, AForeignTagAmongThemIsReportedAsThePixelData) {
  EXPECT_EQ(
      Decompose(kExplicit.Fragments("OB", Item("ab") + TagAndLength(0x00100010, 2) + "cd"), kJpegBaseline),
      "DecomposeData_UndefLength: Expected [Item] or [Sequence Delimitation Item], got: 7FE00010");
}

TEST_F(Fragments, WithoutDelimitationFailWhereTheStreamEnds) {
  EXPECT_EQ(Decompose(kExplicit.Header(kPixelData, "OB", kUndefined) + Item("ab"), kJpegBaseline),
            kEndedTooEarly);
  EXPECT_EQ(Events().back(), "EndItem FFFEE000 2");
}

TEST_F(Fragments, ADelimitationWithALengthFailsBehindAllOfThem) {
  const auto ended_with = [](std::uint32_t length) {
    return kExplicit.Header(kPixelData, "OB", kUndefined) + Item("ab") +
           TagAndLength(kSequenceDelimitation, length);
  };
  const std::string text =
      "DecomposeData_UndefLength:  [Sequence Delimitation Item] should have zero length, got: ";
  EXPECT_EQ(Decompose(ended_with(4), kJpegBaseline), text + "4");
  EXPECT_EQ(Events(), Script(R"(
    StartElement 7FE00010 OB 4294967295
      StartItem FFFEE000 2
        Data 7FE00010 1 6162
      EndItem FFFEE000 2)"));
  EXPECT_EQ(Decompose(ended_with(kUndefined), kJpegBaseline), text + "-1");
  EXPECT_EQ(Decompose(ended_with(0x80000000), kJpegBaseline), text + "-2147483648");
}

TEST_F(Fragments, PixelDataOfUndefinedLengthAreNothingWithImplicitVr) {
  EXPECT_EQ(
      Decompose(kImplicit.Fragments("OW", Item("ab")), kImplicitLittleEndian),
      "DecomposeElement reading VR and data length: Element specifies undefined length but VR 'OX' does "
      "not allow it");
}

}  // namespace
