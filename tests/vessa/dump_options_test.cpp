#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/vessa/run_tool.h"
#include "tests/vessa/sample_data.h"

using dicom_bytes::Hex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr const char* kExplicitSyntax = "1.2.840.10008.1.2.1";

ToolRun Dump(const std::vector<std::string>& options, const std::string& data_set,
             const std::string& syntax = "explicit") {
  std::vector<std::string> arguments{"dump", "--syntax", syntax, MakeFile("data_set", data_set)};
  arguments.insert(arguments.end(), options.begin(), options.end());
  return RunTool(arguments);
}

/// The offsets that the lines begin with.
std::vector<std::string> OffsetsIn(const std::string& output) {
  std::istringstream lines(output);
  std::vector<std::string> offsets;
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    words >> offsets.emplace_back();
  }
  return offsets;
}

TEST(DumpOffsets, AreThoseOfTheFile) {
  const ToolRun run =
      RunTool({"dump", "--offsets", MakeFile("small.dcm", DicomFile(kExplicitSyntax, SmallDataSet()))});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  // Behind 132 bytes: an 8-byte header with 20 bytes; 12 bytes of a sequence; twice an item with 16 bytes in it.
  EXPECT_EQ(OffsetsIn(run.output),
            (std::vector<std::string>{"132", "160", "172", "180", "196", "204", "220"}));
}

TEST(DumpOffsets, CountDelimitersAndFragments) {
  const std::string name = kExplicit.Element(0x00100010, "PN", "Doe^John");
  const std::string sequence = kExplicit.UndefinedSequence(0x00081140, dicom_bytes::UndefinedItem(name));
  const std::string pixels = kExplicit.Fragments("OB", dicom_bytes::Item("") + dicom_bytes::Item("abcd"));
  const std::string id = kExplicit.Element(0xFFFCFFFC, "OB", "");
  const ToolRun run = Dump({"--offsets"}, sequence + pixels + id, dicom_bytes::kJpegBaseline);
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_EQ(OffsetsIn(run.output), (std::vector<std::string>{"0", "12", "20", "52", "64", "72", "92"}));
}

TEST(DumpOffsets, AreThoseOfImplicitHeaders) {
  const std::string name = kImplicit.Element(0x00100010, "", "Doe^John");
  const ToolRun run =
      Dump({"--offsets"}, kImplicit.Sequence(0x00081140, dicom_bytes::Item(name)) + name, "implicit");
  EXPECT_EQ(OffsetsIn(run.output), (std::vector<std::string>{"0", "8", "16", "32"}));
}

TEST(DumpUntil, EndsBehindAnElement) {
  const std::string id = kExplicit.Element(0x00100020, "LO", "1234");
  EXPECT_THAT(Dump({"--until", "PatientName"}, SmallDataSet() + id).output, EndsWith("Doe^John\n"));
  EXPECT_THAT(Dump({"--until", "0008,1140"}, SmallDataSet() + id).output, EndsWith("1.2.3.4\n"));
  EXPECT_EQ(Dump({"--until", "NoSuchKeyword"}, id).exit_code, 2);
  EXPECT_EQ(Dump({"--json", "--until", "0008,0000"}, SmallDataSet()).output, "{}\n");
}

TEST(DumpHex, ShowsTheBytesOfEveryValue) {
  const ToolRun run = Dump({"--hex"}, kExplicit.Element(0x00100010, "PN", "Doe^John"));
  EXPECT_THAT(run.output, EndsWith("  446F655E4A6F686E\n"));
}

TEST(DumpTree, CutsNothingWhenNoTerminalReadsIt) {
  const ToolRun run = Dump({}, kExplicit.Element(0x00281201, "US", std::string(400, '\1')) +
                                   kExplicit.Element(0x00324000, "LT", std::string(9000, 'x')));
  EXPECT_THAT(run.output, HasSubstr(std::string(9000, 'x')));
  EXPECT_THAT(run.output, Not(HasSubstr("...")));
}

