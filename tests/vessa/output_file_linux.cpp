#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/vessa/run_tool.h"
#include "tests/vessa/sample_data.h"

// What becomes of a file that is written when something has its name already.

using testing::EndsWith;
using testing::HasSubstr;

namespace {

namespace fs = std::filesystem;

std::string ReadAll(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

std::string DataSet() { return kExplicit.Element(0x00100010, "PN", "Doe^John"); }

ToolRun ConvertTo(const std::string& output) {
  return RunTool({"convert", MakeFile("in.dcm", DicomFile("1.2.840.10008.1.2.1", DataSet())), output,
                  "--syntax", "explicit"});
}

/// A link anew.
std::string MakeLink(const std::string& name, const std::string& target) {
  std::string path = PathOf(name);
  fs::remove(path);
  fs::create_symlink(target, path);
  return path;
}

constexpr fs::perms kOwnerReads = fs::perms::owner_read;
constexpr fs::perms kOwnerReadsAndWrites = fs::perms::owner_read | fs::perms::owner_write;

TEST(OutputFile, LeavesALinkThatLeadsToTheFile) {
  fs::create_directories(PathOf("elsewhere"));
  const std::string target = MakeFile("elsewhere/target.dcm", "older");
  const std::string link = MakeLink("link.dcm", "elsewhere/target.dcm");
  const ToolRun run = ConvertTo(MakeLink("link_to_link.dcm", link));
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_TRUE(fs::is_symlink(PathOf("link_to_link.dcm")));
  EXPECT_FALSE(fs::is_symlink(target));
  EXPECT_THAT(ReadAll(target), EndsWith(DataSet()));
}

TEST(OutputFile, MakesTheFileThatALinkLeadsTo) {
  const std::string link = MakeLink("early.dcm", "late.dcm");
  EXPECT_EQ(ConvertTo(link).exit_code, 0);
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_THAT(ReadAll(PathOf("late.dcm")), EndsWith(DataSet()));
}

TEST(OutputFile, RefusesALinkToItself) {
  const ToolRun run = ConvertTo(MakeLink("circle.dcm", "circle.dcm"));
  EXPECT_EQ(run.exit_code, 4);
  EXPECT_THAT(run.errors, HasSubstr("circle.dcm: Too many levels of symbolic links"));
  EXPECT_TRUE(fs::is_symlink(PathOf("circle.dcm")));
}

/// Standard output is a plain file here. The link is one of our own, and not the system's /dev/stdout: a tool that
/// replaced it would harm nothing else.
TEST(OutputFile, WritesThroughTheSystemsNameOfStandardOutput) {
  const std::string link = MakeLink("stdout", "/proc/self/fd/1");
  const ToolRun run = ConvertTo(link);
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.output, EndsWith(DataSet()));
  EXPECT_TRUE(fs::is_symlink(link));
}

TEST(OutputFile, KeepsThePermissionsOfTheFileThatItReplaces) {
  const std::string output = MakeFile("private.dcm", "older");
  fs::permissions(output, kOwnerReadsAndWrites);
  EXPECT_EQ(ConvertTo(output).exit_code, 0);
  EXPECT_THAT(ReadAll(output), EndsWith(DataSet()));
  EXPECT_EQ(fs::status(output).permissions(), kOwnerReadsAndWrites);
}

TEST(OutputFile, RefusesToReplaceAReadOnlyFile) {
  const std::string output = MakeFile("read_only.dcm", "older");
  fs::permissions(output, kOwnerReads);
  const ToolRun run = ConvertTo(output);
  EXPECT_EQ(run.exit_code, 4);
  EXPECT_THAT(run.errors, HasSubstr("read_only.dcm: Permission denied"));
  EXPECT_EQ(ReadAll(output), "older");
  EXPECT_EQ(fs::status(output).permissions(), kOwnerReads);
}

TEST(OutputFile, LeavesAFileAloneThatHasTheNameOfTheUnfinishedOne) {
  const std::string other = MakeFile("taken.dcm.unfinished", "a user's");
  EXPECT_EQ(ConvertTo(PathOf("taken.dcm")).exit_code, 0);
  EXPECT_THAT(ReadAll(PathOf("taken.dcm")), EndsWith(DataSet()));
  EXPECT_EQ(ReadAll(other), "a user's");
  EXPECT_FALSE(fs::exists(PathOf("taken.dcm.unfinished2")));
}

}  // namespace
