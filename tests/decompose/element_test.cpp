#include "tests/decompose/decomposition.h"

// Elements with values, at the top level.

namespace {

using dicom_bytes::Hex;
using dicom_bytes::kImplicitLittleEndian;
using dicom_bytes::Number16;

using Element = Decomposition;

TEST_F(Element, AnEmptyStreamHasNoEventsButStartAndEnd) {
  EXPECT_EQ(Decompose(""), kNoFailure);
  EXPECT_EQ(log_->Lines(), Script(R"(
    StartContent 1.2.840.10008.1.2.1
    EndContent)"));
}

TEST_F(Element, WithExplicitVr) {
  EXPECT_EQ(Decompose(Hex("10 00 10 00"              // (0010,0010)
                          "50 4E  08 00"             // PN, 8 bytes
                          "44 6F 65 5E 4A 6F 68 6E"  // Doe^John
                          )),
            kNoFailure);
  EXPECT_EQ(Events(), Script(R"(
    StartElement 00100010 PN 8
      Data 00100010 1 446F655E4A6F686E
    EndElement 00100010
    EndContent)"));
  EXPECT_EQ(Consumed(), 16);
}

TEST_F(Element, WithImplicitVrHasTheDictionarys) {
  EXPECT_EQ(Decompose(Hex("10 00 10 00"              // (0010,0010)
                          "08 00 00 00"              // 8 bytes
                          "44 6F 65 5E 4A 6F 68 6E"  // Doe^John
                          "E0 7F 10 00"              // (7FE0,0010), for which the dictionary has OB or OW
                          "02 00 00 00  01 02"),
                      kImplicitLittleEndian),
            kNoFailure);
  EXPECT_EQ(Events(), Script(R"(
    StartElement 00100010 PN 8
      Data 00100010 1 446F655E4A6F686E
    EndElement 00100010
    StartElement 7FE00010 OX 2
      Data 7FE00010 1 0102
    EndElement 7FE00010
    EndContent)"));
}

TEST_F(Element, UnknownAndPrivateTagsHaveVrsWithImplicitVr) {
  const std::string bytes = kImplicit.Element(0x00091001, "", "ab") +  // private element
                            kImplicit.Element(0x00090010, "", "cd") +  // private creator
                            kImplicit.Element(0x0008FFF0, "", "ef") +  // not in the dictionary
                            kImplicit.Element(0x60020010, "", "gh");   // member of a repeating group
  EXPECT_EQ(Decompose(bytes, kImplicitLittleEndian), kNoFailure);
  Lines starts;
  for (const std::string& line : Events()) {
    if (line.starts_with("StartElement")) starts.push_back(line);
  }
  EXPECT_EQ(starts, Script(R"(
    StartElement 00091001 UN 2
    StartElement 00090010 LO 2
    StartElement 0008FFF0 UN 2
    StartElement 60020010 US 2)"));
}

TEST_F(Element, OfLengthZeroHasOneChunkWithoutBytes) {
  EXPECT_EQ(Decompose(kExplicit.Element(0x00100010, "PN", "")), kNoFailure);
  EXPECT_EQ(Events(), Script(R"(
    StartElement 00100010 PN 0
      Data 00100010 1
    EndElement 00100010
    EndContent)"));
}

TEST_F(Element, AnyBytesPassThroughWhole) {
  EXPECT_EQ(Decompose(kExplicit.Element(0x00100010, "PN", Hex("00 41 00 FF 00 0A"))), kNoFailure);
  EXPECT_EQ(Events()[1], "Data 00100010 1 004100FF000A");
}

TEST_F(Element, LongLengthsFollowSevenVrs) {
  for (const std::string vr : {"OX", "OB", "OW", "OF", "SQ", "UT", "UN"}) {
    const std::string header = Hex("10 00 10 00") + vr + Hex("00 00  00 00 00 00");
    EXPECT_EQ(Decompose(header), kNoFailure);
    EXPECT_EQ(Events().front(), "StartElement 00100010 " + vr + " 0");
    EXPECT_EQ(Consumed(), 12);
  }
}

TEST_F(Element, ShortLengthsFollowEveryOtherVr) {
  for (const std::string vr : {"AE", "PN", "US", "AT", "OD", "OL", "OV", "UC", "UR", "SV", "UV", "ZZ", "  ",
                               "--", "ob", "NA", "XS"}) {
    const std::string header = Hex("10 00 10 00") + vr + Hex("04 00  61 62 63 64");
    EXPECT_EQ(Decompose(header), kNoFailure);
    EXPECT_EQ(Events().front(), "StartElement 00100010 " + vr + " 4");
    EXPECT_EQ(Consumed(), 12);
  }
}

// PS3.5 gives OD a 4-byte length. Read with a 2-byte one, the length is the reserved bytes, 0, and the stream
// derails: the real length is taken for a tag, the value for an element, and nothing tells.
TEST_F(Element, VrsOfLaterEditionsDerailTheStream) {
  EXPECT_EQ(Decompose(kExplicit.Element(0x7FE00009, "OD", "AB" + Number16(4) + "wxyz")), kNoFailure);
  EXPECT_EQ(Events(), Script(R"(
    StartElement 7FE00009 OD 0
      Data 7FE00009 1
    EndElement 7FE00009
    StartElement 00080000 AB 4
      Data 00080000 1 7778797A
    EndElement 00080000
    EndContent)"));
}

TEST_F(Element, AVrWithAZeroByteEndsThere) {
  EXPECT_EQ(Decompose(Hex("10 00 10 00  50 00 02 00  61 62"
                          "10 00 20 00  00 00 02 00  63 64")),
            kNoFailure);
  EXPECT_EQ(Events()[0], "StartElement 00100010 P 2");
  EXPECT_EQ(Events()[3], "StartElement 00100020  2");
}

TEST_F(Element, AnOddLengthFailsBeforeAnyEvent) {
  EXPECT_EQ(Decompose(kExplicit.Element(0x00100010, "PN", "Doe")),
            "DecomposeElement reading VR and data length: Datalength is an odd number");
  EXPECT_EQ(Events(), Lines());
  EXPECT_EQ(Decompose(kImplicit.Element(0x00100010, "PN", "Doe"), kImplicitLittleEndian),
            "DecomposeElement reading VR and data length: Datalength is an odd number");
  EXPECT_EQ(Events(), Lines());
}

TEST_F(Element, UndefinedLengthIsRefusedForMostVrs) {
  for (const std::string vr : {"UT", "OF", "OX"}) {
    EXPECT_EQ(Decompose(Hex("10 00 10 00") + vr + Hex("00 00  FF FF FF FF")),
              "DecomposeElement reading VR and data length: Element specifies undefined length but VR '" +
                  vr + "' does not allow it");
    EXPECT_EQ(Events(), Lines());
  }
  EXPECT_EQ(
      Decompose(Hex("10 00 10 00  FF FF FF FF"), kImplicitLittleEndian),
      "DecomposeElement reading VR and data length: Element specifies undefined length but VR 'PN' does "
      "not allow it");
  EXPECT_EQ(Decompose(Hex("10 00 10 00 50 4E FF FF")),
            "DecomposeElement reading VR and data length: Datalength is an odd number")
      << "2 bytes cannot say undefined";
}

TEST_F(Element, ALengthThatTheStreamDoesNotHoldFailsWhenTheBytesRunOut) {
  const std::string value = SomeBytes(40000);
  EXPECT_EQ(Decompose(kExplicit.Header(0x00100010, "UT", 0xFFFFFFFE) + value), kEndedTooEarly);
  EXPECT_EQ(log_->Lines().size(), 3U) << "StartContent, StartElement, one chunk";
  EXPECT_EQ(Consumed(), 40012);
}

TEST_F(Element, TagsNeedNoOrderAndMayRepeat) {
  const std::string bytes = kExplicit.Element(0x00200010, "SH", "") +
                            kExplicit.Element(0x00100010, "PN", "") +
                            kExplicit.Element(0x00100010, "PN", "") +
                            kExplicit.Element(0x00000002, "UI", "") + kExplicit.Element(0xFFFE1234, "UI", "");
  EXPECT_EQ(Decompose(bytes), kNoFailure);
  EXPECT_EQ(log_->Lines().size(), 2 + 5 * 3U);
}

TEST_F(Element, ZerosBehindTheDataSetAreElements) {
  EXPECT_EQ(Decompose(std::string(8, '\0')), kNoFailure);
  EXPECT_EQ(Events(), Script(R"(
    StartElement 00000000  0
      Data 00000000 1
    EndElement 00000000
    EndContent)"));
  EXPECT_EQ(Decompose(std::string(13, '\0')), kEndedTooEarly);
}

TEST_F(Element, AWholeFileIsTakenForElements) {
  // 128 zero bytes are 16 elements; "DICM" is then the tag (4944,4D43).
  EXPECT_EQ(Decompose(std::string(128, '\0') + "DICM" + Hex("02 00 00 00 55 4C 04 00 00 00 00 00")),
            kNoFailure);
  EXPECT_EQ(log_->Count(), 2 + 16 * 3 + 2 * 3U);
}

TEST_F(Element, TheDecompositionStartsWhereTheStreamStands) {
  const std::string bytes = "garbage" + kExplicit.Element(0x00100010, "PN", "ab");
  auto stream = std::make_shared<emulator::MemoryStream>(bytes);
  stream->MoveTo(8);
  vessa::CVessaBinaryInputStream input(Add(stream));
  input.Open();
  vessa::CContentHandler handler(log_oref_);
  EXPECT_EQ(vessa::StreamDecomposer(input, handler, client_oref_, false)
                .DecomposeStream(dicom_bytes::kExplicitLittleEndian),
            vessa::kSuccess);
  EXPECT_EQ(log_->Lines()[1], "StartElement 00100010 PN 2");
}

// --- Chunks

struct ChunkCase {
  std::size_t value_bytes;
  std::vector<std::size_t> chunk_bytes;
};

class Chunks : public Decomposition, public testing::WithParamInterface<ChunkCase> {};

TEST_P(Chunks, HoldAtMost32648BytesAndCountFromOne) {
  const std::string value = SomeBytes(GetParam().value_bytes);
  std::vector<std::string> chunks;
  log_->OnEvent([&](std::string_view event, std::span<const emulator::Value> arguments) {
    if (event != "Data") return;
    chunks.push_back(emulator::AsBytes(arguments[2]));
    EXPECT_EQ(emulator::AsInteger(arguments[1]), static_cast<std::int64_t>(chunks.size()));
  });
  EXPECT_EQ(Decompose(kExplicit.Element(0x00100010, "UT", value)), kNoFailure);
  std::string joined;
  std::vector<std::size_t> sizes;
  for (const std::string& chunk : chunks) {
    joined += chunk;
    sizes.push_back(chunk.size());
  }
  EXPECT_EQ(sizes, GetParam().chunk_bytes);
  EXPECT_EQ(joined, value);
}

INSTANTIATE_TEST_SUITE_P(Sizes, Chunks,
                         testing::Values(ChunkCase{2, {2}}, ChunkCase{32646, {32646}},
                                         ChunkCase{32648, {32648}}, ChunkCase{32650, {32648, 2}},
                                         ChunkCase{65296, {32648, 32648}},
                                         ChunkCase{65298, {32648, 32648, 2}}));

TEST_F(Element, AFragmentMayFillOneChunkAndAByte) {
  const std::string bytes = kExplicit.Fragments("OB", dicom_bytes::Item(SomeBytes(32649)));
  std::vector<std::size_t> sizes;
  log_->OnEvent([&](std::string_view event, std::span<const emulator::Value> arguments) {
    if (event == "Data") sizes.push_back(emulator::AsBytes(arguments[2]).size());
  });
  EXPECT_EQ(Decompose(bytes, dicom_bytes::kJpegBaseline), kNoFailure);
  EXPECT_EQ(sizes, (std::vector<std::size_t>{32648, 1, 0}));
}

// --- Transfer syntaxes

TEST_F(Element, UnsupportedSyntaxesAreRefusedBeforeAnyEvent) {
  for (const std::string syntax :
       {"1.2.840.10008.1.2.2", "1.2.840.10008.1.2.1 ", "1.2.3", "", "1.2.840.10008.1.2.4.49"}) {
    EXPECT_EQ(Decompose(kExplicit.Element(0x00100010, "PN", "ab"), syntax),
              "DecomposeStream: Expected a supported transfer syntax, got: " + syntax);
    EXPECT_EQ(log_->Lines(), Lines());
    EXPECT_EQ(Consumed(), 0);
  }
  const std::string padded("1.2.840.10008.1.2.1\0", 20);
  EXPECT_EQ(Decompose("", padded), "DecomposeStream: Expected a supported transfer syntax, got: " + padded);
}

TEST_F(Element, EncapsulatedAndDeflatedSyntaxesAreExplicit) {
  for (const std::string syntax :
       {"1.2.840.10008.1.2.1.99", "1.2.840.10008.1.2.4.50", "1.2.840.10008.1.2.5"}) {
    EXPECT_EQ(Decompose(kExplicit.Element(0x00100010, "PN", "ab"), syntax), kNoFailure);
    EXPECT_EQ(Events().front(), "StartElement 00100010 PN 2");
  }
  EXPECT_EQ(Decompose(kImplicit.Element(0x00100010, "PN", "ab"), "1.2.840.10008.1.20"), kNoFailure);
  EXPECT_EQ(Events().front(), "StartElement 00100010 PN 2");
}

}  // namespace
