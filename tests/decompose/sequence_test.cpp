#include "tests/decompose/decomposition.h"

// Sequences and items, whole and damaged.

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

constexpr std::uint32_t kImages = 0x00081140;  // a sequence
constexpr std::uint32_t kBeams = 0x300A00B0;   // another

using Sequence = Decomposition;

// 10 bytes each
std::string First() { return kExplicit.Element(0x00081150, "UI", "1."); }
std::string Second() { return kExplicit.Element(0x00081155, "UI", "2."); }
std::string Behind() { return kExplicit.Element(0x00100010, "PN", "ab"); }

const char* const kWithTwoDefinedItems = R"(
  StartElement 00081140 SQ 36
    StartSequence
      StartItem 00081140 10
        StartElement 00081150 UI 2
          Data 00081150 1 312E
        EndElement 00081150
      EndItem 00081140 10
      StartItem 00081140 10
        StartElement 00081155 UI 2
          Data 00081155 1 322E
        EndElement 00081155
      EndItem 00081140 10
    EndSequence
  EndElement 00081140
  EndContent)";

TEST_F(Sequence, OfDefinedLengthWithTwoDefinedItems) {
  EXPECT_EQ(Decompose(Hex("08 00 40 11  53 51 00 00  24 00 00 00"  // (0008,1140) SQ, 36 bytes
                          "FE FF 00 E0  0A 00 00 00"               // Item, 10 bytes
                          "08 00 50 11  55 49  02 00  31 2E"       // (0008,1150) UI "1."
                          "FE FF 00 E0  0A 00 00 00"               // Item, 10 bytes
                          "08 00 55 11  55 49  02 00  32 2E")),    // (0008,1155) UI "2."
            kNoFailure);
  EXPECT_EQ(Events(), Script(kWithTwoDefinedItems));
  EXPECT_EQ(Consumed(), 48);
}

