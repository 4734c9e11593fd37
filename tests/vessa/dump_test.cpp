#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/vessa/run_tool.h"
#include "tests/vessa/sample_data.h"

using testing::HasSubstr;
using testing::Not;

namespace {

constexpr const char* kExplicitSyntax = "1.2.840.10008.1.2.1";

ToolRun DumpDataSet(const std::string& bytes, const std::string& syntax = "explicit") {
  return RunTool({"dump", "--syntax", syntax, MakeFile("data_set", bytes)});
}

ToolRun DumpJson(const std::string& bytes, const std::string& syntax = "explicit") {
  return RunTool({"dump", "--json", "--syntax", syntax, MakeFile("data_set", bytes)});
}

TEST(Dump, ShowsMetaInformationAndDataSetAsATree) {
  const ToolRun run = RunTool({"dump", MakeFile("small.dcm", DicomFile(kExplicitSyntax, SmallDataSet()))});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(run.errors, "");
  EXPECT_EQ(run.output,
            "(0002,0010) UI TransferSyntaxUID                           20  1.2.840.10008.1.2.1\n"
            "(0008,1140) SQ ReferencedImageSequence                     48\n"
            "  item 1  16\n"
            "    (0008,1150) UI ReferencedSOPClassUID                    8  1.2.3.4\n"
            "  item 2  16\n"
            "    (0008,1150) UI ReferencedSOPClassUID                    8  1.2.3.4\n"
            "(0010,0010) PN PatientName                                  8  Doe^John\n");
}

TEST(Dump, RemovesThePaddingOfTheTransferSyntax) {
  const std::string file = DicomFile("1.2.840.10008.1.2", kImplicit.Element(0x00100010, "PN", "Doe^John"));
  const ToolRun run = RunTool({"dump", MakeFile("implicit.dcm", file)});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.output, HasSubstr("Doe^John"));
}

TEST(Dump, AsksForTheSyntaxOfAFileThatNamesNone) {
  const ToolRun run = RunTool({"dump", MakeFile("bare", SmallDataSet())});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("name the transfer syntax with --syntax"));
  EXPECT_EQ(run.output, "");
}

TEST(Dump, TakesTheSyntaxOfTheCommandLineOverThatOfTheFile) {
  const std::string file = DicomFile("1.2.840.10008.1.2", SmallDataSet());
  EXPECT_EQ(RunTool({"dump", "--syntax", kExplicitSyntax, MakeFile("wrong.dcm", file)}).exit_code, 0);
}

TEST(Dump, PrintsTheLibrarysFailureWithOffsetAndPath) {
  const std::string odd = kExplicit.Element(0x00081150, "UI", "1.2");
  const std::string data_set = kExplicit.UndefinedSequence(0x00081140, dicom_bytes::UndefinedItem(odd));
  const ToolRun run = DumpDataSet(data_set);
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors,
              HasSubstr("DecomposeElement reading VR and data length: Datalength is an odd number -  "
                        "decomposing stream\n"));
  EXPECT_THAT(run.errors,
              HasSubstr("at offset 28, in (0008,1140) item 1\n"));  // behind the header of the UID
  EXPECT_THAT(run.output, HasSubstr("item 1"));                     // what was read before
}

TEST(Dump, ShowsTheElementWhoseValueIsCut) {
  const std::string whole = kExplicit.Element(0x00100010, "PN", "Doe^John");
  const ToolRun run = DumpDataSet(whole.substr(0, whole.size() - 4));
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.output, HasSubstr("(0010,0010) PN PatientName"));
  EXPECT_THAT(run.errors, HasSubstr("at offset 12, where the data end, in (0010,0010)\n"));
}

TEST(Dump, NeverSendsControlCharactersToTheTerminal) {
  const std::string value =
      "a\x1B[2J\x07\x7F\x9B"
      "b\\c ";
  const ToolRun run = DumpDataSet(kExplicit.Element(0x00100020, "LO", value));
  EXPECT_THAT(run.output, HasSubstr("a\\x1B[2J\\x07\\x7F\\x9Bb\\c\n"));
  const ToolRun in_utf8 =
      DumpDataSet(kExplicit.Element(0x00080005, "CS", "ISO_IR 192") + kExplicit.Element(0x00100020, "LO",
                                                                                        "\xC3\xA9\xC2\x9B"
                                                                                        "31m!"));
  EXPECT_THAT(in_utf8.output, HasSubstr("\xC3\xA9\\xC2\\x9B31m!\n"));
}

