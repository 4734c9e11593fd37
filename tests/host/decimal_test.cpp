// Numbers in text, before they are cut to integers.

#include "host/decimal.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

#include "tests/host/expect_failure.h"

namespace vessa {
namespace {

constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();

TEST(ParseDecimal, KeepsFractionAndExponent) {
  EXPECT_EQ(ParseDecimal("12.34"), (Decimal{1234, -2}));
  EXPECT_EQ(ParseDecimal("-.50"), (Decimal{-50, -2}));
  EXPECT_EQ(ParseDecimal("1.5E2"), (Decimal{15, 1}));
  EXPECT_EQ(ParseDecimal("7E-3"), (Decimal{7, -3}));
  EXPECT_EQ(ParseDecimal("1E127"), (Decimal{1, 127}));
  EXPECT_EQ(ParseDecimal("1E-128"), (Decimal{1, -128}));
}

TEST(ParseDecimal, CountsTheDigitsThatHaveNoRoom) {
  EXPECT_EQ(ParseDecimal("9223372036854775807"), (Decimal{kMost, 0}));
  EXPECT_EQ(ParseDecimal("9223372036854775808"), (Decimal{922337203685477580, 1}));
  EXPECT_EQ(ParseDecimal("92233720368547758081"),
            (Decimal{922337203685477580, 2}));  // 1 alone would have room
  EXPECT_EQ(ParseDecimal("9223372036854775809.9"), (Decimal{922337203685477580, 1}));
  EXPECT_EQ(ParseDecimal("9.223372036854775809"), (Decimal{922337203685477580, -17}));
  EXPECT_EQ(ParseDecimal("9.2233720368547758091"), (Decimal{922337203685477580, -17}));
  EXPECT_EQ(ParseDecimal("10000000000000000000"), (Decimal{1000000000000000000, 1}));
}

TEST(ParseDecimal, MovesAnExponentAbove127IntoTheMantissa) {
  EXPECT_EQ(ParseDecimal("1E128"), (Decimal{10, 127}));
  EXPECT_EQ(ParseDecimal("-1E145"), (Decimal{-1000000000000000000, 127}));
  EXPECT_EQ(ParseDecimal("922337203685477580E128"), (Decimal{9223372036854775800, 127}));
  EXPECT_EQ(ParseDecimal("-922337203685477580E128"), (Decimal{-9223372036854775800, 127}));
  ExpectFailure<std::out_of_range>([] { ParseDecimal("922337203685477581E128"); }, "Exponent too large");
  ExpectFailure<std::out_of_range>([] { ParseDecimal("-922337203685477581E128"); }, "Exponent too large");
}

TEST(ParseDecimal, CutsDigitsOffForAnExponentBelowMinus128) {
  EXPECT_EQ(ParseDecimal("123E-130"), (Decimal{1, -128}));
  EXPECT_EQ(ParseDecimal("-199E-130"), (Decimal{-1, -128}));
  EXPECT_EQ(ParseDecimal("9223372036854775807E-146"), (Decimal{9, -128}));
  EXPECT_EQ(ParseDecimal("9223372036854775807E-147").mantissa, 0);
  EXPECT_EQ(ParseDecimal("9223372036854775807E-148"), Decimal{});
  EXPECT_EQ(ParseDecimal("1E-129").mantissa, 0);
}

TEST(ParseDecimal, NothingIsNothingWhateverItsExponent) {
  EXPECT_EQ(ParseDecimal(""), Decimal{});
  EXPECT_EQ(ParseDecimal("0.00E5"), Decimal{});
  EXPECT_EQ(ParseDecimal("-0"), Decimal{});
  EXPECT_EQ(ParseDecimal("1E-167"), Decimal{});
}

}  // namespace
}  // namespace vessa
