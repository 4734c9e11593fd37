#include "dicom/vr.h"

#include <gtest/gtest.h>

namespace vessa {
namespace {

TEST(Vr, IsTwoLetters) {
  EXPECT_EQ(Vr('P', 'N').Text(), "PN");
  EXPECT_EQ(Vr("PN").First(), 'P');
  EXPECT_EQ(Vr("PN").Second(), 'N');
  EXPECT_EQ(Vr('\xFF', '\x80').Text(), "\xFF\x80");
  EXPECT_EQ(Vr("PNX"), Vr('P', 'N'));
  EXPECT_FALSE(Vr("PN") == Vr("PM"));
  EXPECT_FALSE(Vr("PN") == Vr("SN"));
}

TEST(Vr, AZeroByteEndsTheText) {
  EXPECT_EQ(Vr('P', '\0').Text(), "P");
  EXPECT_EQ(Vr('\0', 'N').Text(), "");
  EXPECT_EQ(Vr("P").Text(), "P");
  EXPECT_FALSE(Vr('P', '\0') == Vr("PN"));
}

TEST(Vr, IsEmptyWithoutLetters) {
  EXPECT_TRUE(Vr().IsEmpty());
  EXPECT_TRUE(Vr("").IsEmpty());
  EXPECT_FALSE(Vr("P").IsEmpty());
}

TEST(HasLongLength, IsTrueForSevenCodes) {
  for (const char* code : {"OX", "OB", "OW", "OF", "SQ", "UT", "UN"})
    EXPECT_TRUE(HasLongLength(Vr(code))) << code;
}

TEST(HasLongLength, IsFalseForAllOthersTheLaterLongOnesAmongThem) {
  for (const char* code :
       {"OD", "OL", "OV", "UC", "UR", "SV", "UV", "AE", "AS", "AT", "CS", "DA", "DS", "DT", "FD", "FL", "IS",
        "LO", "LT", "PN", "SH", "SL", "SS", "ST", "TM", "UI", "UL", "US", "XS", "NA", "ob", "ZZ", "O",  ""}) {
    EXPECT_FALSE(HasLongLength(Vr(code))) << code;
  }
}

}  // namespace
}  // namespace vessa