TEST(Dump, ShowsBytesOfAVrThatAreNoLetters) {
  const ToolRun run =
      DumpDataSet(std::string("\x10\x00\x20\x00\x1B[\x02\x00"
                              "ab",
                              10));
  EXPECT_THAT(run.output, HasSubstr("\\x1B["));
  EXPECT_THAT(run.output, Not(HasSubstr("\x1B")));
}

TEST(Dump, ShowsNumbersTagsAndBytes) {
  using dicom_bytes::Hex;
  const ToolRun run = DumpDataSet(kExplicit.Element(0x00189345, "FD", Hex("000000000000F83F")) +
                                  kExplicit.Element(0x00280009, "AT", Hex("1800 6310")) +
                                  kExplicit.Element(0x00280010, "US", Hex("0001")) +
                                  kExplicit.Element(0x00281101, "SS", Hex("FFFF 0200")) +
                                  kExplicit.Element(0x7FE00010, "OB", Hex("00FF1B80")));
  EXPECT_THAT(run.output, HasSubstr("  1.5\n"));
  EXPECT_THAT(run.output, HasSubstr("  (0018,1063)\n"));
  EXPECT_THAT(run.output, HasSubstr("  256\n"));
  EXPECT_THAT(run.output, HasSubstr("  -1\\2\n"));
  EXPECT_THAT(run.output, HasSubstr("  00FF1B80\n"));
}

TEST(Dump, CutsLinesToTheWidthAskedFor) {
  const std::string name = kExplicit.Element(0x00100010, "PN", std::string(200, 'n'));
  const ToolRun run = RunTool({"dump", "--syntax", "explicit", "--width", "100", MakeFile("long", name)});
  EXPECT_EQ(run.output.find('\n'), 102U);  // the ellipsis is one column and three bytes
  EXPECT_EQ(DumpDataSet(name).output.size(), 263U + 1U);
}

TEST(Dump, ShowsFragmentsOfPixelData) {
  const std::string fragments = dicom_bytes::Item("") + dicom_bytes::Item("abcd");
  const ToolRun run = DumpDataSet(kExplicit.Fragments("OB", fragments), dicom_bytes::kJpegBaseline);
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.output, HasSubstr("undefined\n  offset table"));
  EXPECT_THAT(run.output,
              HasSubstr("  fragment 1                                                4  61626364\n"));
}

/// A data set deflated by hand: one last block that is stored, not compressed (RFC 1951 section 3.2.4).
std::string Deflated(const std::string& data_set) {
  const std::uint32_t length = dicom_bytes::LengthOf(data_set);
  return DicomFile("1.2.840.10008.1.2.1.99", "\x01" + dicom_bytes::Number16(length) +
                                                 dicom_bytes::Number16(length ^ 0xFFFFU) + data_set);
}

TEST(DumpDeflated, InflatesTheDataSetForTheLibrary) {
  const ToolRun run = RunTool({"dump", MakeFile("deflated.dcm", Deflated(SmallDataSet()))});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.output,
              HasSubstr("(0010,0010) PN PatientName                                  8  Doe^John\n"));
}

TEST(DumpDeflated, StopsAtTheLimitOfItsOutput) {
  const std::string file = MakeFile("deflated.dcm", Deflated(SmallDataSet()));
  const std::string size = std::to_string(SmallDataSet().size());
  EXPECT_EQ(RunTool({"dump", "--max-output", size, file}).exit_code, 0);
  const ToolRun run = RunTool({"dump", "--max-output", "20", file});
  EXPECT_EQ(run.exit_code, 3);
  EXPECT_THAT(run.errors, HasSubstr("more than 20 bytes, the limit of --max-output"));
}

TEST(DumpDeflated, SaysWhenTheCompressedDataAreCutOrCorrupt) {
  const std::string whole = Deflated(SmallDataSet());
  const ToolRun cut = RunTool({"dump", MakeFile("cut.dcm", whole.substr(0, whole.size() - 1))});
  EXPECT_EQ(cut.exit_code, 3);
  EXPECT_THAT(cut.errors, HasSubstr("deflated data set: it ends too early"));
  const ToolRun corrupt =
      RunTool({"dump", MakeFile("corrupt.dcm", DicomFile("1.2.840.10008.1.2.1.99", "\x07"))});
  EXPECT_EQ(corrupt.exit_code, 3);
  EXPECT_THAT(corrupt.errors, HasSubstr("deflated data set: it is corrupt"));
}

