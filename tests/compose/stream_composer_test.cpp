#include "compose/stream_composer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "tests/compose/compose_host.h"

namespace vessa {
namespace {

class Composer : public ::testing::Test {
 protected:
  /// Composes and compares every byte that was written.
  void ExpectBytes(std::string_view syntax, std::string_view original, std::string_view digits) {
    EXPECT_EQ(host_.Compose(syntax, original), "");
    EXPECT_EQ(Digits(host_.Written()), Digits(Hex(digits)));
  }

  ComposeHost host_;
};

TEST_F(Composer, AnEmptyDataSetWritesNothing) {
  host_.Host().Record(true);
  ExpectBytes(kExplicitLittle, kExplicitLittle, "");
  EXPECT_THAT(host_.Host().Calls(), ::testing::Not(::testing::Contains(::testing::HasSubstr("Write"))));
}

TEST_F(Composer, ExplicitVrsHaveShortAndLongLengths) {
  host_.Top(0x00100010, 1, "PN", "Doe^John");
  host_.Top(0x00189445, 2, "OB", "xy");
  host_.Top(0x00204000, 3, "UT", "");
  host_.Top(0x00209001, 4, "OX", "ab");
  ExpectBytes(kExplicitLittle, kExplicitLittle,
              "1000 1000 504E 0800 446F655E4A6F686E"
              "1800 4594 4F42 0000 02000000 7879"
              "2000 0040 5554 0000 00000000"
              "2000 0190 4F58 0000 02000000 6162");
}

TEST_F(Composer, LaterVrsKeepTheShortLengthOnPurpose) {
  host_.Top(0x00080120, 1, "UR", "ab");
  host_.Top(0x7FE00009, 2, "OD", "12345678");
  ExpectBytes(kExplicitLittle, kExplicitLittle,
              "0800 2001 5552 0200 6162"
              "E07F 0900 4F44 0800 3132333435363738");
}

TEST_F(Composer, ImplicitVrsAreNotWritten) {
  host_.Top(0x00100010, 1, "PN", "Doe^John");
  host_.Top(0x00189445, 2, "OB", "xy");
  ExpectBytes(kImplicitLittle, kExplicitLittle,
              "1000 1000 08000000 446F655E4A6F686E 1800 4594 02000000 7879");
}

TEST_F(Composer, EncapsulatedSyntaxesAreExplicit) {
  host_.Top(0x00100010, 1, "PN", "AB");
  ExpectBytes(kJpeg, kExplicitLittle, "1000 1000 504E 0200 4142");
}

TEST_F(Composer, OddLengthsAreWrittenAsTheyAre) {
  host_.Top(0x00100010, 1, "PN", "ABC");
  ExpectBytes(kExplicitLittle, kExplicitLittle, "1000 1000 504E 0300 414243");
}

TEST_F(Composer, AMissingVrComesFromTheDictionary) {
  host_.Top(0x00100010, 1, "", "AB");
  host_.Top(0x00280106, 2, "", "12");  // US or SS: the dictionary's placeholder goes out as it stands
  ExpectBytes(kExplicitLittle, kExplicitLittle, "1000 1000 504E 0200 4142 2800 0601 5853 0200 3132");
}

TEST_F(Composer, AOneLetterVrIsWrittenWithAZeroByte) {
  host_.Top(0x00100010, 1, "P", "AB");
  ExpectBytes(kExplicitLittle, kExplicitLittle, "1000 1000 5000 0200 4142");
}

TEST_F(Composer, UnsupportedSyntaxesAreRefusedBeforeAnythingIsRead) {
  for (const char* uid : {"1.2.840.10008.1.2.2", "", "1.2.840.10008.1.2.1 ", "1.2.3"}) {
    const std::uint64_t before = host_.Host().CallbackCount();
    EXPECT_EQ(host_.Compose(uid),
              std::string("ComposeStream: Expected a supported transfer syntax, got: ") + uid);
    EXPECT_EQ(host_.Host().CallbackCount(), before);
  }
}

TEST_F(Composer, AnUnknownTagWithoutAVrFails) {
  host_.Top(0x00100010, 1, "PN", "AB");
  host_.Top(0x0028ABCE, 2, "", "x");
  EXPECT_EQ(host_.Compose(kExplicitLittle), "ComposeStream: Unrecognized tag: 0028ABCE");
  EXPECT_EQ(Digits(host_.Written()), Digits(Hex("1000 1000 504E 0200 4142")));
}

TEST_F(Composer, AnUnknownTagInsideAnItemFailsTheSameWay) {
  host_.TopSequence(0x00081140, 1);
  host_.InItem(1, 1, 0x0028ABCE, 2, "", "x");
  EXPECT_EQ(host_.Compose(kExplicitLittle), "ComposeStream: Unrecognized tag: 0028ABCE");
}

TEST_F(Composer, AnUnknownTagWithAVrIsWritten) {
  host_.Top(0x0028ABCE, 1, "LO", "xy");
  ExpectBytes(kExplicitLittle, kExplicitLittle, "2800 CEAB 4C4F 0200 7879");
}

TEST_F(Composer, KeysKeepAll32BitsOfATagAndOtherTextsAreTheTagZero) {
  host_.Top(0xFFFCFFFC, 1, "OB", "");
  host_.Set({std::int64_t{0}, std::string("c"), std::int64_t{0}, std::string("none")}, std::int64_t{1});
  ExpectBytes(kExplicitLittle, kExplicitLittle, "FCFF FCFF 4F42 0000 00000000 0000 0000 4F42 0000 00000000");
}

TEST_F(Composer, AShortLengthHoldsUpTo65535Bytes) {
  host_.Top(0x00081160, 1, "IS", std::string(32767, '1'));
  host_.Chunk(1, 1, std::string(32767, '2'));
  host_.Chunk(1, 2, "3");
  EXPECT_EQ(host_.Compose(kExplicitLittle), "");
  EXPECT_EQ(Digits(host_.Written().substr(0, 8)), Digits(Hex("0800 6011 4953 FFFF")));
  EXPECT_EQ(host_.Written().size(), 8U + 65535);
}

TEST_F(Composer, ALongerValueIsRefusedInAShortLengthAndWrittenInALongOne) {
  host_.Top(0x00081160, 1, "IS", std::string(32767, '1'));
  host_.Chunk(1, 1, std::string(32767, '2'));
  host_.Chunk(1, 2, "34");
  EXPECT_EQ(host_.Compose(kExplicitLittle), "ComposeElement writing VR writing value length");
  EXPECT_EQ(Digits(host_.Written()), "08006011");  // the tag was out already
  EXPECT_EQ(host_.Compose(kImplicitLittle), "");
  EXPECT_EQ(Digits(host_.Written().substr(4, 8)), Digits(Hex("0800 6011 00000100")));
}

// --- Sequences ---

TEST_F(Composer, AnEmptySequenceIsATagAnUndefinedLengthAndADelimiter) {
  host_.TopSequence(0x00081140, 1);
  ExpectBytes(kExplicitLittle, kExplicitLittle, "0800 4011 5351 0000 FFFFFFFF FEFF DDE0 00000000");
}

TEST_F(Composer, AnEmptySequenceInImplicitVr) {
  host_.TopSequence(0x00081140, 1);
  ExpectBytes(kImplicitLittle, kExplicitLittle, "0800 4011 FFFFFFFF FEFF DDE0 00000000");
}

TEST_F(Composer, ItemsAndNestedSequencesAreDelimited) {
  host_.TopSequence(0x00081140, 1);
  host_.InItem(1, 1, 0x00081150, 2, "UI", "1.");
  host_.SequenceInItem(1, 1, 0x00081199, 3);
  host_.InItem(3, 1, 0x00081155, 4, "UI", "2.");
  host_.InItem(1, 1, 0x00100010, 5, "PN", "AB");
  host_.EmptyItem(1, 2);
  host_.Top(0x00100020, 6, "LO", "ID");
  ExpectBytes(kExplicitLittle, kExplicitLittle,
              "0800 4011 5351 0000 FFFFFFFF"
              "  FEFF 00E0 FFFFFFFF"
              "    0800 5011 5549 0200 312E"
              "    0800 9911 5351 0000 FFFFFFFF"
              "      FEFF 00E0 FFFFFFFF"
              "        0800 5511 5549 0200 322E"
              "      FEFF 0DE0 00000000"
              "    FEFF DDE0 00000000"
              "    1000 1000 504E 0200 4142"
              "  FEFF 0DE0 00000000"
              "  FEFF 00E0 FFFFFFFF"
              "  FEFF 0DE0 00000000"
              "FEFF DDE0 00000000"
              "1000 2000 4C4F 0200 4944");
}

TEST_F(Composer, PixelDataInsideAnItemIsAnElementLikeAnyOther) {
  host_.TopSequence(0x00880200, 1);
  host_.InItem(1, 1, 0x7FE00010, 2, "OW", "abcd");
  ExpectBytes(kExplicitLittle, kExplicitLittle,
              "8800 0002 5351 0000 FFFFFFFF FEFF 00E0 FFFFFFFF"
              "E07F 1000 4F57 0000 04000000 61626364"
              "FEFF 0DE0 00000000 FEFF DDE0 00000000");
}

TEST_F(Composer, ASequenceMayStandAtTheTagOfPixelData) {
  host_.TopSequence(0x7FE00010, 1);
  ExpectBytes(kExplicitLittle, kExplicitLittle, "E07F 1000 5351 0000 FFFFFFFF FEFF DDE0 00000000");
}

TEST_F(Composer, ASequenceThatIsItsOwnAncestorFails) {
  host_.TopSequence(0x00081140, 1);
  host_.SequenceInItem(1, 1, 0x00081199, 2);
  host_.SequenceInItem(2, 1, 0x00081140, 1);
  EXPECT_EQ(host_.Compose(kExplicitLittle),
            "ComposeSequence: Element 00081140 is its own ancestor at reference ^KevDICOM.Data(ID,1,\"c\")");
  EXPECT_EQ(host_.Written().size(), 2U * (12 + 8));  // two sequences and their items
}

TEST_F(Composer, TheRootIsAnAncestorOfAll) {
  host_.TopSequence(0x00081140, 0);
  EXPECT_EQ(host_.Compose(kExplicitLittle),
            "ComposeSequence: Element 00081140 is its own ancestor at reference ^KevDICOM.Data(ID,0,\"c\")");
}

TEST_F(Composer, ASequenceMayComeTwiceSideBySide) {
  host_.TopSequence(0x00081140, 1);
  host_.TopSequence(0x00081199, 1);
  EXPECT_EQ(host_.Compose(kExplicitLittle), "");
  EXPECT_EQ(host_.Written().size(), 2U * (12 + 8));
}

TEST_F(Composer, DeepNestingStaysOffTheMachineStack) {
  constexpr std::int64_t kLevels = 20000;
  host_.TopSequence(0x00081140, 1);
  for (std::int64_t level = 1; level < kLevels; ++level)
    host_.SequenceInItem(level, 1, 0x00081140, level + 1);
  EXPECT_EQ(host_.Compose(kExplicitLittle), "");
  EXPECT_EQ(host_.Written().size(), static_cast<std::size_t>(kLevels * (12 + 8) + (kLevels - 1) * (8 + 8)));
}

// --- Byte order ---

TEST_F(Composer, ValuesOfSwappedVrsAreReversedUnitByUnit) {
  host_.Top(0x00280010, 1, "US", Hex("0102 0304"));
  host_.Top(0x00280011, 2, "OW", Hex("0102 0304"));
  host_.Top(0x00280012, 3, "SL", Hex("01020304"));
  host_.Top(0x00280013, 4, "UL", Hex("01020304 05060708"));
  host_.Top(0x00280014, 5, "FL", Hex("01020304"));
  host_.Top(0x00280015, 6, "OF", Hex("01020304"));
  host_.Top(0x00280016, 7, "FD", Hex("0102030405060708"));
  ExpectBytes(kImplicitLittle, kExplicitBig,
              "2800 1000 04000000 0201 0403"
              "2800 1100 04000000 0201 0403"
              "2800 1200 04000000 04030201"
              "2800 1300 08000000 04030201 08070605"
              "2800 1400 04000000 04030201"
              "2800 1500 04000000 04030201"
              "2800 1600 08000000 0807060504030201");
}

TEST_F(Composer, SignedShortsTagsAndByteValuesAreCopiedUnswappedOnPurpose) {
  host_.Top(0x00280106, 1, "SS", Hex("0102"));
  host_.Top(0x00280107, 2, "AT", Hex("01020304"));
  host_.Top(0x00280108, 3, "OB", Hex("01020304"));
  host_.Top(0x00280109, 4, "UN", Hex("01020304"));
  host_.Top(0x0028010A, 5, "OX", Hex("01020304"));
  host_.Top(0x0028010B, 6, "LO", Hex("01020304"));
  host_.Top(0x0028010C, 7, "XS", Hex("0102"));
  ExpectBytes(kImplicitLittle, kExplicitBig,
              "2800 0601 02000000 0102"
              "2800 0701 04000000 01020304"
              "2800 0801 04000000 01020304"
              "2800 0901 04000000 01020304"
              "2800 0A01 04000000 01020304"
              "2800 0B01 04000000 01020304"
              "2800 0C01 02000000 0102");
}

TEST_F(Composer, NothingIsSwappedBetweenSyntaxesOfOneByteOrder) {
  host_.Top(0x00280010, 1, "US", Hex("0102"));
  ExpectBytes(kImplicitLittle, "1.2.3", "2800 1000 02000000 0102");
}

TEST_F(Composer, UnitsAcrossTheEndsOfChunksAreSwappedAsOneRunOfBytes) {
  host_.Top(0x00280016, 1, "FD", Hex("01"));
  host_.Chunk(1, 1, Hex("0203"));
  host_.Chunk(1, 2, "");
  host_.Chunk(1, 3, Hex("04050607 0811121314151617"));
  host_.Chunk(1, 4, Hex("18 2122"));
  ExpectBytes(kImplicitLittle, kExplicitBig, "2800 1600 12000000 0807060504030201 1817161514131211 2122");
}

TEST_F(Composer, ALastIncompleteUnitIsCopiedAsItStands) {
  host_.Top(0x00280013, 1, "UL", Hex("01020304 050607"));
  host_.Top(0x00280014, 2, "UL", Hex("0102"));
  ExpectBytes(kImplicitLittle, kExplicitBig, "2800 1300 07000000 04030201 050607 2800 1400 02000000 0102");
}

// --- Bits Allocated ---

TEST_F(Composer, BitsAllocatedIsReadInTheByteOrderOfTheOriginal) {
  host_.Top(0x00280100, 1, "US", Hex("0010"));
  ExpectBytes(kImplicitLittle, kExplicitBig, "2800 0001 02000000 1000");
  EXPECT_EQ(host_.BitsAllocated(), 16);
}

TEST_F(Composer, BitsAllocatedIsReadAcrossChunks) {
  host_.Top(0x00280100, 1, "US", Hex("08"));
  host_.Chunk(1, 1, Hex("01"));
  EXPECT_EQ(host_.Compose(kExplicitLittle, kExplicitLittle), "");
  EXPECT_EQ(host_.BitsAllocated(), 0x0108);
}

TEST_F(Composer, BitsAllocatedMustHaveTheVrUs) {
  host_.Top(0x00280100, 1, "OW", Hex("1000"));
  EXPECT_EQ(host_.Compose(kExplicitLittle),
            "CollectSpecialTagInfo: BitsAllocated (0028,0100) should have a VR of US, got: OW");
  EXPECT_EQ(Digits(host_.Written()), Digits(Hex("2800 0001 4F57 0000 02000000 1000")));
}

TEST_F(Composer, BitsAllocatedMustHaveTwoBytes) {
  for (const char* digits : {"", "10", "100000", "10001000"}) {
    ComposeHost host;
    host.Top(0x00280100, 1, "US", Hex(digits));
    EXPECT_EQ(host.Compose(kExplicitLittle),
              "CollectSpecialTagInfo: BitsAllocated (0028,0100) data should have a length of 2")
        << digits;
  }
}

TEST_F(Composer, BitsAllocatedIsCheckedInsideItemsAsWell) {
  host_.TopSequence(0x00081140, 1);
  host_.InItem(1, 1, 0x00280100, 2, "US", "x");
  EXPECT_EQ(host_.Compose(kExplicitLittle),
            "CollectSpecialTagInfo: BitsAllocated (0028,0100) data should have a length of 2");
}

// --- Content that changes or is damaged ---

/// A source of one element that says one length and hands out other chunks.
class ChangingSource : public CContentSource {
 public:
  ChangingSource(std::uint64_t length, std::vector<std::string> chunks)
      : CContentSource("ID"), length_{length}, chunks_{std::move(chunks)} {}

