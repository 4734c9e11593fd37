#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/vessa/run_tool.h"
#include "tests/vessa/sample_data.h"

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

// Patterns keep to what GoogleTest's own and the system's expressions have in common: \w for digits, \S for numbers.

std::string SmallFile() { return MakeFile("small.dcm", DicomFile("1.2.840.10008.1.2.1", SmallDataSet())); }

std::string ContentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Records the dump of a small file under that name. Returns the path.
std::string RecordDump(const std::string& name) {
  const std::string path = PathOf(name);
  const ToolRun run = RunTool({"trace", "-o", path, "dump", SmallFile()});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_EQ(run.errors, "") << "the recording stands in place of the lines";
  return path;
}

TEST(Trace, PrintsCallsAndCallbacksWithArgumentsAnswersAndTimes) {
  const ToolRun run = RunTool({"trace", "dump", SmallFile()});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(run.output, RunTool({"dump", SmallFile()}).output)
      << "the command's own output is what it always is";
  EXPECT_THAT(run.errors, StartsWith("zfDecomposeStream i:1 s:\"1.2.840.10008.1.2.1\" i:2 i:3\n"
                                     "  PushProperty 1 \"Position\" <0.0"));
  EXPECT_THAT(run.errors, HasSubstr("\n  PushString \"Doe^John\" <"));
  EXPECT_THAT(run.errors, HasSubstr("\n  zfTagInfo i:1048592\n"));  // the host's own, made in an event
  EXPECT_THAT(run.errors, HasSubstr("\n  ConvertResult 1 -> 133 <"));
  EXPECT_THAT(run.errors, ContainsRegex("\n= 0 i:0 <\\w+\\.\\w\\w\\w\\w\\w\\w>\n"));
}

TEST(Trace, CountsCallbacksInPlaceOfThePrintedLines) {
  const ToolRun run = RunTool({"trace", "-c", "events", SmallFile()});
  EXPECT_THAT(run.errors, Not(HasSubstr("PushProperty 1")));
  EXPECT_THAT(run.errors, ContainsRegex("callback +calls +bytes +errors +seconds +share\n"));
  EXPECT_THAT(run.errors, ContainsRegex("PushProperty +2 +16 +0 +\\S+ +\\S+%\n"));
  EXPECT_THAT(run.errors, ContainsRegex("zfDecomposeStream +2 +\\w+ +0 +\\S+ +\\S+%\n"));
  EXPECT_THAT(run.errors, ContainsRegex("total +\\S+\n$"));
  const ToolRun failed = RunTool({"trace", "--count", "--inject", "Data:error=5", "events", SmallFile()});
  EXPECT_THAT(failed.errors, ContainsRegex("zfDecomposeStream +1 +\\w+ +1 +\\S+ +\\S+%\n"));
  EXPECT_THAT(failed.errors, ContainsRegex("InvokeMethod +\\w+ +0 +1 +\\S+ +\\S+%\n"));
}

TEST(Trace, InjectsFailuresWhereTheyAreAskedFor) {
  const auto traced = [](const std::string& fault) {
    return RunTool({"trace", "--inject", fault, "events", SmallFile()});
  };
  const ToolRun peek = traced("Peek:error=-3:when=2+");
  EXPECT_EQ(peek.exit_code, 1);
  EXPECT_THAT(peek.errors, HasSubstr("Callin error peeking bytes: -3 -  wrapping input stream"));
  EXPECT_THAT(traced("Data:error=5").errors, HasSubstr("Callin error calling method 'Data': 5"));
  EXPECT_THAT(traced("PushUnsigned:when=1:error=7").errors, HasSubstr("  PushUnsigned 131088 = 7 <"));
  EXPECT_EQ(traced("PushUnsigned:error=7:when=100000").exit_code, 0);
}

TEST(Trace, RefusesFaultsThatItCannotRead) {
  for (const char* const fault :
       {"", "Peek", "Peek:", "Peek:error=", "Peek:error=0", "Peek:error=x",
        "Peek:error=1:when=", "Peek:error=1:when=0", "Peek:error=1:when=5..2", "Peek:error=1:when=1+0",
        "Peek:error=1:when=1x", "Peek:error=1:often", "Pek:error=1"}) {
    const ToolRun run = RunTool({"trace", "--inject", fault, "table"});
    EXPECT_EQ(run.exit_code, 2) << fault;
    EXPECT_THAT(run.errors, HasSubstr("--inject")) << fault;
  }
}

