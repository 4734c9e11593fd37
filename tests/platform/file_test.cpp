#include "platform/file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

namespace vessa {
namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

std::FILE* OpenedFile(const std::string& name) { return std::fopen(name.c_str(), "rb"); }

/// A folder of the test's own, gone with it.
class FileTest : public testing::Test {
 protected:
  void SetUp() override {
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    folder_ = std::filesystem::temp_directory_path() / ("vessa-file-" + std::string(test->name()));
    std::filesystem::create_directories(folder_);
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  std::string FileWith(const std::string& text) const {
    const std::string name = (folder_ / "file.dcm").string();
    const File file(std::fopen(name.c_str(), "wb"));
    std::fwrite(text.data(), 1, text.size(), file.get());
    return name;
  }

 private:
  std::filesystem::path folder_;
};

TEST_F(FileTest, SeeksFromStartPositionAndEnd) {
  const File file(OpenedFile(FileWith("0123456789")));
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(TellFile(file.get()), 0);
  EXPECT_TRUE(SeekFile(file.get(), 4, SEEK_SET));
  EXPECT_TRUE(SeekFile(file.get(), 2, SEEK_CUR));
  EXPECT_EQ(TellFile(file.get()), 6);
  EXPECT_EQ(std::fgetc(file.get()), '6');
  EXPECT_TRUE(SeekFile(file.get(), -1, SEEK_END));
  EXPECT_EQ(std::fgetc(file.get()), '9');
}

TEST_F(FileTest, StaysWhereItIsWhenASeekFails) {
  const File file(OpenedFile(FileWith("0123456789")));
  ASSERT_NE(file, nullptr);
  ASSERT_TRUE(SeekFile(file.get(), 3, SEEK_SET));
  EXPECT_FALSE(SeekFile(file.get(), -1, SEEK_SET));
  EXPECT_EQ(TellFile(file.get()), 3);
}

TEST_F(FileTest, ReachesBeyondFourGigabytes) {
  constexpr std::int64_t kFar = 5LL << 30;
  const std::string name = FileWith("start");
  {
    const File writer(std::fopen(name.c_str(), "r+b"));
    ASSERT_TRUE(SeekFile(writer.get(), kFar, SEEK_SET));  // what lies between takes no room on the disk
    ASSERT_EQ(std::fputc('x', writer.get()), 'x');
  }
  const File file(OpenedFile(name));
  ASSERT_NE(file, nullptr);
  EXPECT_TRUE(SeekFile(file.get(), kFar, SEEK_SET));
  EXPECT_EQ(std::fgetc(file.get()), 'x');
  EXPECT_EQ(TellFile(file.get()), kFar + 1);
  EXPECT_TRUE(SeekFile(file.get(), -kFar, SEEK_CUR));
  EXPECT_EQ(TellFile(file.get()), 1);
}

}  // namespace
}  // namespace vessa