TEST(DumpTree, NamesTheVrOfTheDictionaryWhereAnotherIsEncoded) {
  EXPECT_THAT(Dump({}, kExplicit.Element(0x00100010, "UN", "Doe^John")).output,
              StartsWith("(0010,0010) UN/PN PatientName"));
  EXPECT_THAT(Dump({}, kExplicit.Element(0x00280106, "SS", "12")).output,
              StartsWith("(0028,0106) SS Smallest"));
}

TEST(DumpTree, NamesThePrivateCreators) {
  const std::string creator = kExplicit.Element(0x00290010, "LO", "SIEMENS CSA ");
  const std::string item = dicom_bytes::Item(kExplicit.Element(0x00291008, "CS", "B "));
  const ToolRun run =
      Dump({}, kExplicit.Element(0x00280010, "US", "12") + creator +
                   kExplicit.Element(0x00291008, "CS", "A ") + kExplicit.Sequence(0x00291140, item));
  EXPECT_THAT(run.output, HasSubstr("(0029,0010) LO (private creator)"));
  EXPECT_THAT(run.output, HasSubstr("(0029,1008) CS (SIEMENS CSA)  "));
  EXPECT_THAT(run.output, HasSubstr("(0029,1140) SQ (private)"));      // of another block
  EXPECT_THAT(run.output, HasSubstr("    (0029,1008) CS (private)"));  // an item reserves its own blocks
}

TEST(DumpKeepGoing, ClosesTheModelOfADamagedDataSet) {
  const std::string cut = kExplicit.Element(0x00081150, "UI", "1.2.3.4.5.6.").substr(0, 14);
  const ToolRun run = Dump({"--json", "--keep-going"},
                           kExplicit.Header(0x00081140, "SQ", dicom_bytes::kUndefined) +
                               dicom_bytes::TagAndLength(dicom_bytes::kItem, dicom_bytes::kUndefined) + cut);
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(run.output, R"({
  "00081140": {"vr": "SQ", "Value": [{
    "00081150": {"vr": "UI"}
  }]}
}
)");
  EXPECT_THAT(run.errors, HasSubstr("in (0008,1140) item 1 > (0008,1150)"));
}

TEST(DumpKeepGoing, DoesNotWaitForTheRestOfAnItem) {
  const ToolRun run = Dump({"--keep-going", "--timeout", "30"}, EndlessDataSet());
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.output, HasSubstr("1.2.3.4\n"));
  EXPECT_THAT(run.errors, HasSubstr("ends inside an item of defined length, where a call does not return"));
  EXPECT_THAT(run.errors, HasSubstr("at offset 36, where the data end, in (0008,1140) item 1"));
  EXPECT_EQ(Dump({"--keep-going"}, SmallDataSet()).exit_code, 0);
}

TEST(DumpBulk, WritesValuesOfBytesToFiles) {
  const std::string folder = PathOf("bulk values");
  const std::string data_set = kExplicit.Element(0x00100010, "PN", "Doe^John") +
                               kExplicit.Element(0x7FE00010, "OB", std::string(70000, 'p'));
  const ToolRun run = Dump({"--json", "--bulk", folder}, data_set);
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.output, HasSubstr("bulk%20values/000001-7FE00010.bin\"}"));
  std::ifstream file(std::filesystem::path(folder) / "000001-7FE00010.bin", std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), std::string(70000, 'p'));
}

TEST(DumpBulk, LeavesNoPartOfAValueThatIsCut) {
  const std::string folder = PathOf("bulk");
  const std::string whole = kExplicit.Element(0x7FE00010, "OB", std::string(70000, 'p'));
  EXPECT_EQ(Dump({"--json", "--bulk", folder}, whole.substr(0, 60000)).exit_code, 1);
  EXPECT_TRUE(std::filesystem::is_empty(folder));
  EXPECT_EQ(Dump({"--bulk", folder}, whole).exit_code, 2);  // without --json
  const ToolRun no_folder = Dump({"--json", "--bulk", MakeFile("file", "")}, whole);
  EXPECT_EQ(no_folder.exit_code, 4);
  EXPECT_THAT(no_folder.errors, HasSubstr("file"));
}

}  // namespace
