#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "stream/binary_file_input_stream.h"
#include "tests/support/emulated_host.h"

namespace {

using vessa::CVessaBinaryFileInputStream;
using vessa::E_INVALIDARG;
using vessa::kReadFell;
using vessa::kSuccess;

// The first page of no process can be read: the system answers with an input error.
TEST(UnreadableFile, AReadErrorIsAFailureAndNeverTheEnd) {
  CVessaBinaryFileInputStream stream("/proc/self/mem");
  ASSERT_EQ(stream.Open(), kSuccess);
  EXPECT_EQ(PeekBytes(stream, 4), StatusText(E_INVALIDARG));
  EXPECT_EQ(PeekBytes(stream, 9000), StatusText(E_INVALIDARG));
  EXPECT_EQ(ReadBytes(stream, 4), StatusText(kReadFell));
  EXPECT_EQ(ReadBytes(stream, 9000), StatusText(kReadFell));
}

TEST(NamedPipe, HasNoPositions) {
  const std::string name =
      std::filesystem::temp_directory_path() / ("vessa_pipe_" + std::to_string(getpid()));
  ASSERT_EQ(mkfifo(name.c_str(), 0600), 0);
  const int other_end = open(name.c_str(), O_RDWR);
  CVessaBinaryFileInputStream stream(name);
  EXPECT_EQ(stream.Open(), kSuccess);
  EXPECT_EQ(stream.GetPosition(), 0);
  EXPECT_EQ(PeekBytes(stream, 1), StatusText(E_INVALIDARG));
  EXPECT_EQ(ReadBytes(stream, 1), StatusText(kReadFell));
  EXPECT_EQ(stream.Skip(1), E_INVALIDARG);
  EXPECT_EQ(stream.GetSize(), E_INVALIDARG);
  close(other_end);
  std::filesystem::remove(name);
}

}  // namespace
