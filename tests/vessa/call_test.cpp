#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/vessa/run_tool.h"

using testing::HasSubstr;
using testing::StartsWith;

namespace {

TEST(Table, ListsTheRowsInTheirOrder) {
  const ToolRun run = RunTool({"table"});
  EXPECT_THAT(run.output, StartsWith(" 0  zfPLACEHOLDER                       Bz\n 1  zfTagInfo "));
  EXPECT_THAT(run.output, HasSubstr("14  zfBigHexToDecimal                   B\n"));
}

TEST(Tag, TakesTagsInTheirFormsAndKeywords) {
  const char* const expected = "(0010,0010)  PN  PatientName  1\n";
  for (const char* const name : {"0010,0010", "(0010,0010)", "00100010", "PatientName"}) {
    EXPECT_EQ(RunTool({"tag", name}).output, expected);
  }
}

TEST(Tag, SaysWhatTheDictionaryDoesNotHold) {
  const ToolRun run = RunTool({"tag", "0008,0004"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, HasSubstr("(0008,0004): not in the data dictionary"));
}

TEST(Call, PrintsTheResultListWithTypes) {
  EXPECT_EQ(RunTool({"call", "zfTagInfo", "i:0x00100010"}).output,
            "integer  0\nwide     \"(0010,0010)\"\nwide     \"PN\"\nwide     \"PatientName\"\nwide     "
            "\"1\"\nwide     \"\"\n");
  EXPECT_EQ(RunTool({"call", "zfNameTag", "s:PatientName"}).output, "integer  0\ninteger  1048592\n");
}

TEST(Call, TakesArgumentsOfEachType) {
  const char* const number = "integer  0\nwide     \"(0000,0002)\"\n";
  for (const char* const argument : {"i:2", "s:2", "w:2", "d:2.5", "n:25e-1", "hex:32"}) {
    EXPECT_THAT(RunTool({"call", "zfTagInfo", argument}).output, StartsWith(number)) << argument;
  }
  EXPECT_THAT(RunTool({"call", "zfTagInfo", "absent"}).output,
              StartsWith("integer  0\nwide     \"(0000,0000)\"\n"));
}

TEST(Call, EncodesArgumentsAsTheHostDoes) {
  const auto encoded = [](const char* argument) {
    return RunTool({"--library", kFaultyLibraryPath, "call", "echo", argument}).output;
  };
  const auto expected = [](const std::string& bytes) { return "integer  0\nstring   \"" + bytes + "\"\n"; };
  EXPECT_EQ(encoded("i:258"), expected("\\x04\\x04\\x02\\x01"));
  EXPECT_EQ(encoded("i:-2"), expected("\\x03\\x05\\xFE"));
  EXPECT_EQ(encoded("s:ab"), expected("\\x04\\x01ab"));
  EXPECT_EQ(encoded("w:ab"), expected("\\x06\\x02a\\x00b\\x00"));
  EXPECT_EQ(encoded("d:1"), expected("\\x0A\\x08\\x00\\x00\\x00\\x00\\x00\\x00\\xF0?"));
  EXPECT_EQ(encoded("n:5e-3"), expected("\\x04\\x06\\xFD\\x05"));
  EXPECT_EQ(encoded("hex:00Ff"), expected("\\x04\\x01\\x00\\xFF"));
  EXPECT_EQ(encoded("absent"), expected("\\x01"));
  EXPECT_EQ(encoded("l:[i:1,s:a\\,b]"), expected("\\x0A\\x01\\x03\\x04\\x01\\x05\\x01a,b"));
  EXPECT_EQ(encoded("l:[l:[s:\\]],i:0]"), expected("\\x09\\x01\\x05\\x01\\x03\\x01]\\x02\\x04"));
}

TEST(Call, RefusesArgumentsThatItCannotRead) {
  for (const char* const argument :
       {"i:", "i:1x", "d:x", "n:1e200", "hex:0", "hex:0G", "l:", "l:[", "l:[i]", "2"}) {
    const ToolRun run = RunTool({"call", "zfTagInfo", argument});
    EXPECT_EQ(run.exit_code, 2) << argument;
    EXPECT_THAT(run.errors, HasSubstr("expected")) << argument;
  }
}

TEST(Call, PrintsTheMessageOfAFailure) {
  const ToolRun run = RunTool({"call", "zfTagInfo"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(run.errors, "vessa:  VessaDCM::zfTagInfo: tag argument missing\n");
}

TEST(Call, NeverSendsControlCharactersToTheTerminal) {
  const ToolRun run = RunTool({"--library", kFaultyLibraryPath, "call", "terminal"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(run.errors, "vessa: a\\x1B[2J\\xC2\\x9Bb\n");
}

TEST(BigHex, PrintsDecimalOrFails) {
  EXPECT_EQ(RunTool({"bighex", std::string(32, 'F')}).output, "340282366920938463463374607431768211455\n");
  EXPECT_EQ(RunTool({"bighex", "0G"}).exit_code, 1);
}

TEST(Swap, SwapsUnitsAcrossTheBlocksOfTheHost) {
  std::string input;
  for (int number = 0; number < 100000; ++number) input.push_back(static_cast<char>(number % 251));
  std::string expected = input;
  for (std::size_t start = 0; start < expected.size(); start += 8) {
    for (std::size_t index = 0; index < 8; ++index) expected[start + index] = input[start + 7 - index];
  }
  const ToolRun run = RunTool({"swap", "8"}, input);
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_TRUE(run.output == expected);
}

TEST(Swap, TakesZerosIntoALastUnitThatIsCut) {
  EXPECT_EQ(RunTool({"swap", "4"}, "123456").output, std::string("4321\0\0", 6));
  EXPECT_EQ(RunTool({"swap", "2"}, "").output, "");
}

TEST(Swap, RefusesOtherUnits) {
  for (const char* const size : {"3", "0", "-2", "100000"})
    EXPECT_EQ(RunTool({"swap", size}, "123").exit_code, 1) << size;
}

TEST(Help, NamesEveryCommandAndShowsAnExampleOfEach) {
  const ToolRun all = RunTool({"--help"});
  EXPECT_EQ(all.exit_code, 0);
  for (const char* const command : {"table", "tag", "dump", "events", "call", "bighex", "swap"}) {
    EXPECT_THAT(all.output, HasSubstr(command));
    const ToolRun one = RunTool({command, "--help"});
    EXPECT_EQ(one.exit_code, 0);
    EXPECT_THAT(one.output, HasSubstr(std::string("\n  vessa ") + command));
  }
  EXPECT_THAT(RunTool({"--version"}).output, StartsWith("vessa "));
}

}  // namespace
