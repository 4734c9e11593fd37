#include "compose/pixel_framing.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vessa {
namespace {

using Bytes = std::vector<std::uint8_t>;

/// An offset table item of that length field and that many bytes, and as many bytes behind it.
Bytes Framed(std::uint32_t length_field, std::size_t table_bytes, const Bytes& behind) {
  Bytes bytes{0xFE, 0xFF, 0x00, 0xE0};
  for (unsigned shift = 0; shift < 32; shift += 8)
    bytes.push_back(static_cast<std::uint8_t>(length_field >> shift));
  bytes.insert(bytes.end(), table_bytes, 0);
  bytes.insert(bytes.end(), behind.begin(), behind.end());
  return bytes;
}

Bytes ItemAndZeros(std::size_t zeros) {
  Bytes bytes{0xFE, 0xFF, 0x00, 0xE0};
  bytes.insert(bytes.end(), zeros, 0);
  return bytes;
}

bool BeginsFramedLittleEndian(const Bytes& bytes) { return BeginsFramed(bytes, ByteOrder::kLittleEndian); }

TEST(PixelFraming, AnEmptyOffsetTableAndAFragmentAreFramed) {
  EXPECT_TRUE(BeginsFramedLittleEndian(Framed(0, 0, ItemAndZeros(12))));
}

TEST(PixelFraming, NeedsSixteenBytesFromTheFragmentOn) {
  EXPECT_TRUE(BeginsFramedLittleEndian(Framed(4, 4, ItemAndZeros(12))));
  EXPECT_FALSE(BeginsFramedLittleEndian(Framed(4, 4, ItemAndZeros(11))));
  EXPECT_FALSE(BeginsFramedLittleEndian(Framed(0, 0, ItemAndZeros(11))));
}

TEST(PixelFraming, FewerThanSixteenBytesAreNotFramed) {
  const Bytes whole = Framed(0, 0, ItemAndZeros(12));
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const Bytes prefix(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_FALSE(BeginsFramedLittleEndian(prefix)) << size;
  }
}

TEST(PixelFraming, OtherTagsAreNotFramed) {
  Bytes first = Framed(0, 0, ItemAndZeros(12));
  first[2] = 0x0D;
  EXPECT_FALSE(BeginsFramedLittleEndian(first));
  Bytes second = Framed(0, 0, ItemAndZeros(12));
  second[8 + 2] = 0xDD;
  EXPECT_FALSE(BeginsFramedLittleEndian(second));
}

TEST(PixelFraming, ALengthNearTheEndOf32BitsDoesNotWrap) {
  for (std::uint32_t length = 0xFFFFFFF0U; length != 0; ++length) {
    EXPECT_FALSE(BeginsFramedLittleEndian(Framed(length, 0, ItemAndZeros(60)))) << std::hex << length;
  }
}

TEST(PixelFraming, ReadsTheLengthInTheByteOrderOfTheTarget) {
  const Bytes big{0xFF, 0xFE, 0xE0, 0x00, 0x00, 0x00, 0x00, 0x04, 1, 2, 3, 4,  //
                  0xFF, 0xFE, 0xE0, 0x00, 0x00, 0x00, 0x00, 0x02, 9, 9, 0, 0, 0, 0, 0, 0};
  EXPECT_TRUE(BeginsFramed(big, ByteOrder::kBigEndian));
  EXPECT_FALSE(BeginsFramed(big, ByteOrder::kLittleEndian));
}

}  // namespace
}  // namespace vessa
