#include "compose/swap_unit.h"

#include <gtest/gtest.h>

#include "dicom/status.h"

namespace vessa {
namespace {

TEST(SwapUnit, SignedShortsAndTagsAreNeverSwappedOnPurpose) {
  EXPECT_EQ(SwapUnitOf(Vr("SS")), 1);
  EXPECT_EQ(SwapUnitOf(Vr("AT")), 1);
}

TEST(SwapUnit, TableAsItStands) {
  EXPECT_EQ(SwapUnitOf(Vr("OX")), 1);
  EXPECT_EQ(SwapUnitOf(Vr("OB")), 1);
  EXPECT_EQ(SwapUnitOf(Vr("UN")), 1);
  EXPECT_EQ(SwapUnitOf(Vr("US")), 2);
  EXPECT_EQ(SwapUnitOf(Vr("OW")), 2);
  EXPECT_EQ(SwapUnitOf(Vr("SL")), 4);
  EXPECT_EQ(SwapUnitOf(Vr("UL")), 4);
  EXPECT_EQ(SwapUnitOf(Vr("FL")), 4);
  EXPECT_EQ(SwapUnitOf(Vr("OF")), 4);
  EXPECT_EQ(SwapUnitOf(Vr("FD")), 8);
}

TEST(SwapUnit, AnyOtherVrIsAnUnexpectedStatus) {
  for (const char* text : {"PN", "SQ", "XS", "NA", "OD", "UC", "", "U", "us"}) {
    EXPECT_FALSE(IsSwappedVr(Vr(text))) << text;
    try {
      SwapUnitOf(Vr(text));
      FAIL() << text;
    } catch (const Status status) {
      EXPECT_EQ(status, MakeStatus(0x8000FFFF)) << text;
    }
  }
}

TEST(SwapUnit, TheTwelveVrsOfTheTableAreLookedAt) {
  for (const char* text : {"SS", "US", "SL", "UL", "AT", "FL", "FD", "OX", "OB", "OW", "OF", "UN"}) {
    EXPECT_TRUE(IsSwappedVr(Vr(text))) << text;
  }
}

}  // namespace
}  // namespace vessa
