#include "dicom/repeating_group.h"

#include <gtest/gtest.h>

#include "dicom/dictionary.h"
#include "tests/dicom/registry_file.h"

namespace vessa {
namespace {

/// The member reports its own tag and, for the rest, the row of its group.
void ExpectMember(Tag member, const RegistryLine& row) {
  const std::optional<TagEntry> entry = LookupTag(member);
  ASSERT_TRUE(entry.has_value()) << TagDisplay(member);
  EXPECT_EQ(entry->tag_text, TagText(member));
  EXPECT_EQ(entry->keyword, row.keyword) << TagDisplay(member);
  EXPECT_EQ(entry->vr.Text(), row.vr) << TagDisplay(member);
  EXPECT_EQ(entry->vm, row.vm) << TagDisplay(member);
  EXPECT_EQ(entry->note, "");
  EXPECT_EQ(LookupVr(member), entry->vr);
}

/// Runs `check(row)` for each row of a canonical group, or of a canonical element when `mask` says so.
template <class Check>
int ForRows(std::uint32_t mask, std::uint32_t canonical, Check check) {
  InitialiseDictionary();
  int rows = 0;
  for (const RegistryLine& line : RegistryLines()) {
    if ((line.Tag().Value() & mask) != canonical) continue;
    check(line);
    ++rows;
  }
  return rows;
}

void ExpectMemberGroups(const RegistryLine& row, std::uint32_t first, std::uint32_t last) {
  for (std::uint32_t group = first; group <= last; group += 2) {
    if (group != 0x7FE0) ExpectMember(Tag(static_cast<std::uint16_t>(group), row.Tag().Element()), row);
  }
}

TEST(RepeatingGroup, OverlaysRepeatInTheEvenGroupsFrom6000) {
  EXPECT_EQ(ForRows(0xFFFF0000, 0x60FF0000, [](const auto& row) { ExpectMemberGroups(row, 0x6000, 0x60FE); }),
            40);
}

TEST(RepeatingGroup, CurvesAndAudioRepeatInTheEvenGroupsFrom5000) {
  EXPECT_EQ(ForRows(0xFFFF0000, 0x50FF0000, [](const auto& row) { ExpectMemberGroups(row, 0x5000, 0x50FE); }),
            26);
}

TEST(RepeatingGroup, VariablePixelDataRepeatsFrom7F00ButNotInTheGroupOfPixelData) {
  EXPECT_EQ(ForRows(0xFFFF0000, 0x7FFF0000, [](const auto& row) { ExpectMemberGroups(row, 0x7F00, 0x7FFE); }),
            5);
  EXPECT_EQ(LookupTag(kPixelData)->keyword, "PixelData");
  EXPECT_FALSE(LookupTag(Tag{0x7FE0, 0x0011}).has_value());
}

TEST(RepeatingGroup, SourceImageIdsRepeatInAllElementsOf31) {
  EXPECT_EQ(ForRows(0xFFFFFFFF, 0x002031FF,
                    [](const auto& row) {
                      for (std::uint32_t x = 0; x <= 0xFF; ++x) ExpectMember(Tag{0x00203100 + x}, row);
                    }),
            1);
  EXPECT_FALSE(LookupTag(Tag{0x0020, 0x3000}).has_value());
  EXPECT_FALSE(LookupTag(Tag{0x0020, 0x3200}).has_value());
}

TEST(RepeatingGroup, CoefficientElementsRepeatFrom10ToF0) {
  EXPECT_EQ(ForRows(0xFFFFFFF0, 0x002804F0,
                    [](const auto& row) {
                      const std::uint32_t low = row.Tag().Value() & 0xF;
                      for (std::uint32_t x = 0x10; x <= 0xF0; x += 0x10)
                        ExpectMember(Tag{0x00280400 + x + low}, row);
                    }),
            4);
}

TEST(RepeatingGroup, CoefficientElementsBelow10AreAttributesOfTheirOwn) {
  InitialiseDictionary();
  EXPECT_EQ(LookupTag(Tag{0x0028, 0x0400})->keyword, "TransformLabel");
  EXPECT_EQ(LookupTag(Tag{0x0028, 0x0410})->keyword, "RowsForNthOrderCoefficients");
}

TEST(RepeatingGroup, CodeTableElementsRepeatFrom00ToF0) {
  EXPECT_EQ(ForRows(0xFFFFFFF0, 0x002808F0,
                    [](const auto& row) {
                      const std::uint32_t low = row.Tag().Value() & 0xF;
                      for (std::uint32_t x = 0; x <= 0xF0; x += 0x10)
                        ExpectMember(Tag{0x00280800 + x + low}, row);
                    }),
            5);
}

TEST(RepeatingGroup, EscapeTripletsRepeatInTheUpperTwelveBits) {
  EXPECT_EQ(ForRows(0xFFFF0000, 0x10000000,
                    [](const auto& row) {
                      const std::uint32_t low = row.Tag().Value() & 0xF;
                      for (std::uint32_t x = 0; x <= 0xFFF0; x += 0x10)
                        ExpectMember(Tag{0x10000000 + x + low}, row);
                    }),
            6);
  EXPECT_FALSE(LookupTag(Tag{0x1000, 0x0006}).has_value());
}

TEST(RepeatingGroup, ZonalMapIsEveryElementOfItsGroup) {
  EXPECT_EQ(ForRows(0xFFFF0000, 0x10100000,
                    [](const auto& row) {
                      for (std::uint32_t x = 0; x <= 0xFFFF; ++x) ExpectMember(Tag{0x10100000 + x}, row);
                    }),
            1);
}

TEST(RepeatingGroup, OtherTagsStayAsTheyAre) {
  for (const std::uint32_t value :
       {0x00000000U, 0x00100010U, 0x00203000U, 0x00203200U, 0x00280400U, 0x0028040FU, 0x00280500U,
        0x0028070FU, 0x00280900U, 0x0FFE0010U, 0x10020010U, 0x10120010U, 0x4FFE0010U, 0x51000010U,
        0x5FFE0010U, 0x61000010U, 0x7EFE0010U, 0x7FE00010U, 0x80000010U, 0xFFFEE000U}) {
    EXPECT_EQ(CanonicalTag(Tag{value}), Tag{value}) << TagText(Tag{value});
  }
}

}  // namespace
}  // namespace vessa
