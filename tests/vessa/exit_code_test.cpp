#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/vessa/run_tool.h"
#include "tests/vessa/sample_data.h"

using testing::HasSubstr;
using testing::StartsWith;

namespace {

ToolRun CallFaulty(const std::string& name, const std::string& timeout = "10") {
  return RunTool({"--library", kFaultyLibraryPath, "--timeout", timeout, "call", name});
}

TEST(ExitCode, IsZeroWhenAllWentWell) { EXPECT_EQ(RunTool({"table"}).exit_code, 0); }

TEST(ExitCode, IsTwoForWrongUsage) {
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{},
                                                    {"unheard-of"},
                                                    {"dump"},
                                                    {"--timeout", "x", "table"},
                                                    {"--timeout", "-1", "table"},
                                                    {"dump", "--unheard-of", "file"},
                                                    {"swap", "two"},
                                                    {"tag", "NoSuchKeyword"},
                                                    {"call", "zfNothing"},
                                                    {"call", "zfBigHexToDecimal"},
                                                    {"call", "zfTagInfo", "x:1"}}) {
    const ToolRun run = RunTool(arguments);
    EXPECT_EQ(run.exit_code, 2) << run.errors;
    EXPECT_EQ(run.output, "");
    EXPECT_THAT(run.errors, StartsWith("vessa: "));
  }
}

TEST(ExitCode, IsThreeForInputThatCannotBeRead) {
  const ToolRun missing = RunTool({"dump", PathOf("missing.dcm")});
  EXPECT_EQ(missing.exit_code, 3);
  EXPECT_THAT(missing.errors, HasSubstr("missing.dcm"));
  EXPECT_EQ(RunTool({"dump", PathOf("")}).exit_code, 3);  // a folder
  const ToolRun no_library = RunTool({"--library", PathOf("missing.so"), "table"});
  EXPECT_EQ(no_library.exit_code, 3);
  EXPECT_THAT(no_library.errors, HasSubstr("missing.so"));
}

TEST(ExitCode, Is124WhenTheDataSetEndsInsideAnItemOfDefinedLength) {
  const std::string file = MakeFile("endless", EndlessDataSet());
  const ToolRun run = RunTool({"dump", "--syntax", "explicit", "--timeout", "0.5", file});
  EXPECT_EQ(run.exit_code, 124);
  EXPECT_THAT(run.errors,
              HasSubstr("zfDecomposeStream did not return within 0.5 s: the data set ends inside an item of "
                        "defined length (100 bytes)"));
  EXPECT_THAT(run.errors, HasSubstr("at offset 36, where the data end, in (0008,1140) item 1"));
  EXPECT_THAT(run.output, HasSubstr("1.2.3.4\n"));  // printed before, and not lost with the process
}

TEST(ExitCode, Is124WhenACallNeverReturns) {
  const ToolRun run = CallFaulty("spin", "0.5");
  EXPECT_EQ(run.exit_code, 124);
  EXPECT_THAT(run.errors, HasSubstr("spin did not return within 0.5 s\n"));
}

TEST(ExitCode, Is125WhenTheLibraryCrashes) {
  const ToolRun run = CallFaulty("crash");
  EXPECT_EQ(run.exit_code, 125);
  EXPECT_THAT(run.errors, HasSubstr("crash crashed: "));
  EXPECT_THAT(run.errors, HasSubstr(AbortText()));
}

TEST(ExitCode, Is125WhenTheLibraryEndsTheProcess) {
  const ToolRun run = CallFaulty("leave");
  EXPECT_EQ(run.exit_code, 125);
  EXPECT_THAT(run.errors, HasSubstr("leave crashed: the process ended with exit code 0"));
}

TEST(ExitCode, IsOneWhenTheAnswerIsNoResultList) {
  const ToolRun run = CallFaulty("nonsense");
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, HasSubstr("nonsense left no result list"));
}

}  // namespace
