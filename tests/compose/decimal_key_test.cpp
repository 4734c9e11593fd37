#include "compose/decimal_key.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace vessa {
namespace {

TEST(DecimalKey, ReadsDigits) {
  EXPECT_EQ(ParseKeyNumber("0"), 0);
  EXPECT_EQ(ParseKeyNumber("1048592"), 1048592);
  EXPECT_EQ(ParseKeyNumber("-7"), -7);
  EXPECT_EQ(ParseKeyNumber("+7"), 7);
}

TEST(DecimalKey, KeepsAll32BitsOfATag) {
  EXPECT_EQ(static_cast<std::uint32_t>(ParseKeyNumber("2145386512")), 0x7FE00010U);
  EXPECT_EQ(static_cast<std::uint32_t>(ParseKeyNumber("2147483648")), 0x80000000U);
  EXPECT_EQ(static_cast<std::uint32_t>(ParseKeyNumber("4294893581")), 0xFFFEE00DU);
  EXPECT_EQ(static_cast<std::uint32_t>(ParseKeyNumber("4294967295")), 0xFFFFFFFFU);
  EXPECT_EQ(static_cast<std::uint32_t>(ParseKeyNumber("-1")), 0xFFFFFFFFU);
}

TEST(DecimalKey, SkipsBlanksBeforeAndAnythingBehindTheDigits) {
  EXPECT_EQ(ParseKeyNumber(" \t\n\v\f\r 12"), 12);
  EXPECT_EQ(ParseKeyNumber("12 13"), 12);
  EXPECT_EQ(ParseKeyNumber("12.9"), 12);
  EXPECT_EQ(ParseKeyNumber("12abc"), 12);
}

TEST(DecimalKey, GivesZeroWithoutDigits) {
  for (const char* text : {"", " ", "-", "+", "+-5", "-+5", "--5", "abc", "x12", ".5"}) {
    EXPECT_EQ(ParseKeyNumber(text), 0) << text;
  }
}

TEST(DecimalKey, HoldsTheEndsOfTheRange) {
  EXPECT_EQ(ParseKeyNumber("9223372036854775808"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(ParseKeyNumber("-9223372036854775809"), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(ParseKeyNumber("+99999999999999999999999"), std::numeric_limits<std::int64_t>::max());
}

TEST(NodeNumber, IsHeldTo32Bits) {
  EXPECT_EQ(ParseNodeNumber("17"), 17);
  EXPECT_EQ(ParseNodeNumber("2147483648"), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(ParseNodeNumber("-2147483649"), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(ParseNodeNumber("none"), 0);
}

}  // namespace
}  // namespace vessa
