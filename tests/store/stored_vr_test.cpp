#include "emulator/store/stored_vr.h"

#include <gtest/gtest.h>

namespace emulator {
namespace {

constexpr std::uint32_t kSmallestValue = 0x00280106;
constexpr std::uint32_t kLutData = 0x00283006;
constexpr std::uint32_t kOverlayData = 0x60003000;
constexpr std::uint32_t kPixels = 0x7FE00010;
constexpr std::uint32_t kWaveform = 0x54001010;

TEST(StoredVr, KeepsTheDictionarysVr) {
  EXPECT_EQ(StoredVr(0x00100010, "PN", 8), "PN");
  EXPECT_EQ(StoredVr(0x00081140, "SQ", 0xFFFFFFFF), "SQ");
  EXPECT_EQ(StoredVr(0x00091234, "UN", 8), "UN");
}

TEST(StoredVr, TakesTheCreatorsRangeOfPrivateElementsAlone) {
  EXPECT_EQ(StoredVr(0x00090010, "LO", 8), "LO");
  EXPECT_EQ(StoredVr(0x000900FF, "LO", 8), "LO");
  EXPECT_EQ(StoredVr(0x00090100, "LO", 8), "UN");  // the library's range is one element longer
  EXPECT_EQ(StoredVr(0x00091010, "LO", 8), "UN");  // and looks at the low digits only
  EXPECT_EQ(StoredVr(0x0009000F, "UN", 8), "UN");
}

TEST(StoredVr, CallsUnknownWhatDoesNotFitItsLength) {
  EXPECT_EQ(StoredVr(0x00104000, "LT", 0xFFFE), "LT");
  EXPECT_EQ(StoredVr(0x00104000, "LT", 0x10000), "UN");
  EXPECT_EQ(StoredVr(0x00090010, "LO", 0x10000), "UN");
  EXPECT_EQ(StoredVr(0x00081190, "UT", 0x10000), "UT");
  EXPECT_EQ(StoredVr(0x00420011, "OB", 0x10000), "OB");
}

TEST(StoredVr, CallsUnknownWhatTheLibraryWritesWithTheWrongLengthForm) {
  for (const char* const vr : {"OD", "OL", "OV", "SV", "UC", "UR", "UV"})
    EXPECT_EQ(StoredVr(0x00080119, vr, 4), "UN");
}

TEST(ResolvedVr, FollowsThePixelRepresentation) {
  PixelDescription description;
  EXPECT_EQ(ResolvedVr(kSmallestValue, "XS", 2, description), "US");
  description.pixel_representation = 0;
  EXPECT_EQ(ResolvedVr(kSmallestValue, "XS", 2, description), "US");
  description.pixel_representation = 1;
  EXPECT_EQ(ResolvedVr(kSmallestValue, "XS", 2, description), "SS");
}

TEST(ResolvedVr, TakesLookUpTablesForUnsignedAndLongOnesForWords) {
  PixelDescription description;
  description.pixel_representation = 1;
  EXPECT_EQ(ResolvedVr(kLutData, "XS", 512, description), "US");
  EXPECT_EQ(ResolvedVr(kLutData, "XS", 0x20000, description), "OW");
  EXPECT_EQ(ResolvedVr(kSmallestValue, "XS", 0x20000, description), "OW");
}

TEST(ResolvedVr, TakesPixelDataOfUpToEightBitsForBytes) {
  PixelDescription description;
  EXPECT_EQ(ResolvedVr(kPixels, "OX", 4, description), "OW");
  description.bits_allocated = 8;
  EXPECT_EQ(ResolvedVr(kPixels, "OX", 4, description), "OB");
  EXPECT_EQ(ResolvedVr(kOverlayData, "OX", 4, description), "OW");
  description.bits_allocated = 1;
  EXPECT_EQ(ResolvedVr(kPixels, "OX", 4, description), "OB");
  description.bits_allocated = 16;
  EXPECT_EQ(ResolvedVr(kPixels, "OX", 4, description), "OW");
}

TEST(ResolvedVr, TakesWaveformsByTheirOwnBits) {
  PixelDescription description;
  description.bits_allocated = 8;
  EXPECT_EQ(ResolvedVr(kWaveform, "OX", 4, description), "OW");
  description.waveform_bits_allocated = 8;
  EXPECT_EQ(ResolvedVr(kWaveform, "OX", 4, description), "OB");
}

}  // namespace
}  // namespace emulator
