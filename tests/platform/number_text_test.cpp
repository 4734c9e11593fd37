#include "platform/number_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <clocale>
#include <cmath>
#include <limits>
#include <random>

namespace vessa {
namespace {

using namespace std::string_view_literals;

struct DoubleCase {
  double value;
  const char* text;
};

// Exact digits, from Python's decimal module with 60 digits of precision.
constexpr DoubleCase kDoubleCases[] = {
    {1.0, "1."},
    {3.0, "3."},
    {0.0, "0."},
    {-0.0, "-0."},
    {1e-05, "1.0000000000000000818030539140313095458623138256371021270752e-05"},
    {0.1, "0.1000000000000000055511151231257827021181583404541015625"},
    {0.5, "0.5"},
    {0.05, "5.000000000000000277555756156289135105907917022705078125e-02"},
    {0.0625, "6.25e-02"},
    {-2.5, "-2.5"},
    {0.3333333333333333, "0.333333333333333314829616256247390992939472198486328125"},
    {100.0, "100."},
    {1000000000000000.0, "1000000000000000."},
    {1e+22, "10000000000000000000000."},
    {1e+23, "99999999999999991611392."},
    {123456789.125, "123456789.125"},
    {0.09999999999999999, "9.999999999999999167332731531132594682276248931884765625e-02"},
    {1e+60, "999999999999999949387135297074018866963645011013410073083904."},
    {1e+59, "99999999999999997168788049560464200849936328366177157906432."},
    {-1e+60, "-999999999999999949387135297074018866963645011013410073083904."},
    {1e+100, "1.00000000000000001590289110975991804683608085639452813897813e+100"},
    {1.7976931348623157e+308, "1.79769313486231570814527423731704356798070567525844996598917e+308"},
    {2.2250738585072014e-308, "2.22507385850720138309023271733240406421921598046233183055333e-308"},
    {5e-324, "4.94065645841246544176568792868221372365059802614324764425586e-324"},
    {4.9e-320, "4.90014307545348322514320928766701957111666312232887301357296e-320"},
    {3.141592653589793, "3.141592653589793115997963468544185161590576171875"},
    {7.888609052210118e-31, "7.88860905221011805411728565282786229673206435109023004770279e-31"},
    {8.034690221294951e+59, "803469022129495137770981046170581301261101496891396417650688."},
    {1.6069380442589903e+60, "1.60693804425899027554196209234116260252220299378279283530138e+60"},
    {0.9999999999999999, "0.99999999999999988897769753748434595763683319091796875"},
    {0.30000000000000004, "0.3000000000000000444089209850062616169452667236328125"},
    {-1e-10, "-1.0000000000000000364321973154977415791655470655996396089904e-10"},
    {6.02214076e+23, "602214075999999987023872."},
    {255.0, "255."},
};

TEST(DoubleText, PrintsExactDigits) {
  for (const DoubleCase& expected : kDoubleCases) EXPECT_EQ(DoubleText(expected.value), expected.text);
}

TEST(DoubleText, IsFixedForExponentsMinusOneTo59) {
  EXPECT_EQ(DoubleText(0.125), "0.125");
  EXPECT_EQ(DoubleText(0.09375), "9.375e-02");
  EXPECT_EQ(DoubleText(std::ldexp(1.0, 199)),
            "803469022129495137770981046170581301261101496891396417650688.");
  EXPECT_EQ(DoubleText(std::ldexp(1.0, 200)),
            "1.60693804425899027554196209234116260252220299378279283530138e+60");
}

TEST(DoubleText, NamesWhatIsNoNumberAsTheRuntimeOfWindowsDoes) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(DoubleText(kInfinity), "inf");
  EXPECT_EQ(DoubleText(-kInfinity), "-inf");
  EXPECT_EQ(DoubleText(std::bit_cast<double>(0x7FF8000000000000)), "nan");
  EXPECT_EQ(DoubleText(std::bit_cast<double>(0xFFF8000000000001)), "-nan");
  EXPECT_EQ(DoubleText(std::bit_cast<double>(0x7FF0000000000001)), "nan(snan)");
  EXPECT_EQ(DoubleText(std::bit_cast<double>(0xFFF0000000000001)), "-nan(snan)");
  EXPECT_EQ(DoubleText(std::bit_cast<double>(0xFFF8000000000000)), "-nan(ind)");
}

TEST(DoubleText, ReadsBackAsTheSameNumber) {
  std::mt19937_64 random(20240229);
  for (int i = 0; i < 20000; ++i) {
    const auto value = std::bit_cast<double>(random());
    if (!std::isfinite(value)) continue;
    ASSERT_EQ(std::bit_cast<std::uint64_t>(std::strtod(DoubleText(value).c_str(), nullptr)),
              std::bit_cast<std::uint64_t>(value));
  }
}

TEST(DoubleText, DoesNotFollowTheLocale) {
  const bool has_comma = std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr ||
                         std::setlocale(LC_NUMERIC, "German_Germany.1252") != nullptr;
  if (!has_comma) GTEST_SKIP() << "no locale with a decimal comma is installed";
  const std::string text = DoubleText(0.5);
  std::setlocale(LC_NUMERIC, "C");
  EXPECT_EQ(text, "0.5");
}

struct IntegerCase {
  const char* text;
  std::int64_t value;
};

constexpr IntegerCase kCommonIntegers[] = {
    {"", 0},
    {"0", 0},
    {"7", 7},
    {"-7", -7},
    {"+7", 7},
    {"  42", 42},
    {"\t\n\v\f\r42", 42},
    {"12abc", 12},
    {"abc", 0},
    {"-", 0},
    {"+", 0},
    {"--7", 0},
    {"+-7", 0},
    {"-+7", 0},
    {"- 7", 0},
    {"0x10", 0},
    {"0007", 7},
    {"1.9", 1},
    {"1e3", 1},
    {"-0", 0},
    {"2147483647", 2147483647},
    {"-2147483648", -2147483648LL},
};

TEST(ParseInteger, ReadsAnOptionalSignAndTheDigitsThatFollow) {
  for (const IntegerCase& expected : kCommonIntegers) {
    EXPECT_EQ(ParseInteger32(expected.text), expected.value) << expected.text;
    EXPECT_EQ(ParseInteger64(expected.text), expected.value) << expected.text;
  }
}

TEST(ParseInteger, StopsAtAZeroByte) {
  EXPECT_EQ(ParseInteger32("12\0003"sv), 12);
  EXPECT_EQ(ParseInteger64("\00012"sv), 0);
}

TEST(ParseInteger, StopsWhereTheTextEnds) {
  EXPECT_EQ(ParseInteger32("123456"sv.substr(0, 3)), 123);
  EXPECT_EQ(ParseInteger64("-123456"sv.substr(0, 4)), -123);
  EXPECT_EQ(ParseInteger32("-5"sv.substr(0, 1)), 0);
  EXPECT_EQ(ParseInteger32("  5"sv.substr(0, 2)), 0);
}

TEST(ParseInteger32, SaturatesAt32Bits) {
  EXPECT_EQ(ParseInteger32("2147483648"), 2147483647);
  EXPECT_EQ(ParseInteger32("-2147483649"), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(ParseInteger32("99999999999999999999999"), 2147483647);
  EXPECT_EQ(ParseInteger32("-99999999999999999999999"), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(ParseInteger32("+4294967296"), 2147483647);
}

TEST(ParseInteger64, KeepsAllBitsOfATag) {
  EXPECT_EQ(static_cast<std::uint32_t>(ParseInteger64("2145386512")), 0x7FE00010U);
  EXPECT_EQ(static_cast<std::uint32_t>(ParseInteger64("4294893581")), 0xFFFEE00DU);
  EXPECT_EQ(static_cast<std::uint32_t>(ParseInteger64("-73715")), 0xFFFEE00DU);
}

TEST(ParseInteger64, SaturatesAt64Bits) {
  EXPECT_EQ(ParseInteger64("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(ParseInteger64("9223372036854775808"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(ParseInteger64("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(ParseInteger64("-9223372036854775809"), std::numeric_limits<std::int64_t>::min());
}

}  // namespace
}  // namespace vessa
