// Items read as integers.

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <limits>
#include <stdexcept>

#include "tests/host/expect_failure.h"
#include "tests/host/list_bytes.h"

namespace vessa {
namespace {

constexpr std::int32_t kMost32 = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLeast32 = std::numeric_limits<std::int32_t>::min();
constexpr std::int64_t kMost64 = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kLeast64 = std::numeric_limits<std::int64_t>::min();

TEST(ListNumber, AnAbsentItemIsZero) {
  EXPECT_EQ(IntOf({1}), 0);
  EXPECT_EQ(Int64Of({1}), 0);
}

TEST(ListNumber, FillsTheBytesThatAnIntegerLeavesOut) {
  for (std::size_t length = 0; length <= 8; ++length) {
    Bytes positive(length, 0x11);
    Bytes negative(length, 0xEE);
    const std::uint64_t low = length == 8 ? ~std::uint64_t{0} : (std::uint64_t{1} << (8 * length)) - 1;
    EXPECT_EQ(Int64Of(ShortItem(4, positive)), static_cast<std::int64_t>(0x1111111111111111 & low));
    EXPECT_EQ(Int64Of(ShortItem(5, negative)), static_cast<std::int64_t>((0xEEEEEEEEEEEEEEEE & low) | ~low));
  }
}

TEST(ListNumber, SaturatesIntegersAt32Bits) {
  EXPECT_EQ(IntOf({6, 4, 0xFF, 0xFF, 0xFF, 0x7F}), kMost32);
  EXPECT_EQ(IntOf({6, 4, 0x00, 0x00, 0x00, 0x80}), kMost32);
  EXPECT_EQ(IntOf({10, 4, 0, 0, 0, 0, 0, 0, 0, 0x40}), kMost32);
  EXPECT_EQ(IntOf({6, 5, 0x00, 0x00, 0x00, 0x80}), kLeast32);
  EXPECT_EQ(IntOf({6, 5, 0xFF, 0xFF, 0xFF, 0x7F}), kLeast32);
  EXPECT_EQ(IntOf({10, 5, 0, 0, 0, 0, 0, 0, 0, 0x80}), kLeast32);
}

TEST(ListNumber, KeepsAll64Bits) {
  EXPECT_EQ(Int64Of({10, 4, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F}), kMost64);
  EXPECT_EQ(Int64Of({10, 5, 0, 0, 0, 0, 0, 0, 0, 0x80}), kLeast64);
}

// --- Decimals -------------------------------------------------------------------------------------------------

struct DecimalCase {
  int type;
  Bytes data;
  std::int64_t value;
};

TEST(ListNumber, ScalesDecimalsCuttingTowardsZero) {
  const DecimalCase cases[] = {
      {6, {0, 5}, 5},         {6, {3, 5}, 5000}, {6, {0xFE, 0xD2, 0x04}, 12},  // 12.34
      {6, {0xFE, 99}, 0},                                                      // .99
      {7, {0xFE, 0x9D}, 0},                                                    // -.99
      {7, {0xFF, 0x85}, -12},                                                  // -12.3
      {7, {2}, -100},                                                          // -1, 2
      {6, {127}, 0},                                                           // 0, 127
  };
  for (const DecimalCase& expected : cases) {
    EXPECT_EQ(IntOf(ShortItem(expected.type, expected.data)), expected.value);
    EXPECT_EQ(Int64Of(ShortItem(expected.type, expected.data)), expected.value);
  }
}

TEST(ListNumber, SaturatesScaledDecimals) {
  EXPECT_EQ(IntOf(ShortItem(6, {9, 2})), 2000000000);
  EXPECT_EQ(IntOf(ShortItem(6, {9, 3})), kMost32);
  EXPECT_EQ(IntOf(ShortItem(7, {9, 0xFE})), -2000000000);
  EXPECT_EQ(IntOf(ShortItem(7, {9, 0xFD})), kLeast32);
  EXPECT_EQ(Int64Of(ShortItem(6, {18, 9})), 9000000000000000000);
  EXPECT_EQ(Int64Of(ShortItem(6, {18, 10})), kMost64);
  EXPECT_EQ(Int64Of(ShortItem(7, {19})), kLeast64);
  EXPECT_EQ(Int64Of(ShortItem(6, {127, 1})), kMost64);
  EXPECT_EQ(IntOf(ShortItem(7, {127, 0xFF})), kLeast32);
}

TEST(ListNumber, SaturatesTheMantissaBeforeItIsScaledUpAndTheQuotientAfterwards) {
  EXPECT_EQ(IntOf(ShortItem(6, Join({{0}, {0, 0, 0, 0, 1}}))), kMost32);       // 2^32
  EXPECT_EQ(IntOf(ShortItem(6, Join({{0xFF}, {0, 0, 0, 0, 1}}))), 429496729);  // 2^32 / 10
  EXPECT_EQ(IntOf(ShortItem(6, Join({{0xFF}, {0, 0, 0, 0, 8}}))), kMost32);    // 2^35 / 10
  EXPECT_EQ(IntOf(ShortItem(7, Join({{0xFF}, {0, 0, 0, 0, 0xF8}}))), kLeast32);
}

TEST(ListNumber, DividesByTenPowersUpTo18) {
  const Bytes most = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F};
  EXPECT_EQ(Int64Of(ShortItem(6, Join({{0xEE}, most}))), 9);  // exponent -18
  EXPECT_EQ(Int64Of(ShortItem(6, Join({{0xED}, most}))), 0);  // exponent -19
  EXPECT_EQ(IntOf(ShortItem(6, Join({{0xEE}, most}))), 9);
  EXPECT_EQ(IntOf(ShortItem(6, Join({{0x80}, most}))), 0);
}

// --- Doubles --------------------------------------------------------------------------------------------------

Bytes DoubleItem(double value) {
  Bytes data;
  for (auto bits = std::bit_cast<std::uint64_t>(value); data.size() < 8; bits >>= 8) {
    data.push_back(static_cast<std::uint8_t>(bits & 0xFF));
  }
  return ShortItem(8, data);
}

TEST(ListNumber, CutsDoublesTowardsZero) {
  for (const auto& [value, expected] : {std::pair{1.9, 1}, {-1.9, -1}, {0.0, 0}, {-0.0, 0}, {255.0, 255}}) {
    EXPECT_EQ(IntOf(DoubleItem(value)), expected);
    EXPECT_EQ(Int64Of(DoubleItem(value)), expected);
  }
  EXPECT_EQ(Int64Of(DoubleItem(9007199254740993.0 * 1000)), 9007199254740992000);
}

TEST(ListNumber, KeepsTheLow32BitsOfADoubleWithoutSaturation) {
  EXPECT_EQ(IntOf(DoubleItem(2147483648.0)), kLeast32);
  EXPECT_EQ(IntOf(DoubleItem(4294967297.0)), 1);
  EXPECT_EQ(IntOf(DoubleItem(-2147483649.0)), kMost32);
}

TEST(ListNumber, ADoubleThat64BitsDoNotHoldIsTheLeastInteger) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const double value :
       {std::numeric_limits<double>::quiet_NaN(), -std::numeric_limits<double>::quiet_NaN(),
        std::numeric_limits<double>::signaling_NaN(), kInfinity, -kInfinity, 1e300, -1e300,
        9223372036854775808.0, -9223372036854777856.0}) {
    EXPECT_EQ(Int64Of(DoubleItem(value)), kLeast64);
    EXPECT_EQ(IntOf(DoubleItem(value)), 0);
  }
}

