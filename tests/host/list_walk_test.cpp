#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>

#include "tests/host/expect_failure.h"
#include "tests/host/list_bytes.h"

namespace vessa {
namespace {

/// One item of every type and of every header form.
Bytes EveryKindOfItem() {
  return Join({
      {2, 4},                                        // 0 as a non-negative integer
      {1},                                           // absent
      {7, 1, 'H', 'e', 'l', 'l', 'o'},               // 8-bit text
      {6, 2, 'a', 0, 'b', 0},                        // 16-bit text
      {4, 5, 0x00, 0xFF},                            // -256 with a byte to spare
      {5, 6, 0xFE, 0xD2, 0x04},                      // 1234 * 10^-2
      {4, 7, 0xFF, 0xFB},                            // -5 * 10^-1
      {10, 8, 0, 0, 0, 0, 0, 0, 0xF8, 0x3F},         // 1.5
      {0, 4, 0, 1, 'm', 'e', 'd'},                   // the medium form
      {0, 0, 0, 5, 0, 0, 0, 1, 'l', 'o', 'n', 'g'},  // the long form
  });
}

const std::vector<std::string> kEveryText = {"0",     "",    "Hello", "ab",  "-256",
                                             "12.34", "-.5", "1.5",   "med", "long"};

TEST(ListReader, CountsTheItemsOfEveryForm) {
  const Bytes bytes = EveryKindOfItem();
  VessaROList list(bytes);
  EXPECT_EQ(list.Count(), kEveryText.size());
}

TEST(ListReader, ReadsEveryKindOfItemInOrder) {
  const Bytes bytes = EveryKindOfItem();
  VessaROList list(bytes);
  for (std::size_t i = 0; i < kEveryText.size(); ++i) {
    list.Seek(i);
    EXPECT_EQ(list.GetString(), kEveryText[i]);
  }
}

TEST(ListReader, SeeksForwardAndBackToAnyItem) {
  const Bytes bytes = EveryKindOfItem();
  for (std::size_t first = 0; first < kEveryText.size(); ++first) {
    for (std::size_t second = 0; second < kEveryText.size(); ++second) {
      VessaROList list(bytes);
      list.Seek(first);
      list.Seek(second);
      ASSERT_EQ(list.GetString(), kEveryText[second]) << first << " then " << second;
      ASSERT_EQ(list.Count(), kEveryText.size());
    }
  }
}

TEST(ListReader, CountsFromTheItemAtHandAndStaysThere) {
  const Bytes bytes = EveryKindOfItem();
  VessaROList list(bytes);
  list.Seek(2);
  EXPECT_EQ(list.Count(), kEveryText.size());
  EXPECT_EQ(list.GetString(), "Hello");
}

TEST(ListReader, SeekAnswersWhereTheItemStarts) {
  const Bytes bytes = EveryKindOfItem();
  VessaROList list(bytes);
  EXPECT_EQ(list.Seek(0), bytes.data());
  EXPECT_EQ(list.Seek(2), bytes.data() + 3);
  EXPECT_EQ(list.Seek(2), bytes.data() + 3);
  EXPECT_EQ(list.Seek(kEveryText.size()), bytes.data() + bytes.size());
}

TEST(ListReader, AnEmptyListHasNoItems) {
  VessaROList list{std::span<const std::uint8_t>()};
  EXPECT_EQ(list.Count(), 0U);
  EXPECT_EQ(list.Seek(0), list.Bytes().data());
  ExpectOutOfBounds([&] { list.Seek(1); });
  ExpectOutOfBounds([&] { list.ItemHeader(); });
}

TEST(ListReader, SeeksToTheEndButNotBehindIt) {
  const Bytes bytes = {2, 4, 1};
  for (const bool counted : {false, true}) {
    VessaROList list(bytes);
    if (counted) list.Count();
    ExpectOutOfBounds([&] { list.Seek(3); });
    EXPECT_EQ(list.GetString(), "0");  // a failed seek moves nothing
    EXPECT_EQ(list.Seek(2), bytes.data() + 3);
    ExpectOutOfBounds([&] { list.Seek(3); });
    ExpectOutOfBounds([&] { list.Seek(~std::uint64_t{0}); });
    EXPECT_EQ(list.Count(), 2U);
  }
}

TEST(ListReader, HasNoItemAtTheEnd) {
  const Bytes bytes = {2, 4};
  VessaROList list(bytes);
  list.Seek(1);
  ExpectOutOfBounds([&] { list.ItemHeader(); });
  ExpectOutOfBounds([&] { list.GetString(); });
  ExpectOutOfBounds([&] { list.GetInt(); });
  ExpectOutOfBounds([&] { list.GetInt64(); });
  ExpectOutOfBounds([&] { list.GetSublist(); });
}

TEST(ListReader, TellsTypeAndDataOfAnItem) {
  const Bytes bytes = EveryKindOfItem();
  VessaROList list(bytes);
  list.Seek(2);
  EXPECT_EQ(list.ItemHeader().type, 1);
  EXPECT_EQ(list.ItemHeader().data.data(), bytes.data() + 5);
  EXPECT_EQ(list.ItemHeader().data.size(), 5U);
  list.Seek(1);
  EXPECT_EQ(list.ItemHeader().type, -1);
  EXPECT_EQ(list.ItemHeader().data.size(), 0U);
}

TEST(ListReader, TellsATypeThatDoesNotExist) {
  const Bytes bytes = {2, 200};
  EXPECT_EQ(VessaROList(bytes).ItemHeader().type, 200);
}

TEST(ListReader, TakesAnyHeaderFormForAnyLength) {
  const Bytes data = BytesOf("x");
  EXPECT_EQ(TextOf(ShortItem(1, data)), "x");
  EXPECT_EQ(TextOf(MediumItem(1, data)), "x");
  EXPECT_EQ(TextOf(LongItem(1, data)), "x");
  EXPECT_EQ(TextOf(MediumItem(4, {})), "0");
  EXPECT_EQ(TextOf(LongItem(5, {})), "-1");
}

// --- Lists in lists -------------------------------------------------------------------------------------------

TEST(ListReader, ReadsAListInAList) {
  const Bytes inner = Join({TextItem("a"), {2, 4}});
  const Bytes outer = Join({{1}, ShortItem(1, inner), {2, 5}});
  VessaROList list(outer);
  list.Seek(1);
  VessaROList sublist = list.GetSublist();
  EXPECT_EQ(sublist.Count(), 2U);
  EXPECT_EQ(sublist.GetString(), "a");
  sublist.Seek(1);
  EXPECT_EQ(sublist.GetInt(), 0);
  list.Seek(2);
  EXPECT_EQ(list.GetInt(), -1);
}

TEST(ListReader, DoesNotLookAtTheTypeOfAListInAList) {
  for (const int type : {0, 1, 2, 3, 4, 8, 9, 255}) {
    const Bytes bytes = ShortItem(type, {2, 4});
    EXPECT_EQ(VessaROList(bytes).GetSublist().Count(), 1U) << type;
  }
}

TEST(ListReader, AnAbsentItemIsAnEmptyListInAList) {
  const Bytes bytes = {1};
  EXPECT_EQ(VessaROList(bytes).GetSublist().Count(), 0U);
}

TEST(ListReader, AListInAListEndsWithItsItem) {
  const Bytes bytes = Join({ShortItem(1, {5, 4}), {9, 9, 9}});  // the inner item claims three bytes more
  VessaROList sublist = VessaROList(bytes).GetSublist();
  ExpectFormatError([&] { sublist.Count(); });
  ExpectFormatError([&] { sublist.GetInt(); });
}

// --- Damaged lists --------------------------------------------------------------------------------------------

TEST(ListReader, RefusesAListCutAtEveryByte) {
  const Bytes whole = EveryKindOfItem();
  std::vector<std::size_t> ends = {0};  // where items end
  VessaROList intact(whole);
  for (std::size_t i = 1; i <= kEveryText.size(); ++i) {
    ends.push_back(static_cast<std::size_t>(intact.Seek(i) - whole.data()));
  }
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    VessaROList list(cut);
    const auto end = std::find(ends.begin(), ends.end(), length);
    if (end != ends.end()) {
      EXPECT_EQ(list.Count(), static_cast<std::uint64_t>(end - ends.begin())) << length;
    } else {
      ExpectFormatError([&] { list.Count(); });
      ExpectFormatError([&] { list.Seek(100); });
    }
  }
}

TEST(ListReader, ReadsTheWholeItemsOfACutListAndRefusesTheCutOne) {
  const Bytes whole = EveryKindOfItem();
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    VessaROList list(cut);
    std::size_t read = 0;
    try {
      for (;; ++read) {
        list.Seek(read);
        ASSERT_EQ(list.GetString(), kEveryText[read]);
      }
    } catch (const std::exception&) {
      ASSERT_LT(read, kEveryText.size());
    }
  }
}

