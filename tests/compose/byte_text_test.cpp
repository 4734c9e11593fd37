#include "compose/byte_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vessa {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

TEST(ByteText, EveryCharacterUpTo255IsTheByteOfItsNumber) {
  std::u16string characters;
  std::vector<std::uint8_t> expected;
  for (unsigned value = 0; value < 256; ++value) {
    characters.push_back(static_cast<char16_t>(value));
    expected.push_back(static_cast<std::uint8_t>(value));
  }
  std::vector<std::uint8_t> storage;
  EXPECT_THAT(ToBytes(characters, storage), ElementsAreArray(expected));
  EXPECT_EQ(ByteCount(characters), 256U);
}

TEST(ByteText, StorageIsUsedAgainAndNeverShrinks) {
  std::vector<std::uint8_t> storage{1, 2, 3};
  EXPECT_THAT(ToBytes(u"A", storage), ElementsAre(0x41));
  EXPECT_THAT(ToBytes(u"", storage), IsEmpty());
  EXPECT_EQ(ByteCount(u""), 0U);
  EXPECT_EQ(storage.size(), 3U);
}

TEST(ByteText, CopiesBytes) {
  const std::vector<std::uint8_t> bytes{0, 0xFF, 0x80};
  std::vector<std::uint8_t> storage;
  EXPECT_THAT(CopyBytes(bytes, storage), ElementsAre(0, 0xFF, 0x80));
  EXPECT_THAT(CopyBytes({}, storage), IsEmpty());
}

TEST(ByteText, ACharacterAbove255GoesThroughTheCodePageAndTheBytesAroundItStay) {
  std::vector<std::uint8_t> storage;
  const std::u16string_view characters = u"\u0081\u20AC\u00FF";
  const std::span<std::uint8_t> bytes = ToBytes(characters, storage);
  ASSERT_GE(bytes.size(), 2U);
  EXPECT_EQ(bytes.front(), 0x81);
  EXPECT_EQ(bytes.back(), 0xFF);
  EXPECT_EQ(ByteCount(characters), bytes.size());
}

TEST(ByteText, TheFirstCharacterAbove255IsNoByte) {
  std::vector<std::uint8_t> storage;
  const std::span<std::uint8_t> bytes = ToBytes(u"\u0100", storage);
  ASSERT_FALSE(bytes.empty());
  EXPECT_NE(bytes.front(), 0);  // its low half
}

}  // namespace
}  // namespace vessa
