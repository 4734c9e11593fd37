#include "emulator/collation.h"

#include <gtest/gtest.h>

#include <vector>

namespace emulator {
namespace {

std::string KeyOf(std::string_view text) {
  std::string key;
  AppendSubscript(text, key);
  return key;
}

std::string Nines(std::size_t count) { return std::string(count, '9'); }

/// One level in the order in which a host walks it.
std::vector<std::string> InOrder() {
  return {"",
          "-" + Nines(300),
          "-1000000",
          "-124",
          "-123.5",
          "-123",
          "-100",
          "-99",
          "-12",
          "-11",
          "-10.5",
          "-10",
          "-9",
          "-2",
          "-1.25",
          "-1.2",
          "-1",
          "-.5",
          "-.12",
          "-.1",
          "-.05",
          "-.0000001",
          "0",
          ".0000001",
          ".05",
          ".051",
          ".1",
          ".12",
          ".5",
          ".99",
          "1",
          "1.2",
          "1.25",
          "2",
          "9",
          "9.9",
          "10",
          "10.5",
          "11",
          "12",
          "99",
          "100",
          "123",
          "123.5",
          "124",
          "1048592",
          "2147483648",
          "4294967295",
          Nines(300),
          std::string("\0", 1),
          std::string("\0\0", 2),
          std::string("\0\x01", 2),
          std::string("\0a", 2),
          "\x01",
          " 1",
          "+1",
          "-",
          "--1",
          "-0",
          "-01",
          "-1.0",
          ".",
          ".10",
          "0.5",
          "00",
          "007",
          "01",
          "1.",
          "1.0",
          "1.2.3",
          "1.2.840.10008.1.2",
          "1E3",
          "1a",
          "A",
          "a",
          std::string("a\0", 2),
          std::string("a\0b", 3),
          "a\x01",
          "aa",
          "b",
          "c",
          "d",
          "v",
          "\x7F",
          "\x80",
          "\xFF",
          std::string("\xFF\0", 2),
          "\xFF\xFF"};
}

TEST(Collation, ByteOrderOfTheKeysIsTheHostsOrder) {
  const std::vector<std::string> order = InOrder();
  for (std::size_t i = 0; i < order.size(); ++i) {
    for (std::size_t j = i + 1; j < order.size(); ++j) {
      EXPECT_LT(KeyOf(order[i]), KeyOf(order[j])) << '"' << order[i] << "\" before \"" << order[j] << '"';
    }
  }
}

TEST(Collation, OrderHoldsWhateverStandsOnTheNextLevel) {
  const std::vector<std::string> order = InOrder();
  for (std::size_t i = 0; i + 1 < order.size(); ++i) {
    EXPECT_LT(KeyOf(order[i]) + KeyOf("\xFF\xFF"), KeyOf(order[i + 1]));
    EXPECT_LT(KeyOf(order[i]) + kBehindDescendants, KeyOf(order[i + 1]));
    EXPECT_LT(KeyOf(order[i]) + KeyOf("\xFF\xFF"), KeyOf(order[i]) + kBehindDescendants);
  }
}

TEST(Collation, KeysTellTheirLengthAndTheirText) {
  for (const std::string& text : InOrder()) {
    const std::string key = KeyOf(text);
    EXPECT_EQ(SubscriptLength(key + KeyOf("behind")), key.size()) << text;
    EXPECT_EQ(SubscriptText(key + KeyOf("behind")), text);
  }
}

TEST(Collation, NumbersAndTheirTextsAreOneSubscript) {
  const auto key_of = [](const Value& value) {
    std::string key;
    AppendSubscript(value, key);
    return key;
  };
  EXPECT_EQ(key_of(std::int64_t{-12}), KeyOf("-12"));
  EXPECT_EQ(key_of(std::int64_t{0}), KeyOf("0"));
  EXPECT_EQ(key_of(0.5), KeyOf(".5"));
  EXPECT_EQ(key_of(std::u16string(u"12")), KeyOf("12"));
  EXPECT_EQ(key_of(Value()), KeyOf(""));
}

TEST(Collation, KeyBytesAreAsWrittenDown) {
  EXPECT_EQ(KeyOf(""), "\x01");
  EXPECT_EQ(KeyOf("0"), "\x03");
  EXPECT_EQ(KeyOf("12"), std::string("\x04\x80\x02\x31\x32\x00", 6));
  EXPECT_EQ(KeyOf("-12"), std::string("\x02\x7F\xFD\xCE\xCD\xFF", 6));
  EXPECT_EQ(KeyOf(".05"), std::string("\x04\x7F\xFF\x35\x00", 5));
  EXPECT_EQ(KeyOf("1200"), std::string("\x04\x80\x04\x31\x32\x00", 6));
  EXPECT_EQ(KeyOf(std::string_view("a\0b", 3)), std::string("\x05\x61\x00\xFF\x62\x00\x01", 7));
  EXPECT_EQ(GlobalKey("A"), std::string("\x05\x41\x00\x01", 4));
}

TEST(CanonicalNumber, IsOnlyWhatTheHostItselfWrites) {
  for (const char* number : {"0", "1", "-1", "10", ".5", "-.5", "1.25", "4294967295"}) {
    EXPECT_TRUE(IsCanonicalNumber(number)) << number;
  }
  for (const char* text : {"", "-", ".", "-.", "00", "01", "-0", "0.5", "1.", "1.0", ".50", "+1", "1E3", " 1",
                           "1 ", "1.2.3", "--1", "0.", "1a"}) {
    EXPECT_FALSE(IsCanonicalNumber(text)) << text;
  }
  EXPECT_TRUE(IsCanonicalNumber(Nines(kMaxNumberLength)));
  EXPECT_FALSE(IsCanonicalNumber(Nines(kMaxNumberLength + 1)));
}

}  // namespace
}  // namespace emulator
