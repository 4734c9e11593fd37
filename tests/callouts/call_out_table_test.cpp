#include <string>

#include "tests/callouts/loaded_library.h"

namespace emulator {
namespace {

struct ExpectedRow {
  const char* name;
  const char* types;
};

constexpr ExpectedRow kRows[] = {
    {"zfPLACEHOLDER", "Bz"},
    {"zfTagInfo", "Bz"},
    {"zfNameTag", "Bz"},
    {"zfDICOMServer", "coi"},
    {"zfDeflateStream", "ioo"},
    {"zfInflateStream", "ioo"},
    {"zfSwitchByteOrdering", "Bi"},
    {"zfDecomposeStream", "Bz"},
    {"zfParsePropertyReference", "Bz"},
    {"zfParsePropertySubscriptReference", "Bz"},
    {"zfQueryStream", "Bz"},
    {"zfGetNextSubscript", "Bz"},
    {"zfComposeStream", "Bz"},
    {"zfQueryFileOrDataSet", "Bz"},
    {"zfBigHexToDecimal", "B"},
};

class CallOutTable : public LoadedLibrary {};

TEST_F(CallOutTable, HoldsFifteenRowsInTheirOrderAndANullRow) {
  const vessa::CallOutRow* row = TheLibrary().Table();
  for (const ExpectedRow& expected : kRows) {
    EXPECT_STREQ(row->name, expected.name);
    EXPECT_STREQ(row->argument_types, expected.types);
    EXPECT_NE(row->entry.any, nullptr);
    ++row;
  }
  EXPECT_EQ(row->name, nullptr);
  EXPECT_EQ(row->argument_types, nullptr);
  EXPECT_EQ(row->entry.any, nullptr);
}

TEST_F(CallOutTable, DICOMServerAnswersMinusOne) { EXPECT_EQ(TheLibrary().Call("zfDICOMServer"), -1); }

TEST_F(CallOutTable, PlaceholderAnswersZeroAndLeavesItsBufferAlone) {
  vessa::HostString buffer;
  Fill(buffer, "untouched");
  EXPECT_EQ(TheLibrary().Call("zfPLACEHOLDER", buffer), 0);
  EXPECT_EQ(Contents(buffer), "untouched");
}

TEST_F(CallOutTable, EveryFunctionWithABufferSurvivesANullOne) {
  for (const ExpectedRow& expected : kRows) {
    const vessa::CallOutRow* row = TheLibrary().Find(expected.name);
    const std::string types = expected.types;
    if (types == "Bz" || types == "B") {
      EXPECT_EQ(row->entry.buffer(nullptr), 0) << expected.name;
    } else if (types == "Bi") {
      EXPECT_EQ(row->entry.buffer_and_integer(nullptr, 2), 0) << expected.name;
    }
  }
}

}  // namespace
}  // namespace emulator