TEST(ListReader, RefusesAHeaderThatTheListCutsOff) {
  for (const Bytes& bytes : {Bytes{0}, Bytes{0, 5}, Bytes{0, 0}, Bytes{0, 0, 0}, Bytes{0, 0, 0, 1, 0, 0}}) {
    VessaROList list(bytes);
    ExpectFormatError([&] { list.Count(); });
    ExpectFormatError([&] { list.Seek(1); });
    ExpectFormatError([&] { list.ItemHeader(); });
  }
}

TEST(ListReader, RefusesAnItemThatRunsPastTheEnd) {
  for (const Bytes& bytes : {Bytes{3, 4}, Bytes{255}, Bytes{0, 2, 0, 1}, Bytes{0, 255, 255, 1, 'x'},
                             Bytes{0, 0, 0, 2, 0, 0, 0, 1}, Bytes{0, 0, 0, 255, 255, 255, 255, 1, 'x'}}) {
    VessaROList list(bytes);
    ExpectFormatError([&] { list.Count(); });
    ExpectFormatError([&] { list.Seek(1); });
    ExpectFormatError([&] { list.GetString(); });
    ExpectFormatError([&] { list.GetSublist(); });
  }
}

TEST(ListReader, RefusesAnItemBehindOneThatRunsPastTheEnd) {
  const Bytes bytes = {2, 4, 200, 1, 'x'};
  VessaROList list(bytes);
  list.Seek(1);
  ExpectFormatError([&] { list.Seek(2); });
  ExpectFormatError([&] { list.GetString(); });
}

