#include "dicom/dictionary.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "tests/dicom/registry_file.h"

namespace vessa {
namespace {

class Dictionary : public ::testing::Test {
 protected:
  void SetUp() override { InitialiseDictionary(); }

  static void ExpectEntry(Tag tag, std::string_view text, std::string_view keyword, std::string_view vr,
                          std::string_view vm, std::string_view note = "") {
    const std::optional<TagEntry> entry = LookupTag(tag);
    ASSERT_TRUE(entry.has_value()) << TagDisplay(tag);
    EXPECT_EQ(entry->tag_text, text);
    EXPECT_EQ(entry->keyword, keyword) << text;
    EXPECT_EQ(entry->vr.Text(), vr) << text;
    EXPECT_EQ(entry->vm, vm) << text;
    EXPECT_EQ(entry->note, note) << text;
    ASSERT_TRUE(LookupVr(tag).has_value()) << text;
    EXPECT_EQ(LookupVr(tag)->Text(), vr) << text;
  }

  static void ExpectPrivate(Tag tag, std::string_view text, std::string_view vr) {
    ExpectEntry(tag, text, "(private)", vr, "1", "(private)");
  }

  static void ExpectUnknown(Tag tag) {
    EXPECT_FALSE(LookupTag(tag).has_value()) << TagDisplay(tag);
    EXPECT_FALSE(LookupVr(tag).has_value()) << TagDisplay(tag);
  }
};

TEST_F(Dictionary, KnowsTheTellingRows) {
  ExpectEntry(Tag{0x0002, 0x0010}, "00020010", "TransferSyntaxUID", "UI", "1");
  ExpectEntry(Tag{0x0010, 0x0010}, "00100010", "PatientName", "PN", "1");
  ExpectEntry(Tag{0x0028, 0x0106}, "00280106", "SmallestImagePixelValue", "XS", "1");
  ExpectEntry(Tag{0x7FE0, 0x0010}, "7FE00010", "PixelData", "OX", "1");
  ExpectEntry(Tag{0xFFFE, 0xE000}, "FFFEE000", "Item", "NA", "1");
  ExpectEntry(Tag{0xFFFE, 0xE00D}, "FFFEE00D", "ItemDelimitationItem", "NA", "1");
  ExpectEntry(Tag{0xFFFE, 0xE0DD}, "FFFEE0DD", "SequenceDelimitationItem", "NA", "1");
  ExpectEntry(Tag{0x0018, 0x925F}, "0018925F", "ASLBolusCutoffDelayTime", "UL", "1");
  ExpectEntry(Tag{0x0052, 0x0014}, "00520014", "ALinePixelSpacing", "FD", "1");
}

TEST_F(Dictionary, KnowsTheRowsThatNeedSpecialCareInTheRegistry) {
  ExpectEntry(Tag{0x0006, 0x0001}, "00060001", "CurrentFrameFunctionalGroupsSequence", "SQ", "1");
  ExpectEntry(Tag{0x0028, 0x1200}, "00281200", "GrayLookupTableData", "XS", "1-n or 1");
  ExpectEntry(Tag{0x0028, 0x3006}, "00283006", "LUTData", "XS", "1-n or 1");
  ExpectEntry(Tag{0x0018, 0x0061}, "00180061", "Anonymous", "DS", "1");
  ExpectEntry(Tag{0x0400, 0x0315}, "04000315", "Anonymous", "FL", "1");
  ExpectEntry(Tag{0x300A, 0x0782}, "300A0782", "Anonymous", "US", "1");
  ExpectEntry(Tag{0x0008, 0x0202}, "00080202", "Invalid", "UN", "1");
  ExpectEntry(Tag{0x0018, 0x9445}, "00189445", "Invalid", "UN", "1");
  ExpectEntry(Tag{0x0028, 0x0020}, "00280020", "Invalid", "UN", "1");
}

TEST_F(Dictionary, FindsEveryRowOfTheRegistryByItsTag) {
  ASSERT_FALSE(RegistryLines().empty());
  for (const RegistryLine& line : RegistryLines()) {
    if (line.Tag().IsPrivate()) continue;  // 50FF, 60FF and 7FFF are met through their members
    ExpectEntry(line.Tag(), line.tag_text, line.keyword, line.vr, line.vm);
  }
}

TEST_F(Dictionary, FillingItAgainChangesNothing) {
  InitialiseDictionary();
  ExpectEntry(Tag{0x0010, 0x0010}, "00100010", "PatientName", "PN", "1");
}

/// Tags of a group that have a VR.
std::size_t KnownElements(std::uint16_t group) {
  std::size_t found = 0;
  for (std::uint32_t element = 0; element <= 0xFFFF; ++element) {
    found += LookupVr(Tag(group, static_cast<std::uint16_t>(element))).has_value() ? 1U : 0U;
  }
  return found;
}

TEST_F(Dictionary, FindsNoTagOutsideTheRegistry) {
  constexpr std::uint16_t kRepeating[] = {0x0020, 0x0028, 0x1000, 0x1010, 0x50FF, 0x60FF, 0x7FFF};
  constexpr std::uint16_t kAbsent[] = {0x000A, 0x0102, 0x1002, 0x100E, 0x1012, 0x4FFC,
                                       0x5100, 0x5FFE, 0x6100, 0x7EFE, 0x8000, 0xFFF8};
  std::map<std::uint16_t, std::size_t> rows;
  for (const RegistryLine& line : RegistryLines()) ++rows[line.Tag().Group()];
  for (const std::uint16_t group : kRepeating) rows.erase(group);
  for (const std::uint16_t group : kAbsent) EXPECT_TRUE(rows.try_emplace(group, 0U).second);
  for (const auto& [group, expected] : rows) EXPECT_EQ(KnownElements(group), expected) << std::hex << group;
}

TEST_F(Dictionary, VrLookUpSaysWhatTheFullLookUpSays) {
  for (const std::uint32_t group : {0x0000U, 0x0008U, 0x0009U, 0x0020U, 0x0028U, 0x1000U, 0x1010U, 0x5002U,
                                    0x60FEU, 0x60FFU, 0x7FDEU, 0x7FE0U, 0x7FFFU, 0xFFFEU}) {
    for (std::uint32_t element = 0; element <= 0xFFFF; ++element) {
      const Tag tag{group << 16 | element};
      const std::optional<TagEntry> entry = LookupTag(tag);
      const std::optional<Vr> vr = LookupVr(tag);
      ASSERT_EQ(entry.has_value(), vr.has_value()) << TagDisplay(tag);
      ASSERT_TRUE(!vr.has_value() || entry->vr == *vr) << TagDisplay(tag);
    }
  }
}

TEST_F(Dictionary, DoesNotKnowOtherTags) {
  ExpectUnknown(Tag{0x0010, 0x0011});
  ExpectUnknown(Tag{0x0012, 0xFFFF});
  ExpectUnknown(Tag{0xFFFE, 0x1234});
  ExpectUnknown(Tag{0xFFFE, 0xE0DE});
}

TEST_F(Dictionary, PrivateTagsAreFoundWithoutARow) {
  ExpectPrivate(Tag{0x0009, 0x0000}, "00090000", "UN");
  ExpectPrivate(Tag{0x0029, 0x1BCD}, "00291bcd", "UN");
  ExpectPrivate(Tag{0xFFFF, 0xFFFF}, "ffffffff", "UN");
  ExpectPrivate(Tag{0x60FF, 0x3000}, "60ff3000", "UN");
  ExpectPrivate(Tag{0x7FFF, 0x0010}, "7fff0010", "LO");
}

TEST_F(Dictionary, PrivateCreatorsAreThoseOfTheLowTwelveBits) {
  ExpectPrivate(Tag{0x0009, 0x000F}, "0009000f", "UN");
  ExpectPrivate(Tag{0x0009, 0x0010}, "00090010", "LO");
  ExpectPrivate(Tag{0x0009, 0x00FF}, "000900ff", "LO");
  ExpectPrivate(Tag{0x0009, 0x0100}, "00090100", "LO");
  ExpectPrivate(Tag{0x0009, 0x0101}, "00090101", "UN");
  ExpectPrivate(Tag{0x0009, 0x1010}, "00091010", "LO");
  ExpectPrivate(Tag{0x0009, 0x1100}, "00091100", "LO");
  ExpectPrivate(Tag{0x0009, 0x1101}, "00091101", "UN");
  ExpectPrivate(Tag{0x0009, 0xF00F}, "0009f00f", "UN");
  ExpectPrivate(Tag{0x0009, 0xF010}, "0009f010", "LO");
}

TEST_F(Dictionary, PrivateGroupsBelowNineHaveNoCreators) {
  ExpectPrivate(Tag{0x0001, 0x0010}, "00010010", "UN");
  ExpectPrivate(Tag{0x0007, 0x0010}, "00070010", "UN");
}

}  // namespace
}  // namespace vessa