TEST(Trace, TakesTheCommandAsItStands) {
  EXPECT_EQ(RunTool({"trace", "-c", "--timeout", "5", "dump", "--json", SmallFile()}).output,
            RunTool({"dump", "--json", SmallFile()}).output);
  EXPECT_EQ(RunTool({"trace"}).exit_code, 2);
  EXPECT_EQ(RunTool({"trace", "unheard-of"}).exit_code, 2);
  EXPECT_EQ(RunTool({"trace", "dump"}).exit_code, 2);
  EXPECT_THAT(RunTool({"trace", "dump", "--help"}).output, HasSubstr("vessa dump image.dcm"));
  const ToolRun other = RunTool({"trace", "call", "--library", kFaultyLibraryPath, "echo", "i:1"});
  EXPECT_THAT(other.errors, StartsWith("echo i:1\n= 0 i:0 s:\"\\x03\\x04\\x01\""));
}

TEST(Trace, KeepsTheExitCodeOfTheCommand) {
  const std::string endless = MakeFile("endless", EndlessDataSet());
  EXPECT_EQ(RunTool({"trace", "dump", PathOf("missing.dcm")}).exit_code, 3);
  EXPECT_EQ(RunTool({"trace", "-c", "--timeout", "0.5", "dump", "--syntax", "explicit", endless}).exit_code,
            124);
}

TEST(Trace, LeavesWhatItRecordedOfACallThatEndsTheProcess) {
  const std::string path = PathOf("crash.recording");
  EXPECT_EQ(RunTool({"--library", kFaultyLibraryPath, "trace", "-o", path, "call", "crash", "i:5"}).exit_code,
            125);
  EXPECT_FALSE(std::filesystem::exists(path));
  EXPECT_THAT(ContentOf(path + ".unfinished"), HasSubstr("\ncall crash \"\\x03\\x04\\x05\"\n"));
}

TEST(Trace, RecordsTheStoreCommandsHostsToo) {
  const ToolRun run = RunTool(
      {"trace", "-c", "convert", SmallFile(), PathOf("converted.dcm"), "--syntax", "1.2.840.10008.1.2"});
  ASSERT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.errors, AllOf(HasSubstr("zfComposeStream "), HasSubstr("GlobalOrder ")));
}

TEST(Replay, FindsNoDifferenceInTheSameLibrary) {
  const ToolRun run = RunTool({"replay", RecordDump("same.recording")});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.output, ContainsRegex("^\\w+ calls with \\w+ callbacks, as recorded\n$"));
}

TEST(Replay, NamesTheFirstDifference) {
  std::string text = ContentOf(RecordDump("changed.recording"));
  const std::size_t place = text.find("PushString \"Doe^John\"");
  ASSERT_NE(place, std::string::npos);
  const ToolRun run = RunTool({"replay", MakeFile("changed.recording", text.replace(place + 12, 3, "Roe"))});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, AllOf(HasSubstr("changed.recording: line "), HasSubstr(", in zfDecomposeStream: "),
                                HasSubstr("\n  recorded: PushString \"Roe^John\"\n"),
                                HasSubstr("\n  now:      PushString \"Doe^John\"\n")));
}

TEST(Replay, PlaysToAnotherLibrary) {
  const ToolRun run = RunTool({"replay", "--library", kFaultyLibraryPath, RecordDump("other.recording")});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, HasSubstr("\n  now:      (the library has no such call-out)\n"));
}

TEST(Replay, IsWatchedAsEveryCallIs) {
  const std::string path = PathOf("spin.recording");
  const std::string text = "vessa-recording 1\ncall spin \"\"\nreturn 0 \"\"\nend\n";
  const ToolRun run = RunTool(
      {"replay", "--timeout", "0.5", "--library", kFaultyLibraryPath, MakeFile("spin.recording", text)});
  EXPECT_EQ(run.exit_code, 124);
  EXPECT_THAT(run.errors, HasSubstr("spin did not return within 0.5 s"));
}

TEST(Replay, NamesWhatItCannotRead) {
  for (const std::string& path :
       {PathOf("missing.recording"), PathOf(""), SmallFile(), MakeFile("empty", "")}) {
    const ToolRun run = RunTool({"replay", path});
    EXPECT_EQ(run.exit_code, 3) << path;
    EXPECT_THAT(run.errors, StartsWith("vessa: "));
  }
}

}  // namespace
