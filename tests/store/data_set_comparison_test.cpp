#include "emulator/store/data_set_comparison.h"

#include <gtest/gtest.h>

#include "emulator/tag_text.h"
#include "emulator/transfer_syntax.h"

namespace emulator {
namespace {

constexpr std::uint32_t kName = 0x00100010;
constexpr std::uint32_t kSequence = 0x00081140;
constexpr std::uint32_t kReference = 0x00081150;

void Element(DataSetOutline& outline, std::uint32_t tag, std::string_view vr, std::string_view value) {
  outline.StartElement(tag, vr, static_cast<std::uint32_t>(value.size()));
  outline.Data(tag, 1, value);
  outline.EndElement(tag);
}

/// A sequence of one element an item.
void Sequence(DataSetOutline& outline, const std::vector<std::string>& values) {
  outline.StartElement(kSequence, "SQ", kUndefinedLength);
  outline.StartSequence();
  for (const std::string& value : values) {
    outline.StartItem(kSequence, 8);
    Element(outline, kReference, "UI", value);
    outline.EndItem(kSequence, 8);
  }
  outline.EndSequence();
  outline.EndElement(kSequence);
}

void Fragments(DataSetOutline& outline, const std::vector<std::string>& values) {
  outline.StartElement(kPixelData, "OB", kUndefinedLength);
  for (const std::string& value : values) {
    outline.StartItem(kItem, static_cast<std::uint32_t>(value.size()));
    outline.Data(kPixelData, 1, value);
    outline.EndItem(kItem, static_cast<std::uint32_t>(value.size()));
  }
  outline.EndElement(kPixelData);
}

class DataSetComparison : public testing::Test {
 protected:
  DataSetComparison() {
    source_.StartContent(kExplicitLittleEndian);
    written_.StartContent(kExplicitLittleEndian);
  }
  std::string Difference() const { return FirstDifference(source_, written_).value_or("none"); }

  DataSetOutline source_;
  DataSetOutline written_;
};

TEST_F(DataSetComparison, FindsNoneBetweenEqualDataSets) {
  for (DataSetOutline* const outline : {&source_, &written_}) {
    Sequence(*outline, {"1.2 ", "1.3 "});
    Element(*outline, kName, "PN", "Doe^John");
    Fragments(*outline, {"", "abcd"});
    outline->EndContent();
  }
  EXPECT_EQ(Difference(), "none");
}

TEST_F(DataSetComparison, TakesAValueForTheSameHoweverItIsCut) {
  Element(source_, kName, "PN", "Doe^John");
  written_.StartElement(kName, "PN", 8);
  written_.Data(kName, 1, "Doe^");
  written_.Data(kName, 2, "John");
  written_.EndElement(kName);
  EXPECT_EQ(Difference(), "none");
}

TEST_F(DataSetComparison, NamesAValueThatDiffers) {
  Element(source_, kName, "PN", "Doe^John");
  Element(written_, kName, "PN", "Doe^Joan");
  EXPECT_EQ(Difference(), "(0010,0010): another value in what was written");
}

TEST_F(DataSetComparison, NamesALengthThatDiffers) {
  Element(source_, kName, "PN", "Doe^John");
  Element(written_, kName, "PN", "Doe^");
  EXPECT_EQ(Difference(), "(0010,0010): 8 bytes, but 4 in what was written");
}

TEST_F(DataSetComparison, NamesElementsThatOneSideDoesNotHave) {
  Element(source_, kName, "PN", "");
  EXPECT_EQ(Difference(), "(0010,0010): is missing in what was written");
  Element(written_, 0x00080020, "DA", "");
  EXPECT_EQ(Difference(), "(0008,0020): was written, and is not in the source");
}

TEST_F(DataSetComparison, NamesThePathIntoItems) {
  Sequence(source_, {"1.2 ", "1.3 "});
  Sequence(written_, {"1.2 ", "1.4 "});
  EXPECT_EQ(Difference(), "(0008,1140) item 2 > (0008,1150): another value in what was written");
}

TEST_F(DataSetComparison, NamesItemsAndFragmentsThatAreMissing) {
  Sequence(source_, {"1.2 ", "1.3 "});
  Sequence(written_, {"1.2 "});
  EXPECT_EQ(Difference(), "(0008,1140) item 2: is missing in what was written");
}

TEST_F(DataSetComparison, NamesAFragmentThatDiffers) {
  Fragments(source_, {"", "ab", "cd"});
  Fragments(written_, {"", "ab", "ce"});
  EXPECT_EQ(Difference(), "(7FE0,0010) fragment 3: another value in what was written");
}

TEST_F(DataSetComparison, DoesNotCareForTheOrderInAnItem) {
  Element(source_, kName, "PN", "X ");
  Element(source_, 0x00080020, "DA", "");
  Element(written_, 0x00080020, "DA", "");
  Element(written_, kName, "PN", "X ");
  EXPECT_EQ(Difference(), "none");
}

TEST_F(DataSetComparison, LeavesGroupLengthsAndGroupTwoOut) {
  Element(source_, 0x00020010, "UI", "1.2 ");
  Element(source_, 0x00100000, "UL", "abcd");
  EXPECT_EQ(Difference(), "none");
}

TEST_F(DataSetComparison, HoldsExplicitVrsAgainstEachOther) {
  Element(source_, kName, "PN", "X ");
  Element(written_, kName, "LO", "X ");
  EXPECT_EQ(Difference(), "(0010,0010): VR PN, but LO in what was written");
}

TEST_F(DataSetComparison, DoesNotCareForTheDictionarysVr) {
  Element(source_, kName, "LO", "X ");
  written_.StartContent(kImplicitLittleEndian);
  Element(written_, kName, "PN", "X ");
  EXPECT_EQ(Difference(), "none");
}

TEST_F(DataSetComparison, TakesAPlaceholderForWhatItMayStandFor) {
  source_.StartContent(kImplicitLittleEndian);
  Element(source_, 0x00280106, "XS", "ab");
  Element(written_, 0x00280106, "SS", "ab");
  EXPECT_EQ(Difference(), "none");
  written_.StartContent(kExplicitLittleEndian);
  Element(written_, 0x00280106, "LO", "ab");
  EXPECT_EQ(Difference(), "(0028,0106): VR XS, but LO in what was written");
}

}  // namespace
}  // namespace emulator