TEST_F(Sequence, OfUndefinedLengthWithTwoUndefinedItems) {
  EXPECT_EQ(Decompose(Hex("08 00 40 11  53 51 00 00  FF FF FF FF"  // (0008,1140) SQ, undefined length
                          "FE FF 00 E0  FF FF FF FF"               // Item, undefined length
                          "08 00 50 11  55 49  02 00  31 2E"       // (0008,1150) UI "1."
                          "FE FF 0D E0  00 00 00 00"               // Item Delimitation
                          "FE FF 00 E0  FF FF FF FF"               // Item, undefined length
                          "08 00 55 11  55 49  02 00  32 2E"       // (0008,1155) UI "2."
                          "FE FF 0D E0  00 00 00 00"               // Item Delimitation
                          "FE FF DD E0  00 00 00 00")),            // Sequence Delimitation
            kNoFailure);
  EXPECT_EQ(Events(), Script(R"(
    StartElement 00081140 SQ 4294967295
      StartSequence
        StartItem 00081140 4294967295
          StartElement 00081150 UI 2
            Data 00081150 1 312E
          EndElement 00081150
        EndItem 00081140 4294967295
        StartItem 00081140 4294967295
          StartElement 00081155 UI 2
            Data 00081155 1 322E
          EndElement 00081155
        EndItem 00081140 4294967295
      EndSequence
    EndElement 00081140
    EndContent)"));
}

TEST_F(Sequence, WithImplicitVrHasTheSameEvents) {
  const std::string items =
      Item(kImplicit.Element(0x00081150, "UI", "1.")) + Item(kImplicit.Element(0x00081155, "UI", "2."));
  EXPECT_EQ(Decompose(kImplicit.Sequence(kImages, items), kImplicitLittleEndian), kNoFailure);
  EXPECT_EQ(Events(), Script(kWithTwoDefinedItems));
}

TEST_F(Sequence, DefinedAndUndefinedLengthsMix) {
  const std::string inner = kExplicit.Sequence(kBeams, UndefinedItem(First()) + Item(""));
  const std::string bytes =
      kExplicit.UndefinedSequence(kImages, Item(inner) + UndefinedItem(inner)) + Behind();
  EXPECT_EQ(Decompose(bytes), kNoFailure);
  const std::string inner_events = R"(
    StartElement 300A00B0 SQ 34
      StartSequence
        StartItem 300A00B0 4294967295
          StartElement 00081150 UI 2
            Data 00081150 1 312E
          EndElement 00081150
        EndItem 300A00B0 4294967295
        StartItem 300A00B0 0
        EndItem 300A00B0 0
      EndSequence
    EndElement 300A00B0
    )";
  EXPECT_EQ(Events(), Script("StartElement 00081140 SQ 4294967295\n StartSequence\n StartItem 00081140 46" +
                             inner_events + "EndItem 00081140 46\n StartItem 00081140 4294967295" +
                             inner_events + R"(EndItem 00081140 4294967295
                               EndSequence
                             EndElement 00081140
                             StartElement 00100010 PN 2
                               Data 00100010 1 6162
                             EndElement 00100010
                             EndContent)"));
  EXPECT_EQ(Consumed(), static_cast<std::int64_t>(bytes.size()));
}

TEST_F(Sequence, OfLengthZeroIsAnElementWithNothingInIt) {
  EXPECT_EQ(Decompose(kExplicit.Sequence(kImages, "") + Behind()), kNoFailure);
  EXPECT_EQ(Events(), Script(R"(
    StartElement 00081140 SQ 0
    EndElement 00081140
    StartElement 00100010 PN 2
      Data 00100010 1 6162
    EndElement 00100010
    EndContent)"));
}

TEST_F(Sequence, OfUndefinedLengthMayHaveNoItems) {
  EXPECT_EQ(Decompose(kExplicit.UndefinedSequence(kImages, "")), kNoFailure);
  EXPECT_EQ(Events(), Script(R"(
    StartElement 00081140 SQ 4294967295
      StartSequence
      EndSequence
    EndElement 00081140
    EndContent)"));
}

TEST_F(Sequence, AnItemOfLengthZeroHasNoElements) {
  for (const std::string& last_items : {std::string(), Item(First())}) {
    EXPECT_EQ(Decompose(kExplicit.UndefinedSequence(kImages, Item("") + last_items) + Behind()), kNoFailure);
    EXPECT_EQ(Events().size(), last_items.empty() ? 10U : 15U);
    EXPECT_EQ(Events()[2], "StartItem 00081140 0");
    EXPECT_EQ(Events()[3], "EndItem 00081140 0");
  }
  EXPECT_EQ(Decompose(kExplicit.Sequence(kImages, Item("")) + Behind()), kNoFailure);
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

TEST_F(Sequence, AnOddItemLengthIsAccepted) {
  EXPECT_EQ(Decompose(kExplicit.UndefinedSequence(kImages, TagAndLength(kItem, 9) + First())), kNoFailure);
  EXPECT_EQ(Events()[2], "StartItem 00081140 9");
}

TEST_F(Sequence, AnElementMayRunOverTheEndOfItsItemAndSequence) {
  const std::string bytes = kExplicit.Header(kImages, "SQ", 12) + TagAndLength(kItem, 4) + First() + Behind();
  EXPECT_EQ(Decompose(bytes), kNoFailure);
  EXPECT_EQ(Events(), Script(R"(
    StartElement 00081140 SQ 12
      StartSequence
        StartItem 00081140 4
          StartElement 00081150 UI 2
            Data 00081150 1 312E
          EndElement 00081150
        EndItem 00081140 4
      EndSequence
    EndElement 00081140
    StartElement 00100010 PN 2
      Data 00100010 1 6162
    EndElement 00100010
    EndContent)"));
}

TEST_F(Sequence, LengthsUpToTheLargestAreAddedWithoutWrapping) {
  EXPECT_EQ(DecomposePatiently(kExplicit.Header(kImages, "SQ", 0xFFFFFFFE) + TagAndLength(kItem, 0xFFFFFFFE) +
                               First()),
            kNeverReturns);
  EXPECT_EQ(Events().back(), "EndElement 00081150");
}

// --- The stream ends too early

TEST_F(Sequence, CutBetweenElementsOfADefinedItemItNeverReturns) {
  const auto client = AskClient([](std::uint32_t) { return false; });
  EXPECT_EQ(DecomposePatiently(kExplicit.Header(kImages, "SQ", 100) + TagAndLength(kItem, 92) + First()),
            kNeverReturns);
  EXPECT_EQ(Events().back(), "EndElement 00081150");
  EXPECT_EQ(client->Asked().size(), 2U) << "once an element, and not at the end";
}

TEST_F(Sequence, CutBehindTheHeaderOfADefinedItemItNeverReturns) {
  EXPECT_EQ(
      DecomposePatiently(kExplicit.UndefinedSequence(kImages, "").substr(0, 12) + TagAndLength(kItem, 2)),
      kNeverReturns);
  EXPECT_EQ(Events().back(), "StartItem 00081140 2");
}

TEST_F(Sequence, AnItemThatClaimsTooMuchSwallowsWhatFollows) {
  const std::string tail = Behind() + kExplicit.Element(0x00100020, "LO", "cd");
  EXPECT_EQ(Decompose(kExplicit.Header(kImages, "SQ", 18) + TagAndLength(kItem, 20) + First() + tail),
            kNoFailure);
  EXPECT_EQ(Events(), Script(R"(
    StartElement 00081140 SQ 18
      StartSequence
        StartItem 00081140 20
          StartElement 00081150 UI 2
            Data 00081150 1 312E
          EndElement 00081150
          StartElement 00100010 PN 2
            Data 00100010 1 6162
          EndElement 00100010
        EndItem 00081140 20
      EndSequence
    EndElement 00081140
    StartElement 00100020 LO 2
      Data 00100020 1 6364
    EndElement 00100020
    EndContent)"));
}

TEST_F(Sequence, AnItemThatClaimsTooLittleLeavesAnElementWhereAnItemIsExpected) {
  const std::string items = TagAndLength(kItem, 10) + First() + Second();
  for (const std::string& bytes :
       {kExplicit.Sequence(kImages, items), kExplicit.UndefinedSequence(kImages, items)}) {
    EXPECT_EQ(Decompose(bytes),
              "DecomposeItem: Expected [Item] or [Sequence Delimitation Item], got: 00081155");
    EXPECT_EQ(Events().back(), "EndItem 00081140 10");
  }
}

TEST_F(Sequence, ThatClaimsTooMuchTakesAnElementForAnItem) {
  EXPECT_EQ(Decompose(kExplicit.Header(kImages, "SQ", 20) + Item(First()) + Behind()),
            "DecomposeItem: Expected [Item] or [Sequence Delimitation Item], got: 00100010");
}

TEST_F(Sequence, ThatClaimsTooLittleLeavesAnItemAmongElements) {
  EXPECT_EQ(Decompose(kExplicit.Header(kImages, "SQ", 18) + Item(First()) + Item(Second())),
            "Expected [Item Delimitation] or element, got [Item]");
  EXPECT_EQ(Events().back(), "EndElement 00081140");
}

TEST_F(Sequence, OfUndefinedLengthNeedsItsDelimitation) {
  EXPECT_EQ(Decompose(kExplicit.Header(kImages, "SQ", kUndefined) + Item(First())), kEndedTooEarly);
  EXPECT_EQ(Events().back(), "EndItem 00081140 10");
}

TEST_F(Sequence, AnUndefinedItemWithoutDelimitationEndsWithTheStream) {
  EXPECT_EQ(
      Decompose(kExplicit.Header(kImages, "SQ", kUndefined) + TagAndLength(kItem, kUndefined) + First()),
      kEndedTooEarly);
  EXPECT_EQ(Events().back(), "EndItem 00081140 4294967295");
}

// --- Delimitations where none belongs

TEST_F(Sequence, AnItemDelimitationAtTheTopLevelFails) {
  EXPECT_EQ(Decompose(ItemEnd()), "DecomposeElement: caller did not expect [Item Delimitation]");
  EXPECT_EQ(Decompose(ItemEnd(), kImplicitLittleEndian),
            "DecomposeElement: caller did not expect [Item Delimitation]");
}

TEST_F(Sequence, AnItemDelimitationInADefinedItemFails) {
  EXPECT_EQ(Decompose(kExplicit.Sequence(kImages, Item(First() + ItemEnd()))),
            "DecomposeElement: caller did not expect [Item Delimitation]");
}

TEST_F(Sequence, ASequenceDelimitationAmongElementsFails) {
  for (const std::string& bytes :
       {SequenceEnd(), kExplicit.UndefinedSequence(kImages, TagAndLength(kItem, kUndefined) + First())}) {
    EXPECT_EQ(Decompose(bytes), "Expected [Item Delimitation] or element, got [Sequence Delimitation Item]");
  }
}

TEST_F(Sequence, ASequenceDelimitationInADefinedSequenceFails) {
  EXPECT_EQ(Decompose(kExplicit.Sequence(kImages, Item(First()) + SequenceEnd())),
            "DecomposeItem: caller did not expect [Sequence Delimitation Item]");
}

TEST_F(Sequence, AnItemAtTheTopLevelFails) {
  for (const char* const syntax : {kImplicitLittleEndian, dicom_bytes::kExplicitLittleEndian}) {
    EXPECT_EQ(Decompose(TagAndLength(kItem, 0), syntax),
              "Expected [Item Delimitation] or element, got [Item]");
  }
}

TEST_F(Sequence, TheLengthOfItsDelimitationIsNotLookedAt) {
  const std::string bytes =
      kExplicit.Header(kImages, "SQ", kUndefined) + TagAndLength(kSequenceDelimitation, 1234567) + Behind();
  EXPECT_EQ(Decompose(bytes), kNoFailure);
  EXPECT_EQ(Events().back(), "EndContent");
}

// The 4 length bytes of an Item Delimitation are read as a VR and a 2-byte length with explicit VRs.
TEST_F(Sequence, TheLengthOfAnItemDelimitationIsReadAsAVrAndALength) {
  const auto with_end = [](const std::string& length_bytes) {
    return kExplicit.Header(kImages, "SQ", kUndefined) + TagAndLength(kItem, kUndefined) + First() +
           Hex("FE FF 0D E0") + length_bytes + SequenceEnd();
  };
  EXPECT_EQ(Decompose(with_end(Hex("34 12 02 00"))), kNoFailure) << "an even high half is accepted";
  EXPECT_EQ(Decompose(with_end(Hex("34 12 01 00"))),
            "DecomposeElement reading VR and data length: Datalength is an odd number");
  EXPECT_EQ(Decompose(with_end("OB" + Hex("00 00") + Hex("02 00 00 00"))), kNoFailure)
      << "a VR of long length takes 4 bytes more";
  EXPECT_EQ(
      Decompose(with_end("UT" + Hex("00 00") + Hex("FF FF FF FF"))),
      "DecomposeElement reading VR and data length: Element specifies undefined length but VR 'UT' does "
      "not allow it");
}

TEST_F(Sequence, AnItemDelimitationWithAnyEvenLengthIsAcceptedWithImplicitVr) {
  const auto with_length = [](std::uint32_t length) {
    return kImplicit.Header(kImages, "SQ", kUndefined) + TagAndLength(kItem, kUndefined) +
           TagAndLength(kItemDelimitation, length) + SequenceEnd();
  };
  EXPECT_EQ(Decompose(with_length(1000), kImplicitLittleEndian), kNoFailure);
  EXPECT_EQ(Decompose(with_length(kUndefined), kImplicitLittleEndian), kNoFailure);
  EXPECT_EQ(Decompose(with_length(1001), kImplicitLittleEndian),
            "DecomposeElement reading VR and data length: Datalength is an odd number");
}

}  // namespace
