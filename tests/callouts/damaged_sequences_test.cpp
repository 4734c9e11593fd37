#include "tests/callouts/decomposing.h"

// Sequences and items whose lengths or delimitations are wrong, and whose stream goes on behind them.

namespace emulator {
namespace {

using dicom_bytes::Hex;
using dicom_bytes::Item;
using dicom_bytes::ItemEnd;
using dicom_bytes::kImplicitLittleEndian;
using dicom_bytes::kItem;
using dicom_bytes::kItemDelimitation;
using dicom_bytes::kSequenceDelimitation;
using dicom_bytes::kUndefined;
using dicom_bytes::SequenceEnd;
using dicom_bytes::TagAndLength;
using dicom_bytes::UndefinedItem;
using testing::ElementsAre;

constexpr std::uint32_t kImages = 0x00081140;  // a sequence

// 10 bytes each
std::string First() { return kExplicit.Element(0x00081150, "UI", "1."); }
std::string Second() { return kExplicit.Element(0x00081155, "UI", "2."); }
std::string Behind() { return kExplicit.Element(0x00100010, "PN", "ab"); }

Lines BehindAlone() { return {"StartElement 00100010 PN 2", "Data 00100010 1 6162", "EndElement 00100010"}; }

/// The sequence's header with any length, and what stands behind it.
std::string Images(std::uint32_t length, const std::string& content) {
  return kExplicit.Header(kImages, "SQ", length) + content;
}

class DamagedSequence : public Decomposing {
 protected:
  /// All events: of the sequence and its first item, with these lengths, and then others.
  void ExpectFirstItemAnd(const std::string& then, const std::string& length,
                          const std::string& item_length) {
    EXPECT_EQ(Events(), Script("StartElement 00081140 SQ " + length +
                               "\n StartSequence\n StartItem 00081140 " + item_length + R"(
          StartElement 00081150 UI 2
            Data 00081150 1 312E
          EndElement 00081150
        )" + then));
  }

  void ExpectBehindInsideTheItem(const std::string& item_length) {
    ExpectFirstItemAnd(R"(
          StartElement 00100010 PN 2
            Data 00100010 1 6162
          EndElement 00100010
        EndItem 00081140 )" +
                           item_length + R"(
      EndSequence
    EndElement 00081140
    EndContent)",
                       "18", item_length);
  }
};

// --- Lengths

TEST_F(DamagedSequence, WithAnItemThatIsTooLongTakesLaterElementsForItsOwn) {
  ExpectSuccess(Decompose(Images(18, TagAndLength(kItem, 20) + First() + Behind())));
  ExpectBehindInsideTheItem("20");
}

TEST_F(DamagedSequence, WithAnItemThatIsTooShortNamesTheElementThatIsLeft) {
  ExpectFailure(
      Decompose(Images(28, TagAndLength(kItem, 10) + First() + Second())),
      u"DecomposeItem: Expected [Item] or [Sequence Delimitation Item], got: 00081155 -  decomposing stream");
  EXPECT_EQ(Events().back(), "EndItem 00081140 10");
}

TEST_F(DamagedSequence, ThatIsTooLongNamesTheElementBehindIt) {
  ExpectFailure(
      Decompose(Images(28, Item(First()) + Behind())),
      u"DecomposeItem: Expected [Item] or [Sequence Delimitation Item], got: 00100010 -  decomposing stream");
  ExpectFirstItemAnd("EndItem 00081140 10", "28", "10");
}

TEST_F(DamagedSequence, ThatIsTooShortMeetsItsNextItemAsAnElement) {
  ExpectFailure(Decompose(Images(18, Item(First()) + Item(Second()))),
                u"Expected [Item Delimitation] or element, got [Item] -  decomposing stream");
  ExpectFirstItemAnd("EndItem 00081140 10\n EndSequence\n EndElement 00081140", "18", "10");
}

TEST_F(DamagedSequence, WhoseLastElementRunsOverItsEndIsAccepted) {
  ExpectSuccess(Decompose(Images(14, TagAndLength(kItem, 16) + First() + Behind())));
  EXPECT_EQ(Events()[2], "StartItem 00081140 16");
  // The item ends behind its second element, four bytes late; the sequence a whole element late.
  EXPECT_EQ(Events().size(), 13U);
  EXPECT_EQ(Events()[8], "EndElement 00100010");
  EXPECT_EQ(Events()[9], "EndItem 00081140 16");
}

TEST_F(DamagedSequence, WithAnItemOfOddLengthIsAccepted) {
  ExpectSuccess(Decompose(Images(18, TagAndLength(kItem, 9) + First()) + Behind()));
  EXPECT_EQ(Events()[2], "StartItem 00081140 9");
  EXPECT_EQ(Events()[8], "EndElement 00081140");
  EXPECT_EQ(Events()[9], "StartElement 00100010 PN 2");
}

TEST_F(DamagedSequence, WithAnItemOfLengthZeroDoesNotSwallowTheNextElement) {
  ExpectSuccess(Decompose(kExplicit.Sequence(kImages, Item("")) + Behind()));
  EXPECT_EQ(Events(), Script(R"(
    StartElement 00081140 SQ 8
      StartSequence
        StartItem 00081140 0
        EndItem 00081140 0
      EndSequence
    EndElement 00081140
    StartElement 00100010 PN 2
      Data 00100010 1 6162
    EndElement 00100010
    EndContent)"));
}

TEST_F(DamagedSequence, OfLengthZeroHasNothingBetweenStartAndEnd) {
  ExpectSuccess(Decompose(kExplicit.Sequence(kImages, "")));
  EXPECT_THAT(Events(), ElementsAre("StartElement 00081140 SQ 0", "EndElement 00081140", "EndContent"));
}

// --- Delimitations where none belongs

TEST_F(DamagedSequence, RefusesAnItemDelimitationAtTheTopAndInAnItemOfDefinedLength) {
  const char16_t* const refused =
      u"DecomposeElement: caller did not expect [Item Delimitation] -  decomposing stream";
  ExpectFailure(Decompose(Behind() + ItemEnd()), refused);
  EXPECT_EQ(Events(), BehindAlone());
  ExpectFailure(Decompose(kExplicit.Sequence(kImages, Item(First() + ItemEnd()))), refused);
  ExpectFirstItemAnd("", "26", "18");
}

TEST_F(DamagedSequence, RefusesASequenceDelimitationAsAnElement) {
  const char16_t* const refused =
      u"Expected [Item Delimitation] or element, got [Sequence Delimitation Item] -  decomposing stream";
  ExpectFailure(Decompose(Behind() + SequenceEnd()), refused);
  EXPECT_EQ(Events(), BehindAlone());
  ExpectFailure(Decompose(Images(kUndefined, TagAndLength(kItem, kUndefined) + First() + SequenceEnd())),
                refused);
  ExpectFirstItemAnd("", "4294967295", "4294967295");
}

TEST_F(DamagedSequence, OfDefinedLengthRefusesASequenceDelimitation) {
  ExpectFailure(Decompose(kExplicit.Sequence(kImages, Item(First()) + SequenceEnd())),
                u"DecomposeItem: caller did not expect [Sequence Delimitation Item] -  decomposing stream");
  ExpectFirstItemAnd("EndItem 00081140 10", "26", "10");
}

// --- Delimitations with a length

TEST_F(DamagedSequence, TakesTheLengthOfAnItemDelimitationForAVrAndALength) {
  const std::string open = Images(kUndefined, TagAndLength(kItem, kUndefined) + First());
  const auto delimitation = [](const char* length) { return Hex("FE FF 0D E0") + Hex(length); };
  // The low half is a VR that has no letters; the high half is an even length: accepted.
  for (const char* const length : {"08 00 00 00", "FF FF 00 00", "00 00 0A 00"}) {
    ExpectSuccess(Decompose(open + delimitation(length) + SequenceEnd() + Behind()));
    EXPECT_EQ(Events()[6], "EndItem 00081140 4294967295");
    EXPECT_EQ(Events()[9], "StartElement 00100010 PN 2");
  }
  ExpectFailure(
      Decompose(open + delimitation("00 00 01 00") + SequenceEnd()),
      u"DecomposeElement reading VR and data length: Datalength is an odd number -  decomposing stream");
  ExpectFirstItemAnd("", "4294967295", "4294967295");
  // "OB" has two reserved bytes and a 4-byte length behind it: the tag of the sequence's delimitation is eaten for it.
  ExpectFailure(
      Decompose(open + delimitation("4F 42 00 00") + SequenceEnd() + Behind()),
      u"DecomposeItem: Expected [Item] or [Sequence Delimitation Item], got: 00000000 -  decomposing stream");
  ExpectFirstItemAnd("EndItem 00081140 4294967295", "4294967295", "4294967295");
}

TEST_F(DamagedSequence, TakesWhatAnItemDelimitationSaysToHoldForItems) {
  const std::string open = Images(kUndefined, TagAndLength(kItem, kUndefined) + First());
  ExpectFailure(
      Decompose(open + TagAndLength(kItemDelimitation, 10) + Second() + SequenceEnd()),
      u"DecomposeItem: Expected [Item] or [Sequence Delimitation Item], got: 00081155 -  decomposing stream");
  ExpectFirstItemAnd("EndItem 00081140 4294967295", "4294967295", "4294967295");
}

TEST_F(DamagedSequence, WithImplicitVrRefusesOnlyAnOddLengthOfAnItemDelimitation) {
  const std::string open = kImplicit.Header(kImages, "SQ", kUndefined) + TagAndLength(kItem, kUndefined);
  ExpectSuccess(Decompose(open + TagAndLength(kItemDelimitation, 8) + SequenceEnd(), kImplicitLittleEndian));
  ExpectFailure(
      Decompose(open + TagAndLength(kItemDelimitation, 7) + SequenceEnd(), kImplicitLittleEndian),
      u"DecomposeElement reading VR and data length: Datalength is an odd number -  decomposing stream");
  EXPECT_THAT(Events(), ElementsAre("StartElement 00081140 SQ 4294967295", "StartSequence",
                                    "StartItem 00081140 4294967295"));
}

TEST_F(DamagedSequence, IgnoresTheLengthOfItsDelimitation) {
  for (const std::uint32_t length : {1U, 8U, kUndefined}) {
    ExpectSuccess(Decompose(Images(kUndefined, Item(First()) + TagAndLength(kSequenceDelimitation, length)) +
                            Behind()));
    EXPECT_EQ(Events()[9], "StartElement 00100010 PN 2");
  }
}

}  // namespace
}  // namespace emulator
