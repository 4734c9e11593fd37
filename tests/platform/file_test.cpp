#include "platform/file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace vessa {
namespace {

/// A folder of the test's own, gone with it.
class FileTest : public testing::Test {
 protected:
  void SetUp() override {
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    folder_ = std::filesystem::temp_directory_path() / ("vessa-file-" + std::string(test->name()));
    std::filesystem::create_directories(folder_);
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  std::string Folder() const { return folder_.string(); }
  std::string FileWith(const std::string& text, std::int64_t offset = 0) const {
    const std::filesystem::path path = folder_ / "file.dcm";
    std::ofstream(path, std::ios::binary).seekp(offset)
        << text;  // what lies before takes no room on the disk
    return path.string();
  }

 private:
  std::filesystem::path folder_;
};

std::string TextAt(File& file, std::int64_t offset, std::size_t count) {
  std::string text(count, '?');
  text.resize(file.ReadAt(offset, {reinterpret_cast<std::uint8_t*>(text.data()), count}));
  return text;
}

TEST_F(FileTest, ReadsAtAnyOffset) {
  File file;
  ASSERT_TRUE(file.Open(FileWith("0123456789")));
  EXPECT_EQ(TextAt(file, 4, 3), "456");
  EXPECT_EQ(TextAt(file, 0, 2), "01");
  EXPECT_EQ(TextAt(file, 0, 0), "");
  EXPECT_EQ(file.End(), 10);
}

TEST_F(FileTest, EndsAreNoFailures) {
  File file;
  ASSERT_TRUE(file.Open(FileWith("0123456789")));
  EXPECT_EQ(TextAt(file, 8, 100), "89");
  EXPECT_EQ(TextAt(file, 10, 1), "");
  EXPECT_EQ(TextAt(file, 1000, 1), "");
  EXPECT_EQ(file.LastFailure(), File::Failure::kNone);
}

TEST_F(FileTest, ReadingAtANegativeOffsetFails) {
  File file;
  ASSERT_TRUE(file.Open(FileWith("0123456789")));
  EXPECT_EQ(TextAt(file, -1, 4), "");
  EXPECT_EQ(file.LastFailure(), File::Failure::kOther);
  EXPECT_EQ(TextAt(file, 0, 4), "0123") << "a failure does not outlive its read";
}

TEST_F(FileTest, ReachesBeyondFourGigabytes) {
  constexpr std::int64_t kFar = 5LL << 30;
  File file;
  ASSERT_TRUE(file.Open(FileWith("far", kFar)));
  EXPECT_EQ(TextAt(file, kFar, 10), "far");
  EXPECT_EQ(TextAt(file, kFar - 1, 2), std::string("\0f", 2));
  EXPECT_EQ(file.End(), kFar + 3);
}

TEST_F(FileTest, DoesNotOpenWhatIsNotThere) {
  File file;
  EXPECT_FALSE(file.Open(Folder() + "/missing.dcm"));
}

TEST_F(FileTest, ADirectoryIsNotOpenedOrCannotBeRead) {
  File file;
  if (!file.Open(Folder())) return;  // as on Windows
  EXPECT_EQ(TextAt(file, 0, 4), "");
  EXPECT_EQ(file.LastFailure(), File::Failure::kDirectory);
}

TEST_F(FileTest, OpensAnotherFileInItsPlace) {
  File file;
  ASSERT_TRUE(file.Open(FileWith("first")));
  TextAt(file, -1, 1);
  ASSERT_TRUE(file.Open(FileWith("second")));
  EXPECT_EQ(file.LastFailure(), File::Failure::kNone);
  EXPECT_EQ(TextAt(file, 0, 10), "second");
}

}  // namespace
}  // namespace vessa