  void Reset() override {}
  bool NextTagKey(std::string& key, ContentElement& element) override {
    key = key.empty() ? "1048592" : "";
    element = {7, Vr("UN")};
    return !key.empty();
  }
  std::uint64_t GetDataLength(std::int32_t) override { return length_; }
  bool GetNextDataChunk(std::int32_t, std::string&, std::span<std::uint8_t>& chunk) override {
    chunk = {};
    if (next_ == chunks_.size()) return false;
    std::string& bytes = chunks_[next_++];
    chunk = {reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size()};
    return true;
  }
  bool NextSequenceItemKey(std::int32_t, std::string&) override { return false; }
  bool NextSequenceTagKey(const std::string&, std::string&, std::int32_t, ContentElement&) override {
    return false;
  }
  bool HasUndefinedLength(std::int32_t) override { return false; }

 private:
  std::uint64_t length_;
  std::vector<std::string> chunks_;
  std::size_t next_ = 0;
};

struct Outcome {
  std::string failure;
  std::string written;
};

Outcome ComposeAll(ChangingSource source) {
  emulator::Host host;
  SetHostServices(emulator::Host::Table());
  const auto stream = std::make_shared<emulator::MemoryStream>();
  CVessaBinaryOutputStream output(host.Add(stream));
  StreamComposer composer(source, output, kExplicitLittle, 0, false);
  const std::string failure = FailureOf([&] { composer.ComposeStream("ID", kImplicitLittle); });
  return {failure, stream->Bytes()};
}

std::string ComposeFrom(ChangingSource source) { return ComposeAll(std::move(source)).failure; }

constexpr const char* kOtherLength =
    "ComposeElement: Data of element 00100010 do not have the length that was written at reference "
    "^KevDICOM.Data(ID,7,\"d\")";

TEST(ComposerLength, ChunksThatDoNotAddUpToTheLengthFail) {
  EXPECT_EQ(ComposeFrom({4, {"ab", "cd"}}), "");
  EXPECT_EQ(ComposeFrom({4, {"ab", "c"}}), kOtherLength);
  EXPECT_EQ(ComposeFrom({4, {"ab", "cde"}}), kOtherLength);
  EXPECT_EQ(ComposeFrom({4, {}}), kOtherLength);
  EXPECT_EQ(ComposeFrom({0, {"a"}}), kOtherLength);
  EXPECT_EQ(ComposeFrom({0, {""}}), "");
}

TEST(ComposerLength, AChunkBeyondTheLengthIsNotWritten) {
  const Outcome outcome = ComposeAll({4, {"ab", "cde", "f"}});
  EXPECT_EQ(outcome.failure, kOtherLength);
  EXPECT_EQ(Digits(outcome.written), Digits(Hex("1000 1000 04000000 6162")));
}

TEST(ComposerLength, ALengthThatWouldMeanUndefinedOrWrapIsRefused) {
  constexpr const char* kTooLong = "ComposeElement writing VR writing value length";
  EXPECT_EQ(ComposeFrom({0xFFFFFFFEU, {}}), kOtherLength);
  EXPECT_EQ(ComposeFrom({0xFFFFFFFFU, {}}), kTooLong);
  EXPECT_EQ(ComposeFrom({0x100000000U, {}}), kTooLong);
  EXPECT_EQ(ComposeFrom({0xFFFFFFFFFFFFFFFFU, {}}), kTooLong);
}

TEST_F(Composer, AnElementWithoutAValueNodeFailsBehindItsTag) {
  host_.Set({std::int64_t{0}, std::string("c"), std::int64_t{0}, std::int64_t{0x00100010}}, std::int64_t{1});
  host_.Set({std::int64_t{1}, std::string("v")}, std::string("PN"));
  EXPECT_EQ(host_.Compose(kExplicitLittle), "GetDataLength: Vessa' callin error: undefined");
  EXPECT_EQ(Digits(host_.Written()), "10001000");
}

TEST_F(Composer, ChunksBeforeTheKeyZeroAreCountedAndNotHandedOut) {
  host_.Top(0x00100010, 7, "PN", "ab");
  host_.Chunk(7, -1, "cd");
  EXPECT_EQ(host_.Compose(kExplicitLittle), kOtherLength);
}

// --- The output ---

TEST_F(Composer, TheLastBlockIsWrittenAlsoBehindAFailure) {
  host_.Top(0x00100010, 1, "PN", std::string(9000, 'x'));
  host_.Top(0x0028ABCE, 2, "", "x");
  host_.Host().Record(true);
  EXPECT_EQ(host_.Compose(kExplicitLittle), "ComposeStream: Unrecognized tag: 0028ABCE");
  EXPECT_EQ(host_.Written().size(), 9008U);
  EXPECT_THAT(host_.Host().Calls(), ::testing::Contains("PushString 8000 bytes").Times(1));
  EXPECT_THAT(host_.Host().Calls(), ::testing::Contains("PushString 1008 bytes").Times(1));
}

TEST_F(Composer, AFailingLastWriteIsSwallowed) {
  host_.Top(0x00100010, 1, "PN", "AB");
  host_.Host().faults().FailNthMethod("Write", 1, 5);
  EXPECT_EQ(host_.Compose(kExplicitLittle), "");
  EXPECT_EQ(host_.Written(), "");
}

TEST_F(Composer, AFailingWriteInTheMiddleKeepsTheStreamsText) {
  host_.Top(0x00100010, 1, "PN", std::string(9000, 'x'));
  host_.Host().faults().FailNthMethod("Write", 1, 5, true);
  EXPECT_EQ(host_.Compose(kExplicitLittle), "Callin error writing bytes: 5");
}

TEST_F(Composer, LeavesNothingOnTheHostsStack) {
  host_.TopSequence(0x00081140, 1);
  host_.InItem(1, 1, 0x00081150, 2, "UI", "1.");
  host_.Top(0x00100010, 3, "PN", std::string(20000, 'x'));
  EXPECT_EQ(host_.Compose(kExplicitLittle), "");
  EXPECT_EQ(host_.Host().StackDepth(), 0U);
}

}  // namespace
}  // namespace vessa
