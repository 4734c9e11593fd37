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

}  // namespace
}  // namespace emulator
