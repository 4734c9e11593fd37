#include "dicom/tag.h"

#include <gtest/gtest.h>

namespace vessa {
namespace {

TEST(Tag, HasTheGroupOnTop) {
  const Tag tag{0x7FE0, 0x0010};
  EXPECT_EQ(tag.Value(), 0x7FE00010U);
  EXPECT_EQ(tag.Group(), 0x7FE0);
  EXPECT_EQ(tag.Element(), 0x0010);
  EXPECT_EQ(tag, Tag{0x7FE00010U});
  EXPECT_EQ(tag, kPixelData);
}

TEST(Tag, IsPrivateInOddGroups) {
  EXPECT_FALSE((Tag{0x0008, 0x0011}.IsPrivate()));
  EXPECT_TRUE((Tag{0x0009, 0x0010}.IsPrivate()));
  EXPECT_TRUE((Tag{0xFFFF, 0xFFFF}.IsPrivate()));
}

TEST(Tag, OrdersAsAnUnsignedNumber) {
  EXPECT_LT((Tag{0x0008, 0xFFFF}), (Tag{0x0010, 0x0000}));
  EXPECT_LT(kPixelData, kItem);
}

TEST(TagText, IsEightUpperCaseDigits) {
  EXPECT_EQ(TagText(Tag{0x0010, 0x0010}), "00100010");
  EXPECT_EQ(TagText(Tag{0xABCD, 0xEF01}), "ABCDEF01");
  EXPECT_EQ(TagText(Tag{}), "00000000");
}

TEST(TagDisplay, PutsGroupAndElementInParentheses) {
  EXPECT_EQ(TagDisplay(Tag{0x0010, 0x0010}), "(0010,0010)");
  EXPECT_EQ(TagDisplay(Tag{0x6002, 0x0010}), "(6002,0010)");
  EXPECT_EQ(TagDisplay(Tag{0xFFFE, 0xE0DD}), "(FFFE,E0DD)");
  EXPECT_EQ(TagDisplay(Tag{0x0029, 0x1ABC}), "(0029,1ABC)");
}

}  // namespace
}  // namespace vessa