TEST(DumpJson, HasTheMembersOfTheModel) {
  using dicom_bytes::Hex;
  const ToolRun run = DumpJson(SmallDataSet() + kExplicit.Element(0x00101030, "DS", "70.50 ") +
                               kExplicit.Element(0x00101040, "LO", "") +
                               kExplicit.Element(0x00280009, "AT", Hex("1800 6310")) +
                               kExplicit.Element(0x00280010, "US", Hex("0001")) +
                               kExplicit.Element(0x7FE00010, "OB", Hex("00FF1B80")));
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_EQ(run.output, R"({
  "00081140": {"vr": "SQ", "Value": [{
    "00081150": {"vr": "UI", "Value": ["1.2.3.4"]}
  }, {
    "00081150": {"vr": "UI", "Value": ["1.2.3.4"]}
  }]},
  "00100010": {"vr": "PN", "Value": [{"Alphabetic":"Doe^John"}]},
  "00101030": {"vr": "DS", "Value": [70.50]},
  "00101040": {"vr": "LO"},
  "00280009": {"vr": "AT", "Value": ["00181063"]},
  "00280010": {"vr": "US", "Value": [256]},
  "7FE00010": {"vr": "OB", "InlineBinary": "AP8bgA=="}
}
)");
}

TEST(DumpJson, GivesPlaceholdersOfImplicitSyntaxesTheirVr) {
  using dicom_bytes::Hex;
  const std::string value = kImplicit.Element(0x00280106, "", Hex("FFFF"));
  const std::string pixels = kImplicit.Element(0x7FE00010, "", Hex("0102"));
  const auto with = [&](const char* bits, const char* representation) {
    return DumpJson(kImplicit.Element(0x00280100, "", Hex(bits)) +
                        kImplicit.Element(0x00280103, "", Hex(representation)) + value + pixels,
                    "implicit")
        .output;
  };
  EXPECT_THAT(with("1000", "0000"), HasSubstr(R"("00280106": {"vr": "US", "Value": [65535]})"));
  EXPECT_THAT(with("1000", "0000"), HasSubstr(R"("7FE00010": {"vr": "OW")"));
  EXPECT_THAT(with("0800", "0100"), HasSubstr(R"("00280106": {"vr": "SS", "Value": [-1]})"));
  EXPECT_THAT(with("0800", "0100"), HasSubstr(R"("7FE00010": {"vr": "OB")"));
}

TEST(DumpJson, LeavesOutGroupLengthsAndMetaInformation) {
  const std::string data_set =
      kExplicit.Element(0x00100000, "UL", dicom_bytes::Number32(16)) + SmallDataSet();
  const ToolRun run =
      RunTool({"dump", "--json", MakeFile("small.dcm", DicomFile(kExplicitSyntax, data_set))});
  EXPECT_THAT(run.output, Not(HasSubstr("00100000")));
  EXPECT_THAT(run.output, Not(HasSubstr("00020010")));
}

TEST(DumpJson, IsValidForAnEmptyDataSet) { EXPECT_EQ(DumpJson("").output, "{}\n"); }

TEST(DumpJson, KeepsBytesThatAreNoValuesOfTheirVr) {
  const ToolRun run = DumpJson(kExplicit.Element(0x00280010, "UL", "ab"));
  EXPECT_THAT(run.output, HasSubstr(R"("00280010": {"vr": "UN", "InlineBinary": "YWI="})"));
}

TEST(DumpJson, WritesNumbersThatJsonHasNotAsText) {
  using dicom_bytes::Hex;
  const ToolRun run = DumpJson(kExplicit.Element(0x00101030, "DS", "+07\\.5\\x") +
                               kExplicit.Element(0x00189345, "FD", Hex("000000000000F07F")));
  EXPECT_THAT(run.output, HasSubstr(R"("Value": [7,0.5,"x"])"));
  EXPECT_THAT(run.output, HasSubstr(R"("Value": ["inf"])"));
}

}  // namespace
