#include "compose/global_content_source.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tests/compose/compose_host.h"

namespace vessa {
namespace {

using ::testing::ElementsAre;

class GlobalContentSource : public ::testing::Test {
 protected:
  /// The chunks of a value, one after the other.
  std::vector<std::string> Chunks(std::int32_t node) {
    std::vector<std::string> chunks;
    std::string key;
    std::span<std::uint8_t> chunk;
    while (source_.GetNextDataChunk(node, key, chunk)) chunks.emplace_back(chunk.begin(), chunk.end());
    EXPECT_EQ(key, "");
    EXPECT_TRUE(chunk.empty());
    return chunks;
  }

  ComposeHost host_;
  CGlobalContentSource source_{ComposeHost::kId};
  std::string key_;
  ContentElement element_;
};

TEST_F(GlobalContentSource, ADataSetWithoutElementsEndsAtOnce) {
  EXPECT_FALSE(source_.NextTagKey(key_, element_));
  EXPECT_EQ(key_, "");
}

TEST_F(GlobalContentSource, TopLevelElementsComeInTheHostsOrderWithNodeAndVr) {
  host_.Top(0x7FE00010, 3, "OW", "");
  host_.Top(0x00100010, 7, "PN", "A");
  host_.Top(0xFFFCFFFC, 9, "OB", "");
  ASSERT_TRUE(source_.NextTagKey(key_, element_));
  EXPECT_EQ(key_, "1048592");
  EXPECT_EQ(element_.node, 7);
  EXPECT_EQ(element_.vr, Vr("PN"));
  ASSERT_TRUE(source_.NextTagKey(key_, element_));
  EXPECT_EQ(key_, "2145386512");
  EXPECT_EQ(element_.node, 3);
  ASSERT_TRUE(source_.NextTagKey(key_, element_));
  EXPECT_EQ(key_, "4294770684");
  EXPECT_FALSE(source_.NextTagKey(key_, element_));
  EXPECT_EQ(key_, "");
}

TEST_F(GlobalContentSource, OtherDataSetsAreNotSeen) {
  host_.Host().globals().Set(
      "KevDICOM.Data",
      {std::string("IE"), std::int64_t{0}, std::string("c"), std::int64_t{0}, std::int64_t{1}},
      std::int64_t{1});
  EXPECT_FALSE(source_.NextTagKey(key_, element_));
}

TEST_F(GlobalContentSource, AnElementWithoutAVrNodeHasAnEmptyVr) {
  host_.Top(0x00100010, 7, "", "A");
  ASSERT_TRUE(source_.NextTagKey(key_, element_));
  EXPECT_TRUE(element_.vr.IsEmpty());
}

TEST_F(GlobalContentSource, AVrGoesThroughTheCodePageAndIsNotCutToTheLowHalves) {
  host_.Top(0x00100010, 7, "", "A");
  host_.Set({std::int64_t{7}, std::string("v")}, std::u16string(u"\u4E50N"));  // the low half is a P
  ASSERT_TRUE(source_.NextTagKey(key_, element_));
  EXPECT_NE(element_.vr, Vr("PN"));
  key_.clear();
  host_.Set({std::int64_t{7}, std::string("v")}, std::u16string(u"P\u4E4E"));
  ASSERT_TRUE(source_.NextTagKey(key_, element_));
  EXPECT_EQ(element_.vr.First(), 'P');
  EXPECT_NE(element_.vr, Vr("PN"));
}

TEST_F(GlobalContentSource, AnEmptyVrNodeIsAnEmptyVr) {
  host_.Top(0x00100010, 7, "", "A");
  host_.Set({std::int64_t{7}, std::string("v")}, std::string());
  element_.vr = Vr("PN");
  ASSERT_TRUE(source_.NextTagKey(key_, element_));
  EXPECT_TRUE(element_.vr.IsEmpty());
}

TEST_F(GlobalContentSource, AVrIsTheFirstTwoCharacters) {
  host_.Top(0x00100010, 7, "PNX", "A");
  host_.Top(0x00100020, 8, "L", "A");
  ASSERT_TRUE(source_.NextTagKey(key_, element_));
  EXPECT_EQ(element_.vr.Text(), "PN");
  ASSERT_TRUE(source_.NextTagKey(key_, element_));
  EXPECT_EQ(element_.vr.Text(), "L");
}

TEST_F(GlobalContentSource, AHostFailureWhileReadingTheVrIsTheWalksOwn) {
  host_.Top(0x00100010, 7, "PN", "A");
  host_.Host().faults().FailNth(emulator::Operation::kGlobalGet, 1, 8);
  EXPECT_EQ(FailureOf([&] { source_.NextTagKey(key_, element_); }),
            "NextTagKey: Vessa' callin error: noline");
}

TEST_F(GlobalContentSource, AnElementWithoutANodeNumberFails) {
  host_.Set({std::int64_t{0}, std::string("c"), std::int64_t{0}, std::int64_t{1048592}, std::string("x")},
            std::string("below"));
  EXPECT_EQ(FailureOf([&] { source_.NextTagKey(key_, element_); }),
            "NextTagKey: No data at reference ^KevDICOM.Data(ID,0,\"c\",0,1048592)");
}

TEST_F(GlobalContentSource, ItemsAndTheirElementsAreWalked) {
  host_.TopSequence(0x00081140, 4);
  host_.InItem(4, 1, 0x00081150, 5, "UI", "1.2");
  host_.EmptyItem(4, 2);
  host_.InItem(4, 10, 0x00081155, 6, "UI", "1.3");
  std::string item;
  ASSERT_TRUE(source_.NextSequenceItemKey(4, item));
  EXPECT_EQ(item, "1");
  ASSERT_TRUE(source_.NextSequenceTagKey(item, key_, 4, element_));
  EXPECT_EQ(key_, "528720");
  EXPECT_EQ(element_.node, 5);
  EXPECT_EQ(element_.vr, Vr("UI"));
  EXPECT_FALSE(source_.NextSequenceTagKey(item, key_, 4, element_));
  ASSERT_TRUE(source_.NextSequenceItemKey(4, item));
  EXPECT_EQ(item, "2");
  EXPECT_FALSE(source_.NextSequenceTagKey(item, key_, 4, element_));
  ASSERT_TRUE(source_.NextSequenceItemKey(4, item));
  EXPECT_EQ(item, "10");
  EXPECT_FALSE(source_.NextSequenceItemKey(4, item));
  EXPECT_EQ(item, "");
}

TEST_F(GlobalContentSource, AnElementOfAnItemWithoutANodeNumberFails) {
  host_.Set({std::int64_t{4}, std::string("c"), std::string("first"), std::int64_t{528720}, std::string("x")},
            std::string("below"));
  EXPECT_EQ(FailureOf([&] { source_.NextSequenceTagKey("first", key_, 4, element_); }),
            "NextSequenceTagKey: No data at reference ^KevDICOM.Data(ID,4,\"c\",first,528720)");
}

TEST_F(GlobalContentSource, AValueInOneNodeIsOneChunk) {
  host_.Top(0x00100010, 7, "PN", "Doe^John");
  EXPECT_EQ(source_.GetDataLength(7), 8U);
  EXPECT_THAT(Chunks(7), ElementsAre("Doe^John"));
}

TEST_F(GlobalContentSource, TheFirstChunkIsAnsweredWithTheKeyZero) {
  host_.Top(0x00100010, 7, "PN", "Doe");
  std::span<std::uint8_t> chunk;
  ASSERT_TRUE(source_.GetNextDataChunk(7, key_, chunk));
  EXPECT_EQ(key_, "0");
  EXPECT_FALSE(source_.GetNextDataChunk(7, key_, chunk));
  EXPECT_EQ(key_, "");
  EXPECT_TRUE(chunk.empty());
}

TEST_F(GlobalContentSource, FurtherChunksComeInTheOrderOfTheirKeys) {
  host_.Top(0x00100010, 7, "PN", "a");
  host_.Chunk(7, 10, "cccc");
  host_.Chunk(7, 2, "bb");
  EXPECT_EQ(source_.GetDataLength(7), 7U);
  EXPECT_THAT(Chunks(7), ElementsAre("a", "bb", "cccc"));
}

TEST_F(GlobalContentSource, EveryCharacterIsTheByteOfItsNumber) {
  std::string bytes;
  std::u16string wide;
  for (unsigned value = 0; value < 256; ++value) {
    bytes.push_back(static_cast<char>(value));
    wide.push_back(static_cast<char16_t>(value));
  }
  host_.Top(0x00100010, 7, "OB", bytes);
  host_.Chunk(7, 1, bytes);
  host_.Set({std::int64_t{8}, std::string("d")}, wide);
  EXPECT_EQ(source_.GetDataLength(7), 512U);
  EXPECT_THAT(Chunks(7), ElementsAre(bytes, bytes));
  EXPECT_EQ(source_.GetDataLength(8), 256U);
  EXPECT_THAT(Chunks(8), ElementsAre(bytes));
}

TEST_F(GlobalContentSource, AMissingChunkFailsInLengthAndInChunks) {
  host_.Top(0x00100010, 7, "PN", "a");
  host_.Set({std::int64_t{7}, std::string("d"), std::int64_t{1}, std::string("x")}, std::string("below"));
  EXPECT_EQ(FailureOf([&] { source_.GetDataLength(7); }),
            "GetDataLength: missing data node in some \"d\" record");
  EXPECT_EQ(FailureOf([&] { Chunks(7); }), "GetNextDataChunk: missing data node in some \"d\" record");
}

TEST_F(GlobalContentSource, AnElementWithoutAValueNodeIsAFailureOfTheHosts) {
  std::span<std::uint8_t> chunk;
  EXPECT_EQ(FailureOf([&] { source_.GetDataLength(7); }), "GetDataLength: Vessa' callin error: undefined");
  EXPECT_EQ(FailureOf([&] { source_.GetNextDataChunk(7, key_, chunk); }),
            "GetNextDataChunk: Vessa' callin error: undefined");
}

TEST_F(GlobalContentSource, OnlyTheValueOneMarksAnUndefinedLength) {
  EXPECT_FALSE(source_.HasUndefinedLength(7));
  host_.Set({std::int64_t{7}, std::string("l")}, std::int64_t{1});
  EXPECT_TRUE(source_.HasUndefinedLength(7));
  host_.Set({std::int64_t{7}, std::string("l")}, std::string("01"));
  EXPECT_FALSE(source_.HasUndefinedLength(7));
  host_.Set({std::int64_t{7}, std::string("l")}, std::string(""));
  EXPECT_FALSE(source_.HasUndefinedLength(7));
  host_.Set({std::int64_t{8}, std::string("l"), std::int64_t{1}}, std::string("1"));
  EXPECT_FALSE(source_.HasUndefinedLength(8));
  host_.Set({std::int64_t{8}, std::string("l")}, std::string("1"));
  EXPECT_TRUE(source_.HasUndefinedLength(8));
}

TEST_F(GlobalContentSource, WalkingAsksTheHostInThisOrder) {
  host_.Top(0x00100010, 7, "PN", "A");
  host_.Host().Record(true);
  ASSERT_TRUE(source_.NextTagKey(key_, element_));
  EXPECT_THAT(host_.Host().Calls(),
              ElementsAre("PushGlobal \"KevDICOM.Data\"", "PushString \"ID\"", "PushInteger 0",
                          "PushString \"c\"", "PushInteger 0", "PushString \"\"", "GlobalOrder 5 1 1",
                          "PopInteger -> 1", "PopString -> 1 bytes", "PopString -> 7 bytes",
                          "PushGlobalInNamespace \"KevDICOM.Data\" \"\"", "PushString \"ID\"",
                          "PushInteger 7", "PushString \"v\"", "GlobalGet 3 0", "PopWideString -> 2 units"));
  EXPECT_EQ(host_.Host().StackDepth(), 0U);
}

TEST_F(GlobalContentSource, WalkingAnItemPushesItsKeysAsTexts) {
  host_.InItem(4, 2, 0x00081150, 5, "UI", "");
  host_.Host().Record(true);
  ASSERT_TRUE(source_.NextSequenceTagKey("2", key_, 4, element_));
  const std::vector<std::string> calls(host_.Host().Calls().begin(), host_.Host().Calls().begin() + 7);
  EXPECT_THAT(calls,
              ElementsAre("PushGlobal \"KevDICOM.Data\"", "PushString \"ID\"", "PushInteger 4",
                          "PushString \"c\"", "PushString \"2\"", "PushString \"\"", "GlobalOrder 5 1 1"));
}

TEST_F(GlobalContentSource, WalkingItemsDoesNotReadValues) {
  host_.EmptyItem(4, 1);
  host_.Host().Record(true);
  ASSERT_TRUE(source_.NextSequenceItemKey(4, key_));
  EXPECT_THAT(host_.Host().Calls(), ElementsAre("PushGlobal \"KevDICOM.Data\"", "PushString \"ID\"",
                                                "PushInteger 4", "PushString \"c\"", "PushString \"\"",
                                                "GlobalOrder 4 1 0", "PopString -> 1 bytes"));
  EXPECT_EQ(host_.Host().StackDepth(), 0U);
}

TEST_F(GlobalContentSource, TheMarkOfAnUndefinedLengthIsTestedAndThenRead) {
  host_.MarkUndefined(7);
  host_.Host().Record(true);
  ASSERT_TRUE(source_.HasUndefinedLength(7));
  EXPECT_THAT(host_.Host().Calls(),
              ElementsAre("PushGlobalInNamespace \"KevDICOM.Data\" \"\"", "PushString \"ID\"",
                          "PushInteger 7", "PushString \"l\"", "GlobalDefined 3 0", "PopInteger -> 1",
                          "PushGlobalInNamespace \"KevDICOM.Data\" \"\"", "PushString \"ID\"",
                          "PushInteger 7", "PushString \"l\"", "GlobalGet 3 0", "PopWideString -> 1 units"));
}

/// Fails every callback of an operation in turn, alone and with all behind it, and compares the failure.
template <class Operation>
void ExpectEveryFaultAs(const std::string& expected, ComposeHost& host, Operation operation) {
  for (const bool from_then_on : {false, true}) {
    for (std::uint64_t n = 1;; ++n) {
      host.Host().faults().Clear();
      const std::uint64_t hits = host.Host().faults().Hits();
      host.Host().faults().FailNth(n, 5, from_then_on);
      const std::string failure = FailureOf(operation);
      host.Host().ResetStack();
      if (host.Host().faults().Hits() == hits) {
        EXPECT_EQ(failure, "");
        EXPECT_GT(n, 5U);
        break;
      }
      ASSERT_EQ(failure, expected) << n;
    }
  }
  host.Host().faults().Clear();
}

TEST_F(GlobalContentSource, EveryFailingCallbackNamesTheOperation) {
  host_.Top(0x00100010, 7, "PN", "ab");
  host_.Chunk(7, 1, "cd");
  host_.InItem(4, 1, 0x00081150, 5, "UI", "");
  ExpectEveryFaultAs("NextTagKey: Vessa' callin error: max string", host_, [this] {
    std::string key;
    source_.NextTagKey(key, element_);
  });
  ExpectEveryFaultAs("NextSequenceTagKey: Vessa' callin error: max string", host_, [this] {
    std::string key;
    source_.NextSequenceTagKey("1", key, 4, element_);
  });
  ExpectEveryFaultAs("GetDataLength: Vessa' callin error: max string", host_,
                     [this] { source_.GetDataLength(7); });
  ExpectEveryFaultAs("GetNextDataChunk: Vessa' callin error: max string", host_, [this] { Chunks(7); });
}

TEST_F(GlobalContentSource, TheOtherOperationsRaiseTheBareStatus) {
  host_.MarkUndefined(7);
  host_.EmptyItem(4, 1);
  ExpectEveryFaultAs("status 5", host_, [this] { source_.HasUndefinedLength(7); });
  ExpectEveryFaultAs("status 5", host_, [this] {
    std::string key;
    source_.NextSequenceItemKey(4, key);
  });
}

TEST_F(GlobalContentSource, AHostThatLiesAboutATextIsAFailedCallin) {
  host_.Top(0x00100010, 7, "PN", "ab");
  for (const emulator::Lie lie : {emulator::Lie::kNegativeLength, emulator::Lie::kNoBytes}) {
    host_.Host().faults().LieNth(lie, 1);
    EXPECT_EQ(FailureOf([&] { source_.GetDataLength(7); }),
              "GetDataLength: Vessa' callin error: failure (code -1) (interface error)");
    host_.Host().ResetStack();
    host_.Host().faults().Clear();
  }
}

}  // namespace
}  // namespace vessa
