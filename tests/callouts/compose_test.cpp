#include <gmock/gmock.h>

#include <cstdint>
#include <string>
#include <vector>

#include "emulator/event_log.h"
#include "tests/callouts/composing.h"

namespace emulator {
namespace {

using dicom_bytes::Hex;
using dicom_bytes::kExplicitLittleEndian;
using dicom_bytes::kImplicitLittleEndian;
using dicom_bytes::kJpegBaseline;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

// --- Arguments and steps ---

TEST_F(ComposeStream, NamesFourArgumentsAndNeedsFive) {
  ListBuilder arguments;
  for (int count = 0; count < 5; ++count) {
    ExpectFailure(
        Call("zfComposeStream", arguments),
        u" VessaDCM::zfComposeStream: Expected output stream, original transfer syntax, transfer syntax, "
        u"pixel data stream arguments");
    arguments.Integer(1);
  }
}

TEST_F(ComposeStream, NamesTheArgumentThatCannotBeRead) {
  for (int bad = 1; bad <= 5; ++bad) {
    ListBuilder arguments;
    for (int position = 1; position <= 5; ++position) {
      if (position == bad) {
        arguments.Item(static_cast<int>(ListType::kDouble), "cut");
      } else {
        arguments.Integer(1);
      }
    }
    const std::string message = "List Format Error -  fetching argument " + std::to_string(bad);
    ExpectFailure(Call("zfComposeStream", arguments), std::u16string(message.begin(), message.end()));
  }
}

TEST_F(ComposeStream, ReadsTheDebugSwitchWhileTheSourceIsSetUp) {
  host_.faults().FailNth(Operation::kGlobalDefined, 1, 5);
  ExpectFailure(Compose(), u" setting up content source");
}

TEST_F(ComposeStream, RefusesSyntaxesThatItCannotWrite) {
  for (const std::string syntax : {"1.2.840.10008.1.2.2", "", "1.2.840.10008.1.2.1 ", "1.2.3"}) {
    ExpectFails(Compose(syntax), "ComposeStream: Expected a supported transfer syntax, got: " + syntax, "");
  }
}

TEST_F(ComposeStream, MakesTheseCallbacksForOneElement) {
  data_.Top(0x00100010, 7, "PN", "AB");
  host_.Record(true);
  ExpectBytes(Compose(), "1000 1000 504E 0200 4142");
  EXPECT_THAT(
      host_.Calls(),
      ElementsAre(
          // the switch for simple pixel data frames
          R"(PushGlobalInNamespace "KevDICOM.Debug" "")", R"(PushString "simplepixeldataframes")",
          "GlobalDefined 1 0", "PopInteger -> 0",
          // the next key at the top level: numbers as integers, identifier and keys as texts
          R"(PushGlobal "KevDICOM.Data")", R"(PushString "ID")", "PushInteger 0", R"(PushString "c")",
          "PushInteger 0", R"(PushString "")", "GlobalOrder 5 1 1", "PopInteger -> 1", "PopString -> 1 bytes",
          "PopString -> 7 bytes",
          // its VR
          R"(PushGlobalInNamespace "KevDICOM.Data" "")", R"(PushString "ID")", "PushInteger 7",
          R"(PushString "v")", "GlobalGet 3 0", "PopWideString -> 2 units",
          // the length: of the first chunk, and of those behind it
          R"(PushGlobalInNamespace "KevDICOM.Data" "")", R"(PushString "ID")", "PushInteger 7",
          R"(PushString "d")", "GlobalGet 3 0", "PopWideString -> 2 units", R"(PushGlobal "KevDICOM.Data")",
          R"(PushString "ID")", "PushInteger 7", R"(PushString "d")", R"(PushString "")", "GlobalOrder 4 1 1",
          "PopInteger -> 0", "PopString -> 0 bytes",
          // the chunks: the first, and those behind the key 0
          R"(PushGlobalInNamespace "KevDICOM.Data" "")", R"(PushString "ID")", "PushInteger 7",
          R"(PushString "d")", "GlobalGet 3 0", "PopWideString -> 2 units", R"(PushGlobal "KevDICOM.Data")",
          R"(PushString "ID")", "PushInteger 7", R"(PushString "d")", R"(PushString "0")",
          "GlobalOrder 4 1 1", "PopInteger -> 0", "PopString -> 0 bytes",
          // no further key, and the last block
          R"(PushGlobal "KevDICOM.Data")", R"(PushString "ID")", "PushInteger 0", R"(PushString "c")",
          "PushInteger 0", R"(PushString "1048592")", "GlobalOrder 5 1 1", "PopInteger -> 0",
          "PopString -> 0 bytes", R"(PushMethod 1 "Write" 1)", R"(PushString "\x10\x00\x10\x00PN\x02\x00AB")",
          "InvokeMethod 1", "ConvertResult 3 -> 0 bytes"));
}

// --- Elements ---

TEST_F(ComposeStream, WritesNothingForADataSetWithoutElements) {
  host_.Record(true);
  ExpectBytes(Compose(), "");
  EXPECT_THAT(host_.Calls(), Not(Contains(R"(PushMethod 1 "Write" 1)")));
}

TEST_F(ComposeStream, WritesLengthsAsTheVrAndTheSyntaxHaveThem) {
  data_.Top(0x00100010, 1, "PN", "Doe^John");
  data_.Top(0x00189445, 2, "OB", "xy");
  data_.Top(0x00204000, 3, "UT", "");
  data_.Top(0x7FE00009, 4, "OD", "12345678");  // a short length, as hosts have always met it
  ExpectBytes(Compose(kExplicitLittleEndian),
              "1000 1000 504E 0800 446F655E4A6F686E"
              "1800 4594 4F42 0000 02000000 7879"
              "2000 0040 5554 0000 00000000"
              "E07F 0900 4F44 0800 3132333435363738");
  ExpectBytes(Compose(kImplicitLittleEndian),
              "1000 1000 08000000 446F655E4A6F686E"
              "1800 4594 02000000 7879"
              "2000 0040 00000000"
              "E07F 0900 08000000 3132333435363738");
}

TEST_F(ComposeStream, WritesChunksInTheOrderOfTheirKeys) {
  data_.Top(0x00100010, 1, "PN", "ab");
  data_.Chunk(1, 10, "gh");
  data_.Chunk(1, 2, "ef");
  data_.Chunk(1, 1, "cd");
  ExpectBytes(Compose(), "1000 1000 504E 0800 6162 6364 6566 6768");
}

TEST_F(ComposeStream, TakesTheDictionarysVrForAnElementWithoutOne) {
  data_.Top(0x00100010, 1, "", "AB");
  data_.Top(0x00100020, 2, "", "AB");
  data_.Vr(2, "");  // a node without a value, as other hosts answer it
  ExpectBytes(Compose(), "1000 1000 504E 0200 4142 1000 2000 4C4F 0200 4142");
}

TEST_F(ComposeStream, LeavesNothingOnTheHostsStackForManyElementsWithoutVrs) {
  data_.TopSequence(0x00081140, 1);
  for (std::int64_t item = 1; item <= 1000; ++item) data_.InItem(1, item, 0x00100010, item + 1, "", "AB");
  ExpectSuccess(Compose());
  EXPECT_EQ(host_.StackDepth(), 0U);
}

TEST_F(ComposeStream, WritesTheDictionarysPlaceholdersAsTheyStand) {
  data_.Top(0x00280106, 1, "", "12");
  data_.Top(0x54000110, 2, "", "12");
  data_.Top(0xFFFEE00D, 3, "", "");
  ExpectBytes(Compose(),
              "2800 0601 5853 0200 3132"
              "0054 1001 4F58 0000 02000000 3132"
              "FEFF 0DE0 4E41 0000");
}

TEST_F(ComposeStream, WritesUnknownAndShortVrsAsTheyStand) {
  data_.Top(0x00100010, 1, "ZZ", "AB");
  data_.Top(0x00100020, 2, "P", "AB");
  data_.Top(0x00100030, 3, "DATE", "AB");  // the first two letters count
  ExpectBytes(Compose(), "1000 1000 5A5A 0200 4142 1000 2000 5000 0200 4142 1000 3000 4441 0200 4142");
}

TEST_F(ComposeStream, ReadsKeysAsDecimalTagsWithAll32Bits) {
  data_.LinkTop(std::string("none"), std::int64_t{1});
  data_.LinkTop(std::int64_t{2147483648}, std::int64_t{1});
  data_.LinkTop(std::int64_t{4294967295}, std::int64_t{1});
  data_.Vr(1, "LO");
  data_.Value(1, "AB");
  // The host orders numbers before other texts; a text without digits is the tag zero.
  ExpectBytes(Compose(), "0080 0000 4C4F 0200 4142 FFFF FFFF 4C4F 0200 4142 0000 0000 4C4F 0200 4142");
}

TEST_F(ComposeStream, WritesAnOddLengthAsItIsAndTheDecomposerRefusesIt) {
  data_.Top(0x00100010, 1, "PN", "ABC");
  ExpectBytes(Compose(), "1000 1000 504E 0300 414243");
  auto [stream, stream_oref] = Make<MemoryStream>(Written());
  auto [log, log_oref] = Make<EventLog>();
  ExpectFailure(
      Call("zfDecomposeStream",
           ListBuilder().Integer(stream_oref).String(kExplicitLittleEndian).Integer(log_oref).Integer(0)),
      u"DecomposeElement reading VR and data length: Datalength is an odd number -  decomposing stream");
}

// --- Sequences ---

TEST_F(ComposeStream, WritesAnEmptySequenceAsItsTagAndItsDelimiter) {
  data_.TopSequence(0x00081140, 1);
  ExpectBytes(Compose(), "0800 4011 5351 0000 FFFFFFFF FEFF DDE0 00000000");
  ExpectBytes(Compose(kImplicitLittleEndian), "0800 4011 FFFFFFFF FEFF DDE0 00000000");
}

TEST_F(ComposeStream, DelimitsItemsAndNestedSequences) {
  data_.TopSequence(0x00081140, 1);
  data_.InItem(1, 1, 0x00081150, 2, "UI", "1.");
  data_.SequenceInItem(1, 1, 0x00081199, 3);
  data_.InItem(3, 1, 0x7FE00010, 4, "OW", "abcd");  // not taken from a stream here
  data_.EmptyItem(1, 2);
  ExpectBytes(Compose(),
              "0800 4011 5351 0000 FFFFFFFF"
              "  FEFF 00E0 FFFFFFFF"
              "    0800 5011 5549 0200 312E"
              "    0800 9911 5351 0000 FFFFFFFF"
              "      FEFF 00E0 FFFFFFFF"
              "        E07F 1000 4F57 0000 04000000 61626364"
              "      FEFF 0DE0 00000000"
              "    FEFF DDE0 00000000"
              "  FEFF 0DE0 00000000"
              "  FEFF 00E0 FFFFFFFF"
              "  FEFF 0DE0 00000000"
              "FEFF DDE0 00000000");
}

TEST_F(ComposeStream, NestsAsDeepAsTheContentDoes) {
  constexpr std::int64_t kLevels = 100000;
  data_.TopSequence(0x00081140, 1);
  for (std::int64_t level = 1; level < kLevels; ++level)
    data_.SequenceInItem(level, 1, 0x00081140, level + 1);
  ExpectSuccess(Compose());
  EXPECT_EQ(Written().size(), static_cast<std::size_t>(kLevels * (12 + 8) + (kLevels - 1) * (8 + 8)));
}

// --- Byte order ---

TEST_F(ComposeStream, ReversesTheUnitsOfTheVrsThatHaveOne) {
  data_.Top(0x00280010, 1, "US", Hex("0102 0304"));
  data_.Top(0x00280011, 2, "OW", Hex("0102"));
  data_.Top(0x00280012, 3, "SL", Hex("01020304"));
  data_.Top(0x00280013, 4, "UL", Hex("01020304"));
  data_.Top(0x00280014, 5, "FL", Hex("01020304"));
  data_.Top(0x00280015, 6, "OF", Hex("01020304"));
  data_.Top(0x00280016, 7, "FD", Hex("0102030405060708"));
  ExpectBytes(Compose(kImplicitLittleEndian, kExplicitBigEndian),
              "2800 1000 04000000 0201 0403"
              "2800 1100 02000000 0201"
              "2800 1200 04000000 04030201"
              "2800 1300 04000000 04030201"
              "2800 1400 04000000 04030201"
              "2800 1500 04000000 04030201"
              "2800 1600 08000000 0807060504030201");
}

TEST_F(ComposeStream, CopiesSignedShortsTagsAndBytesUnswapped) {
  std::string expected;
  std::uint32_t tag = 0x00280020;
  std::int64_t node = 1;
  for (const char* const vr : {"SS", "AT", "OB", "UN", "OX", "LO", "XS"}) {
    data_.Top(tag, node, vr, Hex("01020304"));
    expected += dicom_bytes::TagAndLength(tag, 4) + Hex("01020304");
    ++tag;
    ++node;
  }
  ExpectSuccess(Compose(kImplicitLittleEndian, kExplicitBigEndian));
  EXPECT_EQ(Written(), expected);
}

TEST_F(ComposeStream, SwapsUnitsAcrossTheEndsOfChunksAndCopiesALastShortOne) {
  data_.Top(0x00280016, 1, "FD", Hex("01"));
  data_.Chunk(1, 1, Hex("0203"));
  data_.Chunk(1, 2, "");
  data_.Chunk(1, 3, Hex("04050607 0811121314151617"));
  data_.Chunk(1, 4, Hex("18 2122"));
  ExpectBytes(Compose(kImplicitLittleEndian, kExplicitBigEndian),
              "2800 1600 12000000 0807060504030201 1817161514131211 2122");
}

}  // namespace
}  // namespace emulator
