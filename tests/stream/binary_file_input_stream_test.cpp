#include "stream/binary_file_input_stream.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "tests/support/emulated_host.h"

namespace {

using vessa::CVessaBinaryFileInputStream;
using vessa::E_INVALIDARG;
using vessa::E_NOTIMPL;
using vessa::kReadFell;
using vessa::kSuccess;

namespace fs = std::filesystem;

std::mt19937 RandomNumbers(unsigned seed) { return std::mt19937(seed); }

/// A file that is gone with the test.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& bytes)
      : path_{fs::temp_directory_path() / ("vessa_file_stream_" + std::to_string(std::random_device()()))} {
    std::ofstream(path_, std::ios::binary) << bytes;
  }
  ~TemporaryFile() {
    std::error_code ignored;
    fs::remove(path_, ignored);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const fs::path& Path() const { return path_; }
  std::string Name() const { return path_.string(); }

 private:
  fs::path path_;
};

class OpenFile {
 public:
  explicit OpenFile(const std::string& bytes) : file_{bytes}, stream{file_.Name()} {
    EXPECT_EQ(stream.Open(), kSuccess);
  }

 private:
  TemporaryFile file_;

 public:
  CVessaBinaryFileInputStream stream;
};

TEST(BinaryFileInputStream, CountsPositionsAndSizeFromOne) {
  OpenFile file("0123456789");
  EXPECT_EQ(file.stream.GetPosition(), 1);
  EXPECT_EQ(file.stream.GetSize(), 11);
  EXPECT_EQ(ReadBytes(file.stream, 10), "0123456789");
  EXPECT_EQ(file.stream.GetPosition(), 11);
  EXPECT_EQ(file.stream.GetSize(), 11);
}

TEST(BinaryFileInputStream, APeekWantsAllItsBytesOrNone) {
  OpenFile file("0123456789");
  EXPECT_EQ(PeekBytes(file.stream, 10), "0123456789");
  EXPECT_EQ(PeekBytes(file.stream, 11), StatusText(E_INVALIDARG));
  ReadBytes(file.stream, 8);
  EXPECT_EQ(PeekBytes(file.stream, 4), StatusText(E_INVALIDARG));
  EXPECT_EQ(PeekBytes(file.stream, 2), "89");
  ReadBytes(file.stream, 2);
  EXPECT_EQ(PeekBytes(file.stream, 4), "end");
  EXPECT_EQ(file.stream.GetPosition(), 11);
}

TEST(BinaryFileInputStream, AnEmptyFileIsAtItsEnd) {
  OpenFile file("");
  EXPECT_EQ(PeekBytes(file.stream, 4), "end");
  EXPECT_EQ(file.stream.GetSize(), 1);
  EXPECT_EQ(ReadBytes(file.stream, 0), "");
}

TEST(BinaryFileInputStream, PeeksAsFarAsItIsAsked) {
  const std::string bytes = SomeBytes(100000);
  OpenFile file(bytes);
  ReadBytes(file.stream, 5);
  EXPECT_EQ(PeekBytes(file.stream, 60000), bytes.substr(5, 60000));
  EXPECT_EQ(file.stream.GetPosition(), 6);
  EXPECT_EQ(PeekBytes(file.stream, 100000), StatusText(E_INVALIDARG));
  EXPECT_EQ(ReadBytes(file.stream, 10), bytes.substr(5, 10));
  file.stream.Skip(100000 - 15);
  EXPECT_EQ(PeekBytes(file.stream, 60000), "end");
}

TEST(BinaryFileInputStream, AShortReadFallsAndMovesToTheEnd) {
  OpenFile file("0123456789");
  ReadBytes(file.stream, 4);
  EXPECT_EQ(ReadBytes(file.stream, 7), StatusText(kReadFell));
  EXPECT_EQ(file.stream.GetPosition(), 11);
  EXPECT_EQ(PeekBytes(file.stream, 1), "end");
}

TEST(BinaryFileInputStream, ALongShortReadFallsAndMovesToTheEnd) {
  OpenFile file(SomeBytes(50000));
  EXPECT_EQ(ReadBytes(file.stream, 50001), StatusText(kReadFell));
  EXPECT_EQ(file.stream.GetPosition(), 50001);
}

TEST(BinaryFileInputStream, SkipsBothWays) {
  const std::string bytes = SomeBytes(50000);
  OpenFile file(bytes);
  EXPECT_EQ(file.stream.Skip(40000), kSuccess);
  EXPECT_EQ(ReadBytes(file.stream, 2), bytes.substr(40000, 2));
  EXPECT_EQ(file.stream.Skip(-2), kSuccess);
  EXPECT_EQ(ReadBytes(file.stream, 4), bytes.substr(40000, 4));
  EXPECT_EQ(file.stream.Skip(-40004), kSuccess);
  EXPECT_EQ(file.stream.GetPosition(), 1);
  EXPECT_EQ(file.stream.Skip(-1), E_INVALIDARG);
  EXPECT_EQ(ReadBytes(file.stream, 4), bytes.substr(0, 4));
}

TEST(BinaryFileInputStream, SkipsPastTheEndWithoutAFailure) {
  OpenFile file("0123456789");
  EXPECT_EQ(file.stream.Skip(128), kSuccess);
  EXPECT_EQ(file.stream.GetPosition(), 129);
  EXPECT_EQ(PeekBytes(file.stream, 4), "end");
  EXPECT_EQ(ReadBytes(file.stream, 4), StatusText(kReadFell));
}

TEST(BinaryFileInputStream, RefusesPositionsThatNoFileHas) {
  OpenFile file("0123456789");
  ReadBytes(file.stream, 1);
  EXPECT_EQ(file.stream.Skip(std::numeric_limits<std::int64_t>::max()), E_INVALIDARG);
  EXPECT_EQ(file.stream.GetPosition(), 2);
  EXPECT_EQ(ReadBytes(file.stream, 1), "1");
}

TEST(BinaryFileInputStream, PassesOverBytesThatAreThere) {
  const std::string bytes = SomeBytes(50000);
  OpenFile file(bytes);
  EXPECT_TRUE(file.stream.PassOver(0));
  EXPECT_TRUE(file.stream.PassOver(3));
  EXPECT_EQ(ReadBytes(file.stream, 2), bytes.substr(3, 2));
  EXPECT_TRUE(file.stream.PassOver(40000));
  EXPECT_EQ(ReadBytes(file.stream, 2), bytes.substr(40005, 2));
  EXPECT_TRUE(file.stream.PassOver(50000 - 40007));
  EXPECT_EQ(PeekBytes(file.stream, 1), "end");
}

TEST(BinaryFileInputStream, PassesOverNothingWhenBytesAreMissing) {
  const std::string bytes = SomeBytes(50000);
  OpenFile file(bytes);
  ReadBytes(file.stream, 10);
  EXPECT_FALSE(file.stream.PassOver(49991));
  EXPECT_FALSE(file.stream.PassOver(std::numeric_limits<std::uint64_t>::max()));
  EXPECT_EQ(file.stream.GetPosition(), 11);
  EXPECT_EQ(ReadBytes(file.stream, 49990), bytes.substr(10));
}

TEST(BinaryFileInputStream, PassesOverNothingBehindTheEnd) {
  OpenFile file("0123456789");
  file.stream.Skip(20);
  EXPECT_FALSE(file.stream.PassOver(1));
  EXPECT_EQ(file.stream.GetPosition(), 21);
}

TEST(BinaryFileInputStream, HasNoHostObject) {
  OpenFile file("x");
  EXPECT_EQ(FailureOf([&] { file.stream.GetOref(); }), StatusText(E_NOTIMPL));
}

TEST(BinaryFileInputStream, DoesNotOpenAMissingFile) {
  CVessaBinaryFileInputStream stream("/no/such/folder/file.dcm");
  EXPECT_EQ(stream.Open(), E_INVALIDARG);
}

TEST(BinaryFileInputStream, DoesNotOpenADirectory) {
  CVessaBinaryFileInputStream stream(fs::temp_directory_path().string());
  EXPECT_EQ(stream.Open(), E_INVALIDARG);
}

TEST(BinaryFileInputStream, ClosesTheFile) {
  TemporaryFile file("x");
  {
    CVessaBinaryFileInputStream stream(file.Name());
    stream.Open();
  }
  EXPECT_TRUE(fs::remove(file.Path()));  // an open file cannot be removed on Windows
}

TEST(BinaryFileInputStream, ReadsBehind4GiB) {
  constexpr std::int64_t kFar = (std::int64_t{1} << 32) + 10;
  TemporaryFile file("");
  {
    std::ofstream sparse(file.Path(), std::ios::binary);
    sparse.seekp(kFar);
    sparse << "far";
    if (!sparse.flush()) GTEST_SKIP() << "this disk takes no file of 4 GiB";
  }
  CVessaBinaryFileInputStream stream(file.Name());
  ASSERT_EQ(stream.Open(), kSuccess);
  EXPECT_TRUE(stream.PassOver(kFar - 1));
  EXPECT_EQ(ReadBytes(stream, 1), std::string(1, '\0'));
  EXPECT_EQ(ReadBytes(stream, 3), "far");
  EXPECT_EQ(stream.GetPosition(), kFar + 4);
  EXPECT_EQ(stream.GetSize(), 14) << "sizes are cut to 32 bits";
  EXPECT_EQ(stream.Skip(-3), kSuccess);
  EXPECT_EQ(PeekBytes(stream, 3), "far");
}

// The window shows in nothing: operations in any order answer as the C library's functions do.
TEST(BinaryFileInputStream, AnswersAsTheCLibraryDoes) {
  const std::string bytes = SomeBytes(40000);
  TemporaryFile file(bytes);
  CVessaBinaryFileInputStream stream(file.Name());
  ASSERT_EQ(stream.Open(), kSuccess);
  std::FILE* const peer = std::fopen(file.Name().c_str(), "rb");
  ASSERT_NE(peer, nullptr);
  std::mt19937 random = RandomNumbers(2);
  for (int step = 0; step < 5000; ++step) {
    const std::size_t count = random() % (random() % 10 == 0 ? 20000 : 20);
    std::string expected(count, '?');
    switch (random() % 4) {
      case 0: {
        const bool whole = std::fread(expected.data(), 1, count, peer) == count;
        ASSERT_EQ(ReadBytes(stream, count), whole ? expected : StatusText(kReadFell));
        break;
      }
      case 1: {
        const auto at = std::ftell(peer);
        const std::size_t found = std::fread(expected.data(), 1, count, peer);
        ASSERT_EQ(std::fseek(peer, at, SEEK_SET), 0);
        if (found < count) expected = found > 0 ? StatusText(E_INVALIDARG) : "end";
        ASSERT_EQ(PeekBytes(stream, count), expected);
        break;
      }
      case 2: {
        const int distance = static_cast<int>(count) * (random() % 3 == 0 ? -2 : 1);
        ASSERT_EQ(stream.Skip(distance) == kSuccess, std::fseek(peer, distance, SEEK_CUR) == 0);
        break;
      }
      default:
        ASSERT_EQ(stream.GetSize(), 40001);
        break;
    }
    ASSERT_EQ(stream.GetPosition(), std::ftell(peer) + 1);
  }
  EXPECT_EQ(std::fclose(peer), 0);
}

}  // namespace
