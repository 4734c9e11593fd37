// Items read as text.

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/host/expect_failure.h"
#include "tests/host/list_bytes.h"

namespace vessa {
namespace {

using namespace std::string_literals;

TEST(ListText, AnAbsentItemIsEmpty) { EXPECT_EQ(TextOf({1}), ""); }

TEST(ListText, KeepsThe8BitTextByteForByte) {
  EXPECT_EQ(TextOf(ShortItem(1, {})), "");
  EXPECT_EQ(TextOf(ShortItem(1, {0x00, 0x80, 0xFF, 'a'})), "\x00\x80\xFF"s + "a");
}

TEST(ListText, NarrowsThe16BitText) {
  EXPECT_EQ(TextOf(WideTextItem(u"")), "");
  EXPECT_EQ(TextOf(WideTextItem(u"Doe^John")), "Doe^John");
  EXPECT_EQ(TextOf(WideTextItem(u"\u4E2D")), "?");
}

TEST(ListText, RefusesHalfA16BitUnit) {
  ExpectFormatError([] { TextOf(ShortItem(2, {'a'})); });
  ExpectFormatError([] { TextOf(ShortItem(2, {'a', 0, 'b'})); });
}

TEST(ListText, PrintsIntegers) {
  EXPECT_EQ(TextOf({2, 4}), "0");
  EXPECT_EQ(TextOf({3, 4, 0xFF}), "255");
  EXPECT_EQ(TextOf({6, 4, 0xFF, 0xFF, 0xFF, 0x7F}), "2147483647");
  EXPECT_EQ(TextOf({6, 4, 0x00, 0x00, 0x00, 0x80}), "2147483648");
  EXPECT_EQ(TextOf({10, 4, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F}), "9223372036854775807");
  EXPECT_EQ(TextOf({2, 5}), "-1");
  EXPECT_EQ(TextOf({3, 5, 0x00}), "-256");
  EXPECT_EQ(TextOf({6, 5, 0x00, 0x00, 0x00, 0x80}), "-2147483648");
  EXPECT_EQ(TextOf({6, 5, 0xFF, 0xFF, 0xFF, 0x7F}), "-2147483649");
  EXPECT_EQ(TextOf({10, 5, 0x01, 0, 0, 0, 0, 0, 0, 0x80}), "-9223372036854775807");
}

TEST(ListText, PrintsTheLeastIntegerByItsName) {
  // Kept: the one integer whose text is no number.
  EXPECT_EQ(TextOf({10, 5, 0, 0, 0, 0, 0, 0, 0, 0x80}), "LONG64_MI");
}

TEST(ListText, RefusesIntegersOfMoreThan64Bits) {
  for (const Bytes& bytes :
       {ShortItem(4, {0, 0, 0, 0, 0, 0, 0, 0x80}), ShortItem(4, Bytes(9, 0)),
        ShortItem(5, {0, 0, 0, 0, 0, 0, 0, 0x7F}), ShortItem(5, Bytes(9, 0xFF)), ShortItem(6, Bytes(10, 0)),
        ShortItem(7, Bytes(10, 0xFF)), ShortItem(7, {0, 0, 0, 0, 0, 0, 0, 0, 0x7F})}) {
    const auto expect = [&](auto read) { ExpectFailure<std::out_of_range>(read, "LONGLONG too large"); };
    expect([&] { TextOf(bytes); });
    expect([&] { IntOf(bytes); });
    expect([&] { Int64Of(bytes); });
  }
}

struct DecimalCase {
  const char* text;
  int type;
  Bytes data;  // the exponent, then the mantissa
};

TEST(ListText, PrintsDecimals) {
  const DecimalCase cases[] = {
      {"12.34", 6, {0xFE, 0xD2, 0x04}},  // 1234, -2
      {"5000", 6, {3, 5}},               // 5, 3
      {".005", 6, {0xFD, 5}},            // 5, -3
      {"12.3", 6, {0xFE, 0xCE, 0x04}},   // 1230, -2
      {"12", 6, {0xFE, 0xB0, 0x04}},     // 1200, -2
      {"120", 6, {0xFF, 0xB0, 0x04}},    // 1200, -1
      {"5", 6, {0, 5}},                  // 5, 0
      {".5", 6, {0xFF, 5}},              // 5, -1
      {".25", 6, {0xFE, 25}},            // as many digits as places
      {"0", 6, {0xFD}},                  // no mantissa: 0
      {"0", 6, {127, 0}},                // 0, 127
      {"1", 6, {0xFD, 0xE8, 0x03}},      // 1000, -3
      {".1", 6, {0xFC, 0xE8, 0x03}},     // 1000, -4
      {"-.5", 7, {0xFF, 0xFB}},          // -5, -1
      {"-1", 7, {0}},                    // no mantissa: -1
      {"-10", 7, {1}},                   // -1, 1
      {"-12.5", 7, {0xFF, 0x83}},        // -125, -1
      {"-256", 7, {0, 0x00}},            // -256, 0
  };
  for (const DecimalCase& expected : cases)
    EXPECT_EQ(TextOf(ShortItem(expected.type, expected.data)), expected.text);
}

TEST(ListText, PrintsDecimalsOfTheGreatestExponents) {
  EXPECT_EQ(TextOf(ShortItem(6, {127, 7})), "7" + std::string(127, '0'));
  EXPECT_EQ(TextOf(ShortItem(6, {0x80, 7})), "." + std::string(127, '0') + "7");
}

TEST(ListText, PrintsTheLeastMantissaByItsName) {
  const Bytes least = {0, 0, 0, 0, 0, 0, 0, 0x80};
  EXPECT_EQ(TextOf(ShortItem(7, Join({{0}, least}))), "-LONG64_MI");
  EXPECT_EQ(TextOf(ShortItem(7, Join({{2}, least}))), "-LONG64_MI00");
  EXPECT_EQ(TextOf(ShortItem(7, Join({{0xFE}, least}))), "-LONG64_.MI");
}

TEST(ListText, RefusesADecimalWithoutExponent) {
  for (const int type : {6, 7}) {
    ExpectFormatError([&] { TextOf(ShortItem(type, {})); });
    ExpectFormatError([&] { IntOf(ShortItem(type, {})); });
    ExpectFormatError([&] { Int64Of(ShortItem(type, {})); });
  }
}

TEST(ListText, PrintsDoublesWithTheirPoint) {
  EXPECT_EQ(TextOf({10, 8, 0, 0, 0, 0, 0, 0, 0x08, 0x40}), "3.");
  EXPECT_EQ(TextOf({10, 8, 0, 0, 0, 0, 0, 0, 0, 0}), "0.");
  EXPECT_EQ(TextOf({10, 8, 0, 0, 0, 0, 0, 0, 0xF8, 0xBF}), "-1.5");
  EXPECT_EQ(TextOf({10, 8, 0xF1, 0x68, 0xE3, 0x88, 0xB5, 0xF8, 0xE4, 0x3E}),
            "1.0000000000000000818030539140313095458623138256371021270752e-05");
}

TEST(ListText, RefusesADoubleThatIsNotOf8Bytes) {
  for (const std::size_t length : {0U, 1U, 4U, 7U, 9U, 16U}) {
    const Bytes bytes = ShortItem(8, Bytes(length, 0));
    ExpectFormatError([&] { TextOf(bytes); });
    ExpectFormatError([&] { IntOf(bytes); });
    ExpectFormatError([&] { Int64Of(bytes); });
  }
}

}  // namespace
}  // namespace vessa