TEST(ListReader, RefusesTheValueOfALongItemWithoutAType) {
  const Bytes bytes = {0, 0, 0, 0, 0, 0, 0, 2, 4};
  VessaROList list(bytes);
  EXPECT_EQ(list.Count(), 2U);
  ExpectFormatError([&] { list.ItemHeader(); });
  ExpectFormatError([&] { list.GetString(); });
  ExpectFormatError([&] { list.GetSublist(); });
  list.Seek(1);
  EXPECT_EQ(list.GetInt(), 0);
}

TEST(ListReader, RefusesALongItemWithoutATypeAtTheVeryEnd) {
  const Bytes bytes = {0, 0, 0, 0, 0, 0, 0};
  VessaROList list(bytes);
  EXPECT_EQ(list.Count(), 1U);
  ExpectFormatError([&] { list.GetInt(); });
}

TEST(ListReader, RefusesUnknownTypesOnlyWhenTheyAreRead) {
  for (const int type : {0, 3, 9, 10, 127, 128, 254, 255}) {
    const Bytes bytes = ShortItem(type, {'1'});
    EXPECT_EQ(VessaROList(bytes).Count(), 1U);
    ExpectFormatError([&] { TextOf(bytes); });
    ExpectFormatError([&] { IntOf(bytes); });
    ExpectFormatError([&] { Int64Of(bytes); });
  }
}

TEST(ListReader, ReadsAMillionItemsInOneLinearPass) {
  // Quadratic walking would take hours here.
  constexpr std::uint64_t kItems = 1000000;
  const Bytes bytes(kItems, 1);
  VessaROList list(bytes);
  for (std::uint64_t i = 0; i < kItems; ++i) ASSERT_EQ(list.Seek(i), bytes.data() + i);
  EXPECT_EQ(list.Count(), kItems);
}

}  // namespace
}  // namespace vessa
