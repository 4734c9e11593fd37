#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/vessa/run_tool.h"
#include "tests/vessa/sample_data.h"

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr const char* kJpeg = "1.2.840.10008.1.2.4.50";

std::string ReadAll(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

std::string Fragments() {
  return kExplicit.Fragments("OB", dicom_bytes::Item("") + dicom_bytes::Item("abcd"));
}

/// As the library writes it: sequences and items of undefined length.
std::string SmallDataSetAsWritten(const dicom_bytes::DataSetBytes& form) {
  const std::string uid = form.Element(0x00081150, "UI", std::string("1.2.3.4\0", 8));
  return form.UndefinedSequence(0x00081140,
                                dicom_bytes::UndefinedItem(uid) + dicom_bytes::UndefinedItem(uid)) +
         form.Element(0x00100010, "PN", "Doe^John");
}

TEST(Convert, WritesTheDataSetInTheOtherForm) {
  const std::string input = MakeFile("in.dcm", DicomFile("1.2.840.10008.1.2.1", SmallDataSet()));
  const std::string output = PathOf("out.dcm");
  const ToolRun run = RunTool({"convert", input, output, "--syntax", "implicit", "--verify"});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_EQ(run.output, "");
  EXPECT_THAT(run.errors, HasSubstr("verified, 6 elements and items are as in the source"));
  EXPECT_THAT(ReadAll(output),
              StartsWith(std::string(128, '\0') + "DICM" + kExplicit.Header(0x00020000, "UL", 4)));
  EXPECT_THAT(ReadAll(output),
              HasSubstr(kExplicit.Element(0x00020010, "UI", std::string("1.2.840.10008.1.2\0", 18))));
  EXPECT_THAT(ReadAll(output), EndsWith(SmallDataSetAsWritten(kImplicit)));
}

TEST(Convert, TakesADataSetWithoutMetaInformation) {
  const std::string input = MakeFile("in.bin", SmallDataSet());
  const std::string output = PathOf("out.dcm");
  const ToolRun run =
      RunTool({"convert", input, output, "--input-syntax", "explicit", "--syntax", "explicit", "--verify"});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(ReadAll(output), EndsWith(SmallDataSetAsWritten(kExplicit)));
}

TEST(Convert, NamesTheOptionThatSaysTheSyntaxOfItsInput) {
  const ToolRun run =
      RunTool({"convert", MakeFile("in.bin", SmallDataSet()), PathOf("out.dcm"), "--syntax", "explicit"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("name the transfer syntax with --input-syntax UID"));
}

/// Nothing tells a private sequence from a value of VR UN where VRs are implicit.
TEST(Convert, NamesTheFileThatIsWrittenWhenTheLibraryCannotReadIt) {
  const std::string data_set =
      kExplicit.Element(0x00110010, "LO", "MINE") +
      kExplicit.UndefinedSequence(0x00111010,
                                  dicom_bytes::UndefinedItem(kExplicit.Element(0x00080018, "UI", "1.23"))) +
      kExplicit.Element(0x00200010, "SH", "1 ");
  const std::string input = MakeFile("in.dcm", DicomFile("1.2.840.10008.1.2.1", data_set));
  const std::string output = PathOf("refused.dcm");
  const ToolRun run = RunTool({"convert", input, output, "--syntax", "implicit", "--verify"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, StartsWith("vessa: " + output + ": DecomposeElement"));
  EXPECT_FALSE(std::filesystem::exists(output));
}

TEST(Convert, DeflatesADataSetThatTheToolInflatesAgain) {
  const std::string input = MakeFile("in.dcm", DicomFile("1.2.840.10008.1.2.1", SmallDataSet()));
  const std::string deflated = PathOf("deflated.dcm");
  const std::string output = PathOf("out.dcm");
  EXPECT_EQ(RunTool({"convert", input, deflated, "--syntax", "1.2.840.10008.1.2.1.99", "--verify"}).exit_code,
            0);
  EXPECT_THAT(ReadAll(deflated), Not(HasSubstr("Doe^John")));
  EXPECT_EQ(RunTool({"convert", deflated, output, "--syntax", "explicit", "--verify"}).exit_code, 0);
  EXPECT_THAT(ReadAll(output), EndsWith(SmallDataSetAsWritten(kExplicit)));
}

TEST(Convert, KeepsFragmentsInTheirOwnSyntaxOnly) {
  const std::string input = MakeFile("in.dcm", DicomFile(kJpeg, Fragments()));
  const std::string output = PathOf("jpeg.dcm");
  EXPECT_EQ(RunTool({"convert", input, output, "--syntax", kJpeg, "--verify"}).exit_code, 0);
  EXPECT_THAT(ReadAll(output), EndsWith(Fragments()));
  const ToolRun run = RunTool({"convert", input, PathOf("native.dcm"), "--syntax", "explicit"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors,
              HasSubstr("the pixel data are compressed, and stay so: only 1.2.840.10008.1.2.4.50"));
  EXPECT_FALSE(std::filesystem::exists(PathOf("native.dcm")));
}

TEST(Convert, RefusesFragmentsInsideOfItems) {
  const std::string input = MakeFile(
      "in.dcm",
      DicomFile(kJpeg, kExplicit.UndefinedSequence(0x00880200, dicom_bytes::UndefinedItem(Fragments()))));
  const ToolRun run = RunTool({"convert", input, PathOf("nested.dcm"), "--syntax", kJpeg});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("an item holds compressed pixel data"));
  EXPECT_FALSE(std::filesystem::exists(PathOf("nested.dcm")));
}

TEST(Convert, LeavesAnOlderFileAloneWhenItFails) {
  const std::string output = MakeFile("older.dcm", "older");
  const std::string input = MakeFile("in.dcm", DicomFile("1.2.840.10008.1.2.1", SmallDataSet() + "cut"));
  EXPECT_EQ(RunTool({"convert", input, output, "--syntax", "explicit"}).exit_code, 1);
  const std::string whole = MakeFile("in.dcm", DicomFile("1.2.840.10008.1.2.1", SmallDataSet()));
  const ToolRun run = RunTool({"convert", whole, output, "--syntax", "1.2.840.10008.1.2.2"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors,
              HasSubstr("ComposeStream: Expected a supported transfer syntax, got: 1.2.840.10008.1.2.2"));
  EXPECT_EQ(ReadAll(output), "older");
  EXPECT_FALSE(std::filesystem::exists(output + ".unfinished"));
}

TEST(Convert, NamesFilesThatItCannotUse) {
  const std::string input = MakeFile("in.dcm", DicomFile("1.2.840.10008.1.2.1", SmallDataSet()));
  const ToolRun missing = RunTool({"convert", PathOf("missing"), PathOf("out"), "--syntax", "explicit"});
  EXPECT_EQ(missing.exit_code, 3);
  EXPECT_THAT(missing.errors, HasSubstr("missing"));
  const ToolRun folder = RunTool({"convert", input, PathOf("no_folder/out"), "--syntax", "explicit"});
  EXPECT_EQ(folder.exit_code, 4);
  EXPECT_THAT(folder.errors, HasSubstr("no_folder"));
}

TEST(Convert, RefusesAnElementThatComesTwice) {
  const std::string name = kExplicit.Element(0x00100010, "PN", "X ");
  const std::string input = MakeFile("twice.dcm", DicomFile("1.2.840.10008.1.2.1", name + name));
  const ToolRun run = RunTool({"convert", input, PathOf("out"), "--syntax", "explicit"});
  EXPECT_EQ(run.exit_code, 4);
  EXPECT_THAT(run.errors, HasSubstr("twice.dcm: (0010,0010) comes twice"));
}

TEST(Deflate, MakesWhatInflateTakes) {
  const std::string bytes = std::string(100'000, 'x') + "end";
  const std::string input = MakeFile("plain", bytes);
  const std::string packed = PathOf("packed");
  const std::string output = PathOf("unpacked");
  for (const char* const level : {"-1", "0", "9"}) {
    EXPECT_EQ(RunTool({"deflate", "--level", level, input, packed}).exit_code, 0) << level;
    EXPECT_EQ(RunTool({"inflate", packed, output}).exit_code, 0) << level;
    EXPECT_EQ(ReadAll(output), bytes);
  }
}

TEST(Deflate, RefusesALevelThatZlibDoesNotKnow) {
  const ToolRun run = RunTool({"deflate", "--level", "10", MakeFile("plain", "x"), PathOf("level10")});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, HasSubstr("zfDeflateStream returned -1"));
  EXPECT_FALSE(std::filesystem::exists(PathOf("level10")));
}

TEST(Inflate, RefusesWhatIsNotCompressedOrTooLong) {
  const std::string input = MakeFile("plain", std::string(100'000, 'x'));
  EXPECT_EQ(RunTool({"inflate", input, PathOf("unpacked2")}).exit_code, 1);
  EXPECT_EQ(RunTool({"deflate", input, PathOf("packed")}).exit_code, 0);
  const ToolRun run = RunTool({"inflate", "--max-output", "1K", PathOf("packed"), PathOf("unpacked2")});
  EXPECT_EQ(run.exit_code, 3);
  EXPECT_THAT(run.errors, HasSubstr("it inflates to more than 1024 bytes, the limit of --max-output"));
  EXPECT_FALSE(std::filesystem::exists(PathOf("unpacked2")));
}

}  // namespace
