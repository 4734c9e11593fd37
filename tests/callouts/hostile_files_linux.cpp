#include <unistd.h>

#include <string>

#include "tests/callouts/loaded_library.h"
#include "tests/support/dicom_bytes.h"

namespace emulator {
namespace {

class UnreadableFile : public LoadedLibrary {};

TEST_F(UnreadableFile, IsAFailureAndNeverTheEndOfTheData) {
  // The first page of no process can be read: the system opens the file and answers reads with an input error.
  ExpectFailure(Call("zfQueryFileOrDataSet", ListBuilder()
                                                 .Integer(0)
                                                 .String("/proc/self/mem")
                                                 .String(dicom_bytes::kExplicitLittleEndian)
                                                 .List(ListBuilder().Integer(0x00100010))),
                u" decomposing stream");
}

TEST_F(UnreadableFile, APipeHasNoHeaderToBePassed) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  ExpectFailure(Call("zfQueryFileOrDataSet", ListBuilder()
                                                 .Integer(1)
                                                 .String("/proc/self/fd/" + std::to_string(ends[0]))
                                                 .String(dicom_bytes::kExplicitLittleEndian)
                                                 .List(ListBuilder().Integer(0x00100010))),
                u" reading 128-byte file header");
  close(ends[0]);
  close(ends[1]);
}

}  // namespace
}  // namespace emulator