TEST(ListNumber, TheOutermostDoublesOf64BitsAreKept) {
  EXPECT_EQ(Int64Of(DoubleItem(9223372036854774784.0)), 9223372036854774784);
  EXPECT_EQ(Int64Of(DoubleItem(-9223372036854775808.0)), kLeast64);
}

// --- Text -----------------------------------------------------------------------------------------------------

struct TextCase {
  const char* text;
  std::int64_t value;
};

constexpr TextCase kTextCases[] = {
    {"", 0},
    {"0", 0},
    {"12", 12},
    {"-12", -12},
    {"+12", 12},
    {"--12", 12},
    {"-+-3", 3},
    {"+-+5", -5},
    {"---7", -7},
    {"abc", 0},
    {"12abc", 12},
    {" 12", 0},  // a blank is no sign
    {"12 34", 12},
    {"-", 0},
    {"+-+", 0},
    {"-x5", 0},
    {"x", 0},
    {".", 0},
    {"-.", 0},
    {".5", 0},
    {".5E1", 5},
    {"-.25E2", -25},
    {"12.", 12},
    {"12.99", 12},
    {"-12.99", -12},
    {"1.5E2", 150},
    {"1.5e2", 150},
    {"1.5E+2", 150},
    {"150E-1", 15},
    {"1.2.3", 1},
    {"12E", 12},  // the letter at the very end is no exponent
    {"12e", 12},
    {"12.5E", 12},
    {"12Ex", 12},
    {"12E+", 12},
    {"12E-", 12},
    {"12E--1", 12},
    {"12E1x9", 120},
    {"12E 1", 12},
    {"5-3", 5},
    {"0E999", 0},  // nothing stays nothing
    {"0E-999", 0},
    {"0.000E999", 0},
    {"1E-999", 0},
    {"-1E-167", 0},
    {"1E-166", 0},
    {"000000000000000000000000000012", 12},
    {"0.00000000000000000000001E23", 1},
};

TEST(ListNumber, ReadsTheNumberAtTheStartOfAText) {
  for (const TextCase& expected : kTextCases) {
    EXPECT_EQ(IntOf(TextItem(expected.text)), expected.value) << expected.text;
    EXPECT_EQ(Int64Of(TextItem(expected.text)), expected.value) << expected.text;
  }
}

TEST(ListNumber, Reads16BitTextAsIt8BitTextDoes) {
  for (const TextCase& expected : kTextCases) {
    const std::string_view text = expected.text;
    const std::u16string wide(text.begin(), text.end());
    EXPECT_EQ(IntOf(WideTextItem(wide)), expected.value) << expected.text;
    EXPECT_EQ(Int64Of(WideTextItem(wide)), expected.value) << expected.text;
  }
}

