#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/vessa/run_tool.h"
#include "tests/vessa/sample_data.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr const char* kExplicitSyntax = "1.2.840.10008.1.2.1";

std::string File(const std::string& name, const std::string& data_set = SmallDataSet()) {
  return MakeFile(name, DicomFile(kExplicitSyntax, data_set));
}

/// A folder with two good files and, in a folder of its own, one that is cut.
std::string Study() {
  std::filesystem::create_directories(PathOf("study/deeper"));
  File("study/one.dcm");
  File("study/two.dcm");
  File("study/deeper/cut.dcm", SmallDataSet().substr(0, 40));
  return PathOf("study");
}

std::string Endless() { return File("endless.dcm", EndlessDataSet()); }

TEST(ManyFiles, AreThoseOfAFolderAndItsFolders) {
  const ToolRun run = RunTool({"dump", "-r", Study()});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.output, HasSubstr("one.dcm <==\n"));
  EXPECT_THAT(run.output, HasSubstr("two.dcm <==\n"));
  EXPECT_THAT(run.errors, HasSubstr("cut.dcm: "));
  EXPECT_THAT(run.errors, HasSubstr("read 2 of 3 files; 1 failed: 1 in the library\n"));
}

TEST(ManyFiles, NeedAWordToComeOutOfAFolder) {
  const ToolRun run = RunTool({"dump", Study()});
  EXPECT_EQ(run.exit_code, 3);
  EXPECT_THAT(run.errors, HasSubstr("-r reads the files in it"));
}

TEST(ManyFiles, AreThoseThatAPatternStandsFor) {
  Study();
  const ToolRun run = RunTool({"query", PathOf("study") + "/*.dcm", "PatientName"});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.output, HasSubstr("one.dcm: Doe^John\n"));
  EXPECT_THAT(run.output, HasSubstr("two.dcm: Doe^John\n"));
  EXPECT_EQ(RunTool({"items", PathOf("stud?") + "/t?o.dcm", "ReferencedImageSequence[]"}).output,
            PathOf("study/two.dcm") + ": 1\n" + PathOf("study/two.dcm") + ": 2\n");
  const ToolRun none = RunTool({"events", PathOf("study") + "/*.gif"});
  EXPECT_EQ(none.exit_code, 3);
  EXPECT_THAT(none.errors, HasSubstr("*.gif: no file matches"));
}

TEST(ManyFiles, AreAskedForSeveralReferences) {
  Study();
  const ToolRun run =
      RunTool({"query", "-e", "PatientName", "-e", "ReferencedImageSequence[1].ReferencedSOPClassUID",
               PathOf("study/one.dcm"), PathOf("study/two.dcm")});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.output, HasSubstr("two.dcm: PatientName\tDoe^John\n"));
  EXPECT_EQ(RunTool({"query", PathOf("study/one.dcm")}).exit_code, 2);
}

TEST(ManyFiles, GoOnAfterAFailureAndCountThem) {
  Study();
  const ToolRun run = RunTool({"--timeout", "0.5", "dump", PathOf("study/one.dcm"), PathOf("missing.dcm"),
                               Endless(), PathOf("study/two.dcm")});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.output, HasSubstr("two.dcm <=="));
  EXPECT_THAT(run.errors, HasSubstr("did not return within 0.5 s"));
  EXPECT_THAT(run.errors, HasSubstr("read 2 of 4 files; 2 failed: 1 unreadable, 1 without return\n"));
}

TEST(ManyFiles, StopAtTheFirstFailureWhenTold) {
  Study();
  const ToolRun run = RunTool({"dump", "--fail-first", PathOf("missing.dcm"), PathOf("study/one.dcm")});
  EXPECT_EQ(run.exit_code, 3);
  EXPECT_EQ(run.output, "");
}

TEST(ManyFiles, AreSharedAmongProcesses) {
  std::vector<std::string> arguments{"events", "--jobs", "3"};
  for (int number = 0; number < 30; ++number)
    arguments.push_back(File("f" + std::to_string(number) + ".dcm"));
  const ToolRun run = RunTool(arguments);
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.errors, HasSubstr("read 30 of 30 files\n"));
  std::size_t titles = 0;
  for (std::size_t at = run.output.find("==> "); at != std::string::npos;
       at = run.output.find("==> ", at + 1))
    ++titles;
  EXPECT_EQ(titles, 30U);
}

TEST(ManyFiles, AreCheckedWithoutAWordForFolders) {
  const ToolRun run = RunTool({"check", Study()});
  EXPECT_EQ(run.exit_code, 5);
  EXPECT_THAT(run.output, HasSubstr("one.dcm: ok\n"));
  EXPECT_THAT(run.output, HasSubstr("cut.dcm: fails at"));
  EXPECT_THAT(run.errors, HasSubstr("checked 3 of 3 files, 1 with findings\n"));
}

TEST(ManyFiles, HaveDifferentExitCodesBecomeOne) {
  EXPECT_EQ(RunTool({"dump", PathOf("missing"), PathOf("missing too")}).exit_code, 3);
  Study();
  EXPECT_EQ(RunTool({"dump", PathOf("missing"), PathOf("study/deeper/cut.dcm")}).exit_code, 1);
  EXPECT_EQ(RunTool({"check", PathOf("missing"), PathOf("study/deeper/cut.dcm")}).exit_code, 3);
}

}  // namespace
