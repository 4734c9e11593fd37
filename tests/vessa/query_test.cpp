#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/vessa/run_tool.h"
#include "tests/vessa/sample_data.h"

using testing::EndsWith;
using testing::HasSubstr;

namespace {

constexpr const char* kExplicitSyntax = "1.2.840.10008.1.2.1";
constexpr const char* kImplicitSyntax = "1.2.840.10008.1.2";

std::string SmallFile() { return MakeFile("small.dcm", DicomFile(kExplicitSyntax, SmallDataSet())); }

std::string ImplicitFile() {
  return MakeFile("implicit.dcm",
                  DicomFile(kImplicitSyntax, kImplicit.Element(0x00100010, "PN", "Doe^John")));
}

std::string ReadAll(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

TEST(Query, PrintsOneValueAlone) {
  const ToolRun run = RunTool({"query", SmallFile(), "PatientName"});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_EQ(run.output, "Doe^John\n");
}

TEST(Query, NamesTheReferenceWhenThereAreSeveral) {
  const ToolRun run =
      RunTool({"query", SmallFile(), "PatientName", "PatientID", "ReferencedImageSequence[2].(0008,1150)"});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_EQ(run.output, "PatientName\tDoe^John\nReferencedImageSequence[2].(0008,1150)\t1.2.3.4\n");
}

TEST(Query, FindsTheSameThroughAStreamAndThroughTheFilesName) {
  for (const char* const through : {"stream", "file"}) {
    EXPECT_EQ(RunTool({"query", "--through", through, SmallFile(), "PatientName"}).output, "Doe^John\n");
    EXPECT_EQ(RunTool({"query", "--through", through, SmallFile(), "TransferSyntaxUID"}).output,
              "1.2.840.10008.1.2.1\n");
  }
}

TEST(Query, SaysThatAFileOfTwoVrFormsCannotBeQueriedByItsName) {
  const ToolRun run = RunTool({"query", "--through", "file", ImplicitFile(), "PatientName"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(run.output, "Doe^John\n");
  EXPECT_THAT(run.errors, HasSubstr("group 0002 has explicit VRs and the data set has none"));
}

TEST(Query, PrintsNothingForWhatIsNotThere) {
  const ToolRun run = RunTool({"query", SmallFile(), "PatientID"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(run.output + run.errors, "");
}

TEST(Query, PrintsNothingForWhatIsNotInGroup0002WhateverFollowsIt) {
  const std::string not_readable = "\x63\x64\x60\x60 deflated bytes, or any other";
  for (const char* const syntax : {kImplicitSyntax, "1.2.840.10008.1.2.1.99", "1.2.840.10008.1.2.2"}) {
    const std::string file = MakeFile("other-syntax.dcm", DicomFile(syntax, not_readable));
    const ToolRun absent = RunTool({"query", file, "(0002,0102)"});
    EXPECT_EQ(absent.exit_code, 0) << syntax;
    EXPECT_EQ(absent.output + absent.errors, "") << syntax;
    EXPECT_EQ(RunTool({"query", file, "TransferSyntaxUID"}).output, std::string(syntax) + "\n");
    EXPECT_EQ(RunTool({"query", "--through", "file", file, "(0002,0102)"}).exit_code, 0) << syntax;
  }
}

TEST(Query, FindsWhatLiesInFrontOfDamageInGroup0002) {
  const std::string cut = std::string(128, '\0') + "DICM" + kExplicit.Element(0x00020012, "UI", "1.2.3.44") +
                          kExplicit.Header(0x00020102, "OB", 100);
  EXPECT_EQ(RunTool({"query", MakeFile("cut-meta.dcm", cut), "ImplementationClassUID"}).output, "1.2.3.44\n");
}

TEST(Query, PrintsTextOfGroup0002WhateverTheDataSetIs) {
  const std::string meta = kExplicit.Element(0x00020010, "UI", "1.2.840.10008.1.2.2 ") +
                           kExplicit.Element(0x00020013, "SH", "VERSION1");
  const std::string file =
      MakeFile("big-endian.dcm", std::string(128, '\0') + "DICM" + meta + "not readable");
  const ToolRun run = RunTool({"query", file, "ImplementationVersionName"});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_EQ(run.output, "VERSION1\n");
}

TEST(Query, PrintsTextWhoseCharacterSetCannotBeRead) {
  const std::string damage = kExplicit.Header(0x00041200, "UL", 3);
  const std::string file = MakeFile("damage", kExplicit.Element(0x00041130, "LO", "MY DISC ") + damage);
  const ToolRun run = RunTool({"query", "--syntax", "explicit", file, "FileSetID"});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_EQ(run.output, "MY DISC\n");
}

TEST(Query, ReadsTextInTheCharacterSetOfTheItemAroundIt) {
  const std::string greek =
      kExplicit.Element(0x00080005, "CS", "ISO_IR 126") + kExplicit.Element(0x00100010, "PN", "\xC4\xE9");
  const std::string file = MakeFile("greek", kExplicit.Element(0x00080005, "CS", "ISO_IR 100") +
                                                 kExplicit.Sequence(0x00081140, dicom_bytes::Item(greek)) +
                                                 kExplicit.Element(0x00100010, "PN", "\xC4\xE9"));
  const ToolRun run = RunTool({"query", "--syntax", "explicit", "--raw", file,
                               "ReferencedImageSequence[1].PatientName", "PatientName"});
  EXPECT_EQ(run.output, "\xC4\xE9\xC4\xE9");
  EXPECT_EQ(RunTool({"query", "--syntax", "explicit", file, "ReferencedImageSequence[1].PatientName"}).output,
            "Δι\n");
  EXPECT_EQ(RunTool({"query", "--syntax", "explicit", file, "PatientName"}).output, "Äé\n");
}

/// Smallest Image Pixel Value -2, or 65534, of a data set in implicit VR.
std::string SmallestPixel(std::uint32_t pixel_representation, const std::string& around = {}) {
  return around + kImplicit.Element(0x00280103, "US", dicom_bytes::Number16(pixel_representation)) +
         kImplicit.Element(0x00280106, "US", dicom_bytes::Number16(0xFFFE));
}

TEST(Query, ResolvesWhatTheDictionaryOfImplicitVrsLeavesOpen) {
  const std::string reference = "SmallestImagePixelValue";
  const std::string is_signed = MakeFile("signed", SmallestPixel(1));
  EXPECT_EQ(RunTool({"query", "--syntax", "implicit", is_signed, reference}).output, "-2\n");
  EXPECT_EQ(
      RunTool({"query", "--syntax", "implicit", MakeFile("unsigned", SmallestPixel(0)), reference}).output,
      "65534\n");
  EXPECT_EQ(RunTool({"query", "--syntax", "implicit", "--json", is_signed, reference}).output,
            "{\"reference\":\"SmallestImagePixelValue\",\"vr\":\"SS\",\"Value\":[-2]}\n");
}

TEST(Query, ResolvesByWhatTheItemAroundTheAnswerSays) {
  const std::string item = kImplicit.Sequence(0x00081140, dicom_bytes::Item(SmallestPixel(0)));
  const std::string file = MakeFile("unsigned-item", SmallestPixel(1, item));
  const ToolRun run = RunTool({"query", "--syntax", "implicit", file, "SmallestImagePixelValue",
                               "ReferencedImageSequence[1].SmallestImagePixelValue"});
  EXPECT_EQ(run.output,
            "SmallestImagePixelValue\t-2\nReferencedImageSequence[1].SmallestImagePixelValue\t65534\n");
}

TEST(Query, NamesTheVrOfPixelDataByItsBits) {
  for (const auto& [bits, vr] : {std::pair{8U, "OB"}, std::pair{16U, "OW"}}) {
    const std::string file =
        MakeFile("pixel", kImplicit.Element(0x00280100, "US", dicom_bytes::Number16(bits)) +
                              kImplicit.Element(0x7FE00010, "OW", "ab"));
    EXPECT_EQ(RunTool({"query", "--syntax", "implicit", "--json", file, "PixelData"}).output,
              std::string(R"({"reference":"PixelData","vr":")") + vr + R"(","InlineBinary":"YWI="})" + "\n");
  }
}

TEST(Query, FailsForWhatIsRequiredAndNotThere) {
  const ToolRun run = RunTool({"query", "--require", SmallFile(), "PatientID"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, HasSubstr("no PatientID"));
}

TEST(Query, AsksForEachReferenceWhateverBecameOfTheOthers) {
  const std::string data_set = kExplicit.Element(0x00100010, "PN", "Doe^John") +
                               kExplicit.Element(0x00282000, "OB", std::string(40000, 'x')) +
                               kExplicit.Element(0x7FE00010, "OB", "ab");
  const ToolRun run =
      RunTool({"query", "--require", MakeFile("long.dcm", DicomFile(kExplicitSyntax, data_set)), "PatientID",
               "PatientName", "ICCProfile", "(0010", "PixelData"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(run.output, "PatientName\tDoe^John\nPixelData\t2 bytes: 6162\n");
  EXPECT_THAT(run.errors, HasSubstr("vessa: PatientID: " + PathOf("long.dcm") + ": no PatientID\n"));
  EXPECT_THAT(run.errors, HasSubstr("vessa: ICCProfile: "));
  EXPECT_THAT(run.errors, HasSubstr("Data is too long to be returned"));
  EXPECT_THAT(run.errors, HasSubstr("vessa: (0010: "));
}

TEST(Query, EndsWithTheWorstOutcome) {
  const std::string meta = kExplicit.Element(0x00020013, "SH", "VERSION1");
  const std::string file = MakeFile("no-syntax.dcm", std::string(128, '\0') + "DICM" + meta);
  const ToolRun run =
      RunTool({"query", "--require", file, "PatientName", "ImplementationVersionName", "(0002,0102)"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(run.output, "ImplementationVersionName\tVERSION1\n");
  EXPECT_THAT(run.errors, HasSubstr("vessa: PatientName: "));
  EXPECT_THAT(run.errors, HasSubstr("no (0002,0102)"));
}

TEST(Query, CountsAFileWithAFailureAmongManyAndPrintsWhatItFound) {
  const ToolRun run = RunTool({"query", "--require", "-e", "PatientID", "-e", "PatientName",
                               MakeFile("first.dcm", DicomFile(kExplicitSyntax, SmallDataSet())),
                               MakeFile("second.dcm", DicomFile(kExplicitSyntax, SmallDataSet()))});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(run.output, PathOf("first.dcm") + ": PatientName\tDoe^John\n" + PathOf("second.dcm") +
                            ": PatientName\tDoe^John\n");
  EXPECT_THAT(run.errors, HasSubstr("second.dcm: no PatientID"));
  EXPECT_THAT(run.errors, HasSubstr("0 of 2 files; 2 failed: 2 in the library"));
}

TEST(Query, EndsWithTheSameExitCodeWhenTraced) {
  const ToolRun run = RunTool({"trace", "-c", "query", "--require", SmallFile(), "PatientID"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, HasSubstr("no PatientID"));
}

TEST(Items, AsksForEachReferenceWhateverBecameOfTheOthers) {
  const ToolRun run = RunTool({"items", SmallFile(), "PatientName[]", "ReferencedImageSequence[1]"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(run.output, "ReferencedImageSequence[1]\t2\n");
  EXPECT_THAT(run.errors, HasSubstr("vessa: PatientName[]: Element is not a sequence"));
}

TEST(Query, PrintsJson) {
  EXPECT_EQ(RunTool({"query", "--json", SmallFile(), "PatientName"}).output,
            "{\"reference\":\"PatientName\",\"vr\":\"PN\",\"Value\":[{\"Alphabetic\":\"Doe^John\"}]}\n");
}

TEST(Query, ShowsBytesInHexadecimalBehindTheirNumber) {
  const std::string file =
      MakeFile("bytes", kExplicit.Element(0x00282000, "OB", std::string("\x01\x00\xFF\x7F", 4)));
  EXPECT_EQ(RunTool({"query", "--syntax", "explicit", file, "ICCProfile"}).output, "4 bytes: 0100FF7F\n");
  EXPECT_EQ(RunTool({"query", "--syntax", "explicit", "--json", file, "ICCProfile"}).output,
            "{\"reference\":\"ICCProfile\",\"vr\":\"OB\",\"InlineBinary\":\"AQD/fw==\"}\n");
  EXPECT_EQ(RunTool({"query", "--syntax", "explicit", "--raw", file, "ICCProfile"}).output,
            std::string("\x01\x00\xFF\x7F", 4));
}

TEST(Query, WritesALongValueWholeToAFile) {
  const std::string pixels(100000, 'x');
  const std::string file = MakeFile("pixels", kExplicit.Element(0x7FE00010, "OW", pixels));
  const ToolRun cut = RunTool({"query", "--syntax", "explicit", file, "PixelData"});
  EXPECT_EQ(cut.exit_code, 1);
  EXPECT_THAT(cut.errors, HasSubstr("Data is too long to be returned"));
  EXPECT_THAT(cut.errors, HasSubstr("with --out FILE a value of any length"));
  const std::string out = PathOf("pixels.raw");
  const ToolRun run = RunTool({"query", "--syntax", "explicit", "--out", out, file, "PixelData"});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_EQ(ReadAll(out), pixels);
}

TEST(Query, SaysThatNoFileIsWrittenForWhatIsNotThere) {
  const std::string out = MakeFile("old.raw", "old");
  const ToolRun run = RunTool({"query", "--out", out, SmallFile(), "PatientID"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, HasSubstr("no PatientID; " + out + " is not written"));
  EXPECT_EQ(ReadAll(out), "old");
}

TEST(Query, RefusesOptionsThatContradictEachOther) {
  const std::string out = PathOf("refused.raw");
  for (const std::vector<std::string>& options : {std::vector<std::string>{"--json", "--raw"},
                                                  {"--json", "--out", out},
                                                  {"--raw", "--out", out},
                                                  {"--through", "stream", "--out", out}}) {
    std::vector<std::string> words{"query", SmallFile(), "PatientName"};
    words.insert(words.end(), options.begin(), options.end());
    const ToolRun run = RunTool(words);
    EXPECT_EQ(run.exit_code, 2) << options.front();
    EXPECT_EQ(run.output, "");
    EXPECT_FALSE(std::filesystem::exists(out));
  }
}

TEST(Query, SaysWhatHelpsWhereALongValueCannotBeWritten) {
  const std::string data_set = kImplicit.Element(0x7FE00010, "OW", std::string(100000, 'x'));
  const std::string file = MakeFile("implicit-pixels", DicomFile("1.2.840.10008.1.2", data_set));
  const ToolRun run = RunTool({"query", "--out", PathOf("implicit-pixels.raw"), file, "PixelData"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, HasSubstr("vessa convert --syntax explicit"));
}

TEST(Query, RefusesToWriteFragmentsToAFileAndNamesWhatDoes) {
  const std::string fragments = dicom_bytes::Item("") + dicom_bytes::Item(std::string(40000, 'a')) +
                                dicom_bytes::Item(std::string(20000, 'b')) +
                                dicom_bytes::Item(std::string(40000, 'c'));
  const std::string pixels =
      kExplicit.Header(0x7FE00010, "OB", dicom_bytes::kUndefined) + fragments + dicom_bytes::SequenceEnd();
  const std::string file = MakeFile("fragments.dcm", DicomFile(dicom_bytes::kJpegBaseline, pixels));
  const std::string out = MakeFile("fragments.raw", "old");
  const ToolRun run = RunTool({"query", "--out", out, file, "PixelData"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("come in fragments"));
  EXPECT_THAT(run.errors, HasSubstr("nothing was written"));
  EXPECT_EQ(ReadAll(out), "old");
  EXPECT_THAT(run.errors, HasSubstr("vessa dump --json --bulk FOLDER FILE"));
  const std::string folder = PathOf("bulk fragments");
  EXPECT_EQ(RunTool({"dump", "--json", "--bulk", folder, file}).exit_code, 0);
  EXPECT_EQ(ReadAll(folder + "/000001-7FE00010.bin"), fragments);
}

TEST(Query, LetsASequenceAnswerWhenAsked) {
  EXPECT_EQ(RunTool({"query", SmallFile(), "ReferencedImageSequence"}).output, "");
  EXPECT_EQ(RunTool({"query", "--sequence", "--json", SmallFile(), "ReferencedImageSequence"}).output,
            "{\"reference\":\"ReferencedImageSequence\",\"vr\":\"SQ\"}\n");
}

TEST(Query, NamesNoPathForAFailureSinceNoEventsTellIt) {
  const std::string damage = dicom_bytes::Item(kExplicit.Header(0x00081150, "UI", 3));
  const std::string file = MakeFile("damaged-item", kExplicit.Sequence(0x00081140, damage));
  for (const auto& [command, reference] : {std::pair{"query", "ReferencedImageSequence[2].PatientName"},
                                           std::pair{"items", "ReferencedImageSequence[2]"}}) {
    const ToolRun run = RunTool({command, "--syntax", "explicit", file, reference});
    EXPECT_EQ(run.exit_code, 1);
    EXPECT_THAT(run.errors, EndsWith("at offset 28, where the data end\n"));
  }
}

TEST(Query, NamesNoPathForACallThatDoesNotReturn) {
  const std::string file = MakeFile("endless", EndlessDataSet());
  const ToolRun run = RunTool({"query", "--syntax", "explicit", "--timeout", "0.5", file, "PatientName"});
  EXPECT_EQ(run.exit_code, 124);
  EXPECT_THAT(run.errors, EndsWith("at offset 36, where the data end\n"));
}

TEST(Query, PointsAtTheCharacterThatIsWrong) {
  const ToolRun run = RunTool({"query", SmallFile(), "(0010,001G)"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, HasSubstr("Expected hex digit at offset 10"));
  EXPECT_THAT(run.errors, HasSubstr("  (0010,001G)\n           ^"));
}

TEST(Items, PrintsTheNumbersToTheEnd) {
  EXPECT_EQ(RunTool({"items", SmallFile(), "ReferencedImageSequence[]"}).output, "1\n2\n");
  EXPECT_EQ(RunTool({"items", SmallFile(), "ReferencedImageSequence[1]"}).output, "2\n");
  EXPECT_EQ(RunTool({"items", SmallFile(), "BeamSequence[]"}).output, "");
}

TEST(Parse, PrintsThePropertyList) {
  EXPECT_EQ(RunTool({"parse", "BeamSequence[2].BeamName"}).output,
            "(300A,00B0)  BeamSequence\n2\n(300A,00C2)  BeamName\n");
  EXPECT_EQ(RunTool({"parse", "BeamSequence[]"}).output, "(300A,00B0)  BeamSequence\n0\n");
}

TEST(Parse, FailsWithACaretUnderTheEndOfWhatIsCutOff) {
  const ToolRun run = RunTool({"parse", "(0010,0010"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, HasSubstr("  (0010,0010\n            ^"));
}

}  // namespace
