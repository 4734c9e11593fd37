#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/vessa/run_tool.h"
#include "tests/vessa/sample_data.h"

using testing::EndsWith;
using testing::HasSubstr;

namespace {

constexpr const char* kExplicitSyntax = "1.2.840.10008.1.2.1";

std::string SmallFile(const std::string& name) {
  return MakeFile(name, DicomFile(kExplicitSyntax, SmallDataSet()));
}

TEST(Check, SaysOkOfAFileThatDecomposes) {
  const ToolRun run = RunTool({"check", SmallFile("small.dcm")});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.output, EndsWith("small.dcm: ok\n"));
}

TEST(Check, SaysWhatADumpThenSays) {
  const std::string cut = MakeFile("cut.dcm", DicomFile(kExplicitSyntax, SmallDataSet()).substr(0, 200));
  const ToolRun check = RunTool({"check", cut});
  const ToolRun dump = RunTool({"dump", cut});
  EXPECT_EQ(check.exit_code, 5);
  EXPECT_EQ(dump.exit_code, 1);
  EXPECT_THAT(check.output, HasSubstr("fails at offset 200, where the data end"));
  EXPECT_THAT(dump.errors, HasSubstr("at offset 200, where the data end"));
}

TEST(Check, SaysThatACallWillNotReturn) {
  const std::string endless = MakeFile("endless.dcm", DicomFile(kExplicitSyntax, EndlessDataSet()));
  const ToolRun run = RunTool({"check", endless});
  EXPECT_EQ(run.exit_code, 5);
  EXPECT_THAT(run.output, HasSubstr("does not return: ends inside an item of defined length, at offset"));
  EXPECT_THAT(run.output, HasSubstr("in (0008,1140) item 1"));
}

TEST(Check, PrintsJson) {
  const std::string shuffled =
      kExplicit.Element(0x00100020, "LO", "1234") + kExplicit.Element(0x00100010, "PN", "A ");
  const ToolRun run =
      RunTool({"check", "--json", MakeFile("shuffled.dcm", DicomFile(kExplicitSyntax, shuffled))});
  EXPECT_EQ(run.exit_code, 5);
  EXPECT_THAT(run.output, HasSubstr(R"("outcome": "succeeds", "preamble": "zero")"));
  EXPECT_THAT(run.output, HasSubstr(R"("findings": [{"kind": "unordered-tags", "count": 1, "offset": 172)"));
}

TEST(Check, IgnoresWhatItIsTold) {
  const std::string shuffled =
      kExplicit.Element(0x00100020, "LO", "1234") + kExplicit.Element(0x00100010, "PN", "A ");
  const std::string file = MakeFile("shuffled.dcm", DicomFile(kExplicitSyntax, shuffled));
  EXPECT_EQ(RunTool({"check", "--ignore", "unordered-tags,unknown-vr", file}).exit_code, 0);
  EXPECT_EQ(RunTool({"check", "--ignore", "unheard-of", file}).exit_code, 2);
}

TEST(Check, TakesAFileAsAHostWouldThatReadsItWhole) {
  const std::string file = SmallFile("small.dcm");
  EXPECT_EQ(RunTool({"check", "--whole", file}).exit_code, 2);
  const ToolRun run = RunTool({"check", "--whole", "--syntax", "explicit", file});
  EXPECT_EQ(run.exit_code, 5);
  EXPECT_THAT(run.output, HasSubstr("unpositioned"));
}

TEST(Check, AsksForTheSyntaxOfABareDataSet) {
  const std::string bare = MakeFile("bare", SmallDataSet());
  const ToolRun run = RunTool({"check", bare});
  EXPECT_EQ(run.exit_code, 5);
  EXPECT_THAT(run.output, HasSubstr("--syntax names"));
  EXPECT_EQ(RunTool({"check", "--syntax", "explicit", bare}).exit_code, 0);
}

TEST(Check, TellsWhatCannotBeRead) {
  const ToolRun run = RunTool({"check", PathOf("missing.dcm")});
  EXPECT_EQ(run.exit_code, 3);
  EXPECT_THAT(run.errors, HasSubstr("missing.dcm"));
}

}  // namespace
