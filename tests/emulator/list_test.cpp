#include "emulator/list.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

namespace emulator {
namespace {

/// Bytes written as text, zeros included.
template <std::size_t kSize>
std::string Bytes(const char (&text)[kSize]) {
  return std::string(text, kSize - 1);
}

TEST(ListBuilder, WritesStrings) {
  EXPECT_EQ(ListBuilder().String("abc").Bytes(), Bytes("\x05\x01"
                                                       "abc"));
  EXPECT_EQ(ListBuilder().String("").Bytes(), Bytes("\x02\x01"));
  EXPECT_EQ(ListBuilder().WideString(u"a\u4E00").Bytes(), Bytes("\x06\x02"
                                                                "a\0\x00\x4E"));
}

TEST(ListBuilder, WritesIntegersInTheirShortestForm) {
  EXPECT_EQ(ListBuilder().Integer(0).Bytes(), Bytes("\x02\x04"));
  EXPECT_EQ(ListBuilder().Integer(1).Bytes(), Bytes("\x03\x04\x01"));
  EXPECT_EQ(ListBuilder().Integer(255).Bytes(), Bytes("\x03\x04\xFF"));
  EXPECT_EQ(ListBuilder().Integer(256).Bytes(), Bytes("\x04\x04\x00\x01"));
  EXPECT_EQ(ListBuilder().Integer(0x00100010).Bytes(), Bytes("\x05\x04\x10\x00\x10"));
  EXPECT_EQ(ListBuilder().Integer(-1).Bytes(), Bytes("\x02\x05"));
  EXPECT_EQ(ListBuilder().Integer(-2).Bytes(), Bytes("\x03\x05\xFE"));
  EXPECT_EQ(ListBuilder().Integer(-256).Bytes(), Bytes("\x03\x05\x00"));
  EXPECT_EQ(ListBuilder().Integer(-257).Bytes(), Bytes("\x04\x05\xFF\xFE"));
  EXPECT_EQ(ListBuilder().Integer(std::numeric_limits<std::int64_t>::min()).Bytes(),
            Bytes("\x0A\x05\0\0\0\0\0\0\0\x80"));
}

TEST(ListBuilder, WritesDoublesDecimalsAndAbsentItems) {
  EXPECT_EQ(ListBuilder().Double(1.0).Bytes(), Bytes("\x0A\x08\0\0\0\0\0\0\xF0\x3F"));
  EXPECT_EQ(ListBuilder().Decimal(15, -1).Bytes(), Bytes("\x04\x06\xFF\x0F"));
  EXPECT_EQ(ListBuilder().Decimal(-15, 2).Bytes(), Bytes("\x04\x07\x02\xF1"));
  EXPECT_EQ(ListBuilder().Absent().Bytes(), Bytes("\x01"));
}

TEST(ListBuilder, TakesTheShortestFormThatHolds) {
  const auto start = [](std::size_t size) {
    return ListBuilder().String(std::string(size, 'x')).Bytes().substr(0, 8);
  };
  EXPECT_EQ(start(253), Bytes("\xFF\x01xxxxxx"));
  EXPECT_EQ(start(254), Bytes("\x00\xFF\x00\x01xxxx"));
  EXPECT_EQ(start(65534), Bytes("\x00\xFF\xFF\x01xxxx"));
  EXPECT_EQ(start(65535), Bytes("\x00\x00\x00\x00\x00\x01\x00\x01"));
}

TEST(ListBuilder, WritesAnItemInAnyFormThatHolds) {
  EXPECT_EQ(ListBuilder().Item(1, "a", ListForm::kMedium).Bytes(), Bytes("\x00\x02\x00\x01"
                                                                         "a"));
  EXPECT_EQ(ListBuilder().Item(1, "a", ListForm::kLong).Bytes(), Bytes("\x00\x00\x00\x02\x00\x00\x00\x01"
                                                                       "a"));
  EXPECT_EQ(ListBuilder().Item(99, "").Bytes(), Bytes("\x02\x63"));
  EXPECT_THROW(ListBuilder().Item(1, std::string(65535, 'x'), ListForm::kMedium), std::length_error);
}

TEST(ListBuilder, WritesAListAsAnItem) {
  EXPECT_EQ(ListBuilder().List(ListBuilder().Integer(1).Absent()).Bytes(), Bytes("\x06\x01\x03\x04\x01\x01"));
}

TEST(ReadList, ReadsEveryType) {
  const std::vector<ListValue> items =
      ReadList(Bytes("\x05\x01"
                     "abc"
                     "\x06\x02"
                     "a\0\x00\x4E"
                     "\x02\x04"
                     "\x04\x04\x00\x01"
                     "\x02\x05"
                     "\x03\x05\x00"
                     "\x04\x06\xFF\x0F"
                     "\x04\x07\x02\xF1"
                     "\x0A\x08\0\0\0\0\0\0\xF0\x3F"
                     "\x01"));
  ASSERT_EQ(items.size(), 10U);
  EXPECT_EQ(items[0].value, Value(std::string("abc")));
  EXPECT_EQ(items[1].value, Value(std::u16string(u"a\u4E00")));
  EXPECT_EQ(items[2].value, Value(std::int64_t{0}));
  EXPECT_EQ(items[3].value, Value(std::int64_t{256}));
  EXPECT_EQ(items[4].value, Value(std::int64_t{-1}));
  EXPECT_EQ(items[5].value, Value(std::int64_t{-256}));
  EXPECT_EQ(items[6].value, Value(1.5));
  EXPECT_EQ(items[7].value, Value(-1500.0));
  EXPECT_EQ(items[8].value, Value(1.0));
  EXPECT_EQ(items[9].value, Value());
  EXPECT_TRUE(items[0].Is(ListType::kString));
  EXPECT_TRUE(items[5].Is(ListType::kNegativeInteger));
  EXPECT_TRUE(items[9].Is(ListType::kAbsent));
  EXPECT_EQ(items[5].data, Bytes("\x00"));
}

TEST(ReadList, AcceptsEveryFormForEveryLength) {
  const std::vector<ListValue> items =
      ReadList(Bytes("\x00\x02\x00\x01"
                     "a"
                     "\x00\x00\x00\x02\x00\x00\x00\x01"
                     "b"));
  ASSERT_EQ(items.size(), 2U);
  EXPECT_EQ(items[0].value, Value(std::string("a")));
  EXPECT_EQ(items[1].value, Value(std::string("b")));
  EXPECT_TRUE(ReadList("").empty());
}

TEST(ReadList, RefusesEveryShorterPrefix) {
  ListBuilder list;
  list.Item(1, "abc", ListForm::kLong);
  for (std::size_t size = 1; size < list.Bytes().size(); ++size) {
    EXPECT_THROW(ReadList(std::string_view(list.Bytes()).substr(0, size)), std::invalid_argument) << size;
  }
}

TEST(ReadList, RefusesItemsThatCannotBe) {
  EXPECT_THROW(ReadList(Bytes("\x00\x00\x00\x00\x00\x00\x00")), std::invalid_argument) << "no type byte";
  EXPECT_THROW(ReadList(Bytes("\x00\x00\x00\xFF\xFF\xFF\xFF\x01")), std::invalid_argument);
  EXPECT_THROW(ReadList(Bytes("\x02\x00")), std::invalid_argument) << "type 0";
  EXPECT_THROW(ReadList(Bytes("\x02\x03")), std::invalid_argument);
  EXPECT_THROW(ReadList(Bytes("\x02\x09")), std::invalid_argument);
  EXPECT_THROW(ReadList(Bytes("\x03\x02"
                              "a")),
               std::invalid_argument)
      << "half a unit";
  EXPECT_THROW(ReadList(Bytes("\x09\x08\0\0\0\0\0\0\0")), std::invalid_argument) << "7 bytes of a double";
  EXPECT_THROW(ReadList(Bytes("\x02\x06")), std::invalid_argument) << "no exponent";
  EXPECT_THROW(ReadList(Bytes("\x0B\x04\0\0\0\0\0\0\0\0\0")), std::invalid_argument)
      << "9 bytes of an integer";
  try {
    ReadList(Bytes("\x02\x04\x02\x63"));
    FAIL();
  } catch (const std::invalid_argument& error) {
    EXPECT_STREQ(error.what(), "no value list: an unknown type at byte 2");
  }
}

TEST(List, WhatIsWrittenIsReadBack) {
  for (const std::int64_t number :
       {std::int64_t{0}, std::int64_t{127}, std::int64_t{128}, std::int64_t{65535}, std::int64_t{4294967295},
        std::numeric_limits<std::int64_t>::max(), std::int64_t{-1}, std::int64_t{-128}, std::int64_t{-129},
        std::int64_t{-65536}, std::numeric_limits<std::int64_t>::min()}) {
    EXPECT_EQ(ReadList(ListBuilder().Integer(number).Bytes()).at(0).value, Value(number));
  }
  for (const std::size_t size : {0U, 252U, 253U, 254U, 255U, 65533U, 65534U, 65535U, 65536U}) {
    const std::string text(size, 'x');
    const std::vector<ListValue> items = ReadList(ListBuilder().String(text).Integer(7).Bytes());
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[0].value, Value(text));
    EXPECT_EQ(items[1].value, Value(std::int64_t{7}));
  }
}

}  // namespace
}  // namespace emulator
