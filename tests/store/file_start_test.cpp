#include "emulator/store/file_start.h"

#include <gtest/gtest.h>

#include "emulator/memory_globals.h"
#include "emulator/transfer_syntax.h"

namespace emulator {
namespace {

const Implementation kOurs{"1.2.3", "ME"};
constexpr std::size_t kStart = 132;

std::string Bytes(const char* text, std::size_t count) { return {text, count}; }
template <std::size_t kSize>
std::string Bytes(const char (&text)[kSize]) {
  return Bytes(text, kSize - 1);
}

TEST(FileStart, BeginsWithThePreambleAndTheGroupInOrder) {
  const MemoryGlobals nodes;
  const std::string start = FileStart(nodes, "A", kImplicitLittleEndian, kOurs);
  EXPECT_EQ(start.substr(0, 128), std::string(128, '\0'));
  EXPECT_EQ(start.substr(128, 4), "DICM");
  EXPECT_EQ(start.substr(kStart), Bytes("\x02\x00\x00\x00UL\x04\x00\x40\x00\x00\x00"
                                        "\x02\x00\x01\x00OB\x00\x00\x02\x00\x00\x00\x00\x01"
                                        "\x02\x00\x10\x00UI\x12\x00"
                                        "1.2.840.10008.1.2\x00"
                                        "\x02\x00\x12\x00UI\x06\x00"
                                        "1.2.3\x00"
                                        "\x02\x00\x13\x00SH\x02\x00"
                                        "ME"));
}

class FileStartOfDataSet : public testing::Test {
 protected:
  void SetMeta(std::int64_t tag, const std::string& vr, const std::string& value) {
    nodes_.Set("KevDICOM.Meta", {std::string("A"), std::string("m"), tag, std::string("v")}, vr);
    nodes_.Set("KevDICOM.Meta", {std::string("A"), std::string("m"), tag, std::string("d")}, value);
  }
  void SetElement(std::int64_t tag, std::int64_t node, const std::string& value) {
    nodes_.Set("KevDICOM.Data", {std::string("A"), std::int64_t{0}, std::string("c"), std::int64_t{0}, tag},
               node);
    nodes_.Set("KevDICOM.Data", {std::string("A"), node, std::string("d")}, value);
  }
  bool Holds(const std::string& bytes) const {
    return FileStart(nodes_, "A", kExplicitLittleEndian, kOurs).find(bytes, kStart) != std::string::npos;
  }

  MemoryGlobals nodes_;
};

TEST_F(FileStartOfDataSet, TakesTheUidsOfTheDataSet) {
  SetMeta(0x00020002, "UI", "1.9.2.");
  SetMeta(0x00020003, "UI", "1.9.3.");
  SetElement(0x00080016, 1, Bytes("1.5\x00"));
  SetElement(0x00080018, 2, "1.55");
  EXPECT_TRUE(
      Holds(Bytes("\x02\x00\x02\x00UI\x04\x00"
                  "1.5\x00\x02\x00\x03\x00UI\x04\x00"
                  "1.55")));
}

TEST_F(FileStartOfDataSet, KeepsTheUidsOfTheFileWhereTheDataSetHasNone) {
  SetMeta(0x00020002, "UI", "1.9.2.");
  SetMeta(0x00020003, "UI", "1.9.3.");
  EXPECT_TRUE(
      Holds(Bytes("\x02\x00\x02\x00UI\x06\x00"
                  "1.9.2.\x02\x00\x03\x00UI\x06\x00"
                  "1.9.3.")));
}

TEST_F(FileStartOfDataSet, KeepsOtherElementsAndReplacesThoseOfTheWriter) {
  SetMeta(0x00020000, "UL", Bytes("\xFF\xFF\xFF\xFF"));
  SetMeta(0x00020012, "UI", "9.9.");
  SetMeta(0x00020016, "AE", "TITLE ");
  SetMeta(0x00020102, "OB", "private.");
  EXPECT_TRUE(
      Holds(Bytes("\x02\x00\x16\x00"
                  "AE\x06\x00TITLE \x02\x00\x02\x01OB\x00\x00\x08\x00\x00\x00private.")));
  EXPECT_FALSE(Holds("9.9."));
  EXPECT_FALSE(Holds(Bytes("\xFF\xFF\xFF\xFF")));
}

}  // namespace
}  // namespace emulator
