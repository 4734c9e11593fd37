#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <system_error>

#include "emulator/stream_object.h"

namespace emulator {
namespace {

/// A path of its own for each test, removed with it.
class FileStreamTest : public testing::Test {
 protected:
  FileStreamTest()
      : path_(std::filesystem::temp_directory_path() /
              (std::string("emulator_file_stream_") +
               testing::UnitTest::GetInstance()->current_test_info()->name())) {}
  void TearDown() override {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }

  std::string Path() const {
    const std::u8string utf8 = path_.u8string();
    return {utf8.begin(), utf8.end()};
  }

  static std::string Call(Object& stream, std::string_view method, Value argument) {
    return AsBytes(stream.Call(method, std::vector<Value>{std::move(argument)}));
  }

  std::filesystem::path path_;
};

TEST_F(FileStreamTest, ReadsAsAStreamInMemoryDoes) {
  std::string bytes;
  for (int i = 0; i < 300000; ++i) bytes += static_cast<char>(i * 7 % 251);
  std::ofstream(path_, std::ios::binary) << bytes;
  FileStream file(Path(), FileStream::Mode::kRead);
  MemoryStream memory(bytes);
  EXPECT_EQ(AsInteger(file.Property("Size")), 300001);
  for (;;) {
    const std::string peeked = Call(file, "Peek", std::int64_t{8000});
    ASSERT_EQ(peeked, Call(memory, "Peek", std::int64_t{8000}));
    if (peeked.empty()) break;
    ASSERT_EQ(Call(file, "Read", std::int64_t{13}), Call(memory, "Read", std::int64_t{13}));
    Call(file, "Skip", std::int64_t{7000});
    Call(memory, "Skip", std::int64_t{7000});
    ASSERT_EQ(file.Position(), memory.Position());
  }
  file.MoveTo(2);
  EXPECT_EQ(Call(file, "Read", std::int64_t{4}), bytes.substr(1, 4));
}

TEST_F(FileStreamTest, WritesAndReadsWhatItWrote) {
  FileStream file(Path(), FileStream::Mode::kCreate);
  Call(file, "Write", std::string("0123\n\r\n"));
  EXPECT_EQ(Call(file, "Read", std::int64_t{2}), "01");
  Call(file, "Write", std::string("45"));
  EXPECT_EQ(Call(file, "Read", std::int64_t{100}), "23\n\r\n45");
  file.Flush();
  EXPECT_EQ(std::filesystem::file_size(path_), 9U);
}

TEST_F(FileStreamTest, CreateEmptiesAnOldFile) {
  std::ofstream(path_, std::ios::binary) << "old";
  FileStream file(Path(), FileStream::Mode::kCreate);
  EXPECT_EQ(file.ByteCount(), 0);
}

TEST_F(FileStreamTest, SaysWhyAFileCannotBeOpened) {
  try {
    const FileStream file(Path(), FileStream::Mode::kRead);
    FAIL();
  } catch (const std::system_error& error) {
    EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
    EXPECT_NE(std::string(error.what()).find("emulator_file_stream_"), std::string::npos);
  }
  EXPECT_THROW(FileStream(std::filesystem::temp_directory_path().string(), FileStream::Mode::kRead),
               std::system_error);
}

TEST_F(FileStreamTest, AFileCutWhileInUseIsAReadError) {
  std::ofstream(path_, std::ios::binary) << std::string(1000, 'x');
  FileStream file(Path(), FileStream::Mode::kRead);
  std::ofstream(path_, std::ios::binary) << "x";
  try {
    Call(file, "Peek", std::int64_t{8000});
    FAIL();
  } catch (const HostError& error) {
    EXPECT_EQ(error.code, kReadError);
  }
}

}  // namespace
}  // namespace emulator