TEST(ListNumber, ACharacterAbove255EndsTheNumber) {
  EXPECT_EQ(IntOf(WideTextItem(u"12\u01345")), 12);  // its low byte is the digit 4
  EXPECT_EQ(IntOf(WideTextItem(u"\u012D5")), 0);     // its low byte is '-'
  EXPECT_EQ(IntOf(WideTextItem(u"1\u012E5")), 1);    // its low byte is '.'
  EXPECT_EQ(IntOf(WideTextItem(u"1\u01452")), 1);    // its low byte is 'E'
  EXPECT_EQ(IntOf(WideTextItem(u"1E\u0132")), 1);
  EXPECT_EQ(IntOf(WideTextItem(u"1.5\u0135")), 1);
}

TEST(ListNumber, RefusesHalfA16BitUnit) {
  ExpectFormatError([] { IntOf(ShortItem(2, {'1', 0, '2'})); });
  ExpectFormatError([] { Int64Of(ShortItem(2, {'1'})); });
}

TEST(ListNumber, SaturatesText) {
  EXPECT_EQ(IntOf(TextItem("2147483647")), kMost32);
  EXPECT_EQ(IntOf(TextItem("2147483648")), kMost32);
  EXPECT_EQ(IntOf(TextItem("-2147483648")), kLeast32);
  EXPECT_EQ(IntOf(TextItem("-2147483649")), kLeast32);
  EXPECT_EQ(IntOf(TextItem("4294967296")), kMost32);
  EXPECT_EQ(IntOf(TextItem("1E100")), kMost32);
  EXPECT_EQ(Int64Of(TextItem("9223372036854775807")), kMost64);
  EXPECT_EQ(Int64Of(TextItem("-9223372036854775807")), -kMost64);
  EXPECT_EQ(Int64Of(TextItem("1E19")), kMost64);
  EXPECT_EQ(Int64Of(TextItem("-1E19")), kLeast64);
}

TEST(ListNumber, DropsTheDigitsThatTheMantissaDoesNotHold) {
  // One digit more than fits: all further digits only count, smaller ones too.
  EXPECT_EQ(Int64Of(TextItem("9223372036854775808")), 9223372036854775800);
  EXPECT_EQ(Int64Of(TextItem("-9223372036854775808")), -9223372036854775800);
  EXPECT_EQ(Int64Of(TextItem("92233720368547758091E-1")), 9223372036854775800);
  EXPECT_EQ(Int64Of(TextItem("92233720368547758099.99E-2")), 922337203685477580);
  EXPECT_EQ(Int64Of(TextItem("1.00000000000000000099999")), 1);
  EXPECT_EQ(Int64Of(TextItem("123456789012345678901234567890E-20")), 1234567890);
}

TEST(ListNumber, AnExponentOf167IsTooLarge) {
  ExpectFailure<std::overflow_error>([] { IntOf(TextItem("1E167")); }, "Exponent too large");
  ExpectFailure<std::overflow_error>([] { IntOf(TextItem("1E999")); }, "Exponent too large");
  ExpectFailure<std::overflow_error>([] { Int64Of(TextItem("1E99999999999999999999")); },
                                     "Exponent too large");
  ExpectFailure<std::overflow_error>([] { IntOf(TextItem(".00001E170")); }, "Exponent too large");
  ExpectFailure<std::out_of_range>([] { IntOf(WideTextItem(u"1E999")); }, "Exponent too large");
}

TEST(ListNumber, AnExponentThat8BitsDoNotHoldMovesIntoTheMantissa) {
  EXPECT_EQ(IntOf(TextItem("1E127")), kMost32);
  EXPECT_EQ(IntOf(TextItem("1E145")), kMost32);  // 10^18 * 10^127
  EXPECT_EQ(IntOf(TextItem("-1E145")), kLeast32);
  ExpectFailure<std::out_of_range>([] { IntOf(TextItem("1E146")); }, "Exponent too large");
  ExpectFailure<std::out_of_range>([] { IntOf(TextItem("-1E166")); }, "Exponent too large");
  ExpectFailure<std::out_of_range>([] { IntOf(WideTextItem(u"1E146")); }, "Exponent too large");
  EXPECT_EQ(IntOf(TextItem("9E145")), kMost32);
  ExpectFailure<std::out_of_range>([] { IntOf(TextItem("10E145")); }, "Exponent too large");
}

TEST(ListNumber, ATextOfVeryManyDigitsIsTooLarge) {
  ExpectFailure<std::out_of_range>([] { IntOf(TextItem(std::string(30000, '9'))); }, "Exponent too large");
  EXPECT_EQ(IntOf(TextItem(std::string(30000, '0'))), 0);
  EXPECT_EQ(IntOf(TextItem("." + std::string(30000, '0') + "1")), 0);
}

}  // namespace
}  // namespace vessa
