// Lists written by the library, checked byte for byte.

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <new>
#include <string>
#include <vector>

#include "host/vessa_list.h"
#include "tests/host/expect_failure.h"
#include "tests/host/list_bytes.h"

namespace vessa {
namespace {

Bytes BytesOf(const VessaList& list) { return {list.Bytes().begin(), list.Bytes().end()}; }

Bytes WrittenInt(std::int32_t value) {
  VessaList list;
  list.AppendInt(value);
  return BytesOf(list);
}

Bytes WrittenInt64(std::int64_t value) {
  VessaList list;
  list.AppendInt64(value);
  return BytesOf(list);
}

TEST(ListWriter, StartsEmpty) {
  VessaList list;
  EXPECT_EQ(list.Count(), 0U);
  EXPECT_EQ(list.Bytes().size(), 0U);
  EXPECT_EQ(list.Seek(0), list.Bytes().data());
  ExpectOutOfBounds([&] { list.Seek(1); });
}

TEST(ListWriter, AFirstItemTooLongForItsStorageGoesToTheHeap) {
  std::array<std::uint8_t, 8> storage;
  VessaList list{std::span<std::uint8_t>(storage)};
  list.AppendString(std::string_view("more than eight"));
  EXPECT_EQ(BytesOf(list), ShortItem(1, vessa::BytesOf("more than eight")));
}

TEST(ListWriter, TheItemBehindARememberedEndIsFound) {
  VessaList list;
  list.AppendInt(1);
  list.Seek(1);
  list.AppendInt(2);
  list.Seek(1);
  EXPECT_EQ(list.GetInt(), 2);
}

TEST(ListWriter, Writes32BitIntegersInTheirShortestForm) {
  EXPECT_EQ(WrittenInt(0), (Bytes{2, 4}));
  EXPECT_EQ(WrittenInt(1), (Bytes{3, 4, 1}));
  EXPECT_EQ(WrittenInt(255), (Bytes{3, 4, 0xFF}));
  EXPECT_EQ(WrittenInt(256), (Bytes{4, 4, 0x00, 0x01}));
  EXPECT_EQ(WrittenInt(65535), (Bytes{4, 4, 0xFF, 0xFF}));
  EXPECT_EQ(WrittenInt(65536), (Bytes{5, 4, 0x00, 0x00, 0x01}));
  EXPECT_EQ(WrittenInt(16777215), (Bytes{5, 4, 0xFF, 0xFF, 0xFF}));
  EXPECT_EQ(WrittenInt(16777216), (Bytes{6, 4, 0x00, 0x00, 0x00, 0x01}));
  EXPECT_EQ(WrittenInt(2147483647), (Bytes{6, 4, 0xFF, 0xFF, 0xFF, 0x7F}));
  EXPECT_EQ(WrittenInt(-1), (Bytes{2, 5}));
  EXPECT_EQ(WrittenInt(-2), (Bytes{3, 5, 0xFE}));
  EXPECT_EQ(WrittenInt(-256), (Bytes{3, 5, 0x00}));
  EXPECT_EQ(WrittenInt(-257), (Bytes{4, 5, 0xFF, 0xFE}));
  EXPECT_EQ(WrittenInt(-65536), (Bytes{4, 5, 0x00, 0x00}));
  EXPECT_EQ(WrittenInt(-65537), (Bytes{5, 5, 0xFF, 0xFF, 0xFE}));
  EXPECT_EQ(WrittenInt(-16777216), (Bytes{5, 5, 0x00, 0x00, 0x00}));
  EXPECT_EQ(WrittenInt(-16777217), (Bytes{6, 5, 0xFF, 0xFF, 0xFF, 0xFE}));
  EXPECT_EQ(WrittenInt(std::numeric_limits<std::int32_t>::min()), (Bytes{6, 5, 0x00, 0x00, 0x00, 0x80}));
}

TEST(ListWriter, Writes64BitIntegersInTheirShortestForm) {
  for (int bytes = 1; bytes <= 7; ++bytes) {
    const std::int64_t greatest = (std::int64_t{1} << (8 * bytes)) - 1;
    const auto count = static_cast<std::size_t>(bytes);
    EXPECT_EQ(WrittenInt64(greatest), ShortItem(4, Bytes(count, 0xFF)));
    EXPECT_EQ(WrittenInt64(greatest + 1), ShortItem(4, Join({Bytes(count, 0), {1}})));
  }
  EXPECT_EQ(WrittenInt64(0), (Bytes{2, 4}));
  EXPECT_EQ(WrittenInt64(std::numeric_limits<std::int64_t>::max()),
            (Bytes{10, 4, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F}));
}

TEST(ListWriter, WritesANegative64BitIntegerAsZero) {
  EXPECT_EQ(WrittenInt64(-1), (Bytes{2, 4}));
  EXPECT_EQ(WrittenInt64(std::numeric_limits<std::int64_t>::min()), (Bytes{2, 4}));
}

TEST(ListWriter, ReadsItsOwn32BitIntegersBack) {
  for (std::int64_t magnitude = 1; magnitude <= 0x80000000LL; magnitude *= 2) {
    for (const std::int64_t value : {magnitude - 1, magnitude, magnitude + 1, -magnitude, 1 - magnitude}) {
      if (value > 2147483647 || value < -2147483647 - 1) continue;
      EXPECT_EQ(IntOf(WrittenInt(static_cast<std::int32_t>(value))), value);
    }
  }
}

TEST(ListWriter, WritesTexts) {
  VessaList list;
  list.AppendString("PN");
  list.AppendString(std::string_view());
  list.AppendWString(u"a\u20AC");
  list.AppendWString(u"");
  const Bytes raw = {0, 0xFF};
  list.AppendString(std::span<const std::uint8_t>(raw));
  EXPECT_EQ(BytesOf(list), (Bytes{4, 1, 'P', 'N', 2, 1, 6, 2, 'a', 0, 0xAC, 0x20, 2, 2, 4, 1, 0, 0xFF}));
  EXPECT_EQ(list.Count(), 5U);
}

TEST(ListWriter, PicksTheHeaderFormByTheLength) {
  struct Boundary {
    std::size_t data_bytes;
    Bytes header;  // up to the type
  };
  const Boundary boundaries[] = {
      {0, {2}},
      {253, {255}},
      {254, {0, 0xFF, 0x00}},
      {255, {0, 0x00, 0x01}},
      {65534, {0, 0xFF, 0xFF}},
      {65535, {0, 0, 0, 0x00, 0x00, 0x01, 0x00}},
      {1000000, {0, 0, 0, 0x41, 0x42, 0x0F, 0x00}},
  };
  for (const Boundary& boundary : boundaries) {
    const Bytes data(boundary.data_bytes, 'x');
    VessaList list;
    list.AppendString(std::span<const std::uint8_t>(data));
    ASSERT_EQ(BytesOf(list), Join({boundary.header, {1}, data})) << boundary.data_bytes;
    ASSERT_EQ(list.Count(), 1U);
    EXPECT_EQ(list.Seek(1), list.Bytes().data() + list.Bytes().size());
    list.Seek(0);
    EXPECT_EQ(list.GetString().size(), boundary.data_bytes);
  }
}

TEST(ListWriter, Picks16BitTextHeadersByTheBytes) {
  VessaList list;
  list.AppendWString(std::u16string(127, u'x'));
  EXPECT_EQ(list.Bytes()[0], 0);
  EXPECT_EQ(list.Bytes().size(), 3U + 1U + 254U);
}

TEST(ListWriter, ARememberedEndStaysTheEnd) {
  VessaList list;
  for (int i = 0; i < 100; ++i) {
    list.AppendInt(i);
    ASSERT_EQ(list.Count(), static_cast<std::uint64_t>(i) + 1);
    ASSERT_EQ(list.Seek(list.Count()), list.Bytes().data() + list.Bytes().size());
  }
}

TEST(ListWriter, HasNoItemAtHandAfterAppending) {
  VessaList list;
  for (int i = 0; i < 3; ++i) {
    list.AppendInt(i);
    ExpectOutOfBounds([&] { list.GetInt(); });
  }
}

TEST(ListWriter, AnItemAtHandBeforeTheEndStaysAtHand) {
  VessaList list;
  list.AppendString("first");
  list.AppendString("second");
  list.Seek(1);
  list.AppendString("a third of another length");
  EXPECT_EQ(list.GetString(), "second");
  list.Seek(2);
  EXPECT_EQ(list.GetString(), "a third of another length");
}

TEST(ListWriter, CanBeReadWhileItGrows) {
  VessaList list;
  for (int i = 0; i < 2000; ++i) {
    list.AppendInt(i);
    list.Seek(static_cast<std::uint64_t>(i) / 2);
    ASSERT_EQ(list.GetInt(), i / 2);
  }
}

TEST(ListWriter, ClearingEmptiesTheList) {
  VessaList list;
  list.AppendString("before");
  list.Clear();
  EXPECT_EQ(list.Count(), 0U);
  EXPECT_EQ(list.Bytes().size(), 0U);
  list.AppendInt(7);
  EXPECT_EQ(BytesOf(list), (Bytes{3, 4, 7}));
  EXPECT_EQ(list.Count(), 1U);
}

// --- Room -----------------------------------------------------------------------------------------------------

/// Tells every growth, and lets it fail.
class WatchedList : public VessaList {
 public:
  using VessaList::VessaList;
  void Reserve(std::uint64_t bytes) override {
    asked.push_back(bytes);
    if (refuse) throw std::bad_alloc();
    VessaList::Reserve(bytes);
  }
  std::vector<std::uint64_t> asked;
  bool refuse = false;
};

TEST(ListRoom, EveryAppendAsksForTheRoomOfTheWholeList) {
  WatchedList list;
  list.AppendInt(0);
  list.AppendString("abc");
  list.AppendString(std::string(300, 'x'));
  EXPECT_EQ(list.asked, (std::vector<std::uint64_t>{2, 2 + 5, 2 + 5 + 304}));
}

TEST(ListRoom, AFailedGrowthLeavesTheListAsItWas) {
  WatchedList list;
  list.AppendString("kept");
  const std::uint8_t* const place = list.Bytes().data();
  list.refuse = true;
  EXPECT_THROW(list.AppendString("lost"), std::bad_alloc);
  EXPECT_THROW(list.AppendInt(1), std::bad_alloc);
  EXPECT_EQ(BytesOf(list), (Bytes{6, 1, 'k', 'e', 'p', 't'}));
  EXPECT_EQ(list.Bytes().data(), place);
  EXPECT_EQ(list.Count(), 1U);
}

TEST(ListRoom, RefusesRoomThatNoMachineHas) {
  VessaList list;
  list.AppendInt(7);
  EXPECT_THROW(list.Reserve(std::numeric_limits<std::uint64_t>::max()), std::bad_alloc);
  EXPECT_THROW(list.Reserve(std::uint64_t{1} << 63), std::bad_alloc);
  EXPECT_EQ(BytesOf(list), (Bytes{3, 4, 7}));
}

TEST(ListRoom, RefusesDataThatNoHeaderCanCount) {
  const std::uint8_t byte = 0;
  VessaList list;
  // Refused for its length alone: nothing of it is read.
  EXPECT_THROW(list.AppendString(std::span<const std::uint8_t>(&byte, 0xFFFFFFFF)), std::bad_alloc);
  EXPECT_EQ(list.Capacity(), 0U);
}

TEST(ListRoom, GrowsInTheStepsThatSmallListsNeed) {
  struct Step {
    std::uint64_t asked;
    std::uint64_t given;
  };
  const Step steps[] = {{0, 0},         {1, 32},           {32, 32},     {33, 64},     {64, 64},
                        {65, 128},      {128, 128},        {129, 256},   {257, 512},   {512, 512},
                        {513, 1024},    {1024, 1024},      {1025, 2048}, {2048, 2048}, {2049, 3072},
                        {32770, 33792}, {1000000, 1000448}};
  for (const Step& step : steps) {
    VessaList list;
    list.Reserve(step.asked);
    EXPECT_EQ(list.Capacity(), step.given) << step.asked;
  }
}

TEST(ListRoom, NeverShrinks) {
  VessaList list;
  list.Reserve(600);
  list.Reserve(10);
  EXPECT_EQ(list.Capacity(), 1024U);
}

TEST(ListRoom, ReservedRoomIsNotAskedForAgain) {
  VessaList list;
  list.Reserve(1025);  // gives 2048
  list.AppendInt(1);
  const std::uint8_t* const place = list.Bytes().data();
  list.AppendString(std::string(2048 - 3 - 4, 'x'));
  EXPECT_EQ(list.Bytes().size(), 2048U);
  EXPECT_EQ(list.Bytes().data(), place);
}

TEST(ListRoom, StorageOfTheCallerIsUsedUpToItsLastByte) {
  std::array<std::uint8_t, 8> storage{};
  VessaList list{std::span<std::uint8_t>(storage)};
  EXPECT_EQ(list.Count(), 0U);
  list.AppendString("abc");
  list.AppendInt(7);
  EXPECT_EQ(list.Bytes().data(), storage.data());
  EXPECT_EQ(BytesOf(list), (Bytes{5, 1, 'a', 'b', 'c', 3, 4, 7}));
}

TEST(ListRoom, AListThatOutgrowsItsStorageMovesToTheHeap) {
  std::array<std::uint8_t, 8> storage{};
  VessaList list{std::span<std::uint8_t>(storage).first(7)};
  list.AppendString("abc");
  list.AppendInt(7);
  EXPECT_NE(list.Bytes().data(), storage.data());
  EXPECT_EQ(BytesOf(list), (Bytes{5, 1, 'a', 'b', 'c', 3, 4, 7}));
  EXPECT_EQ(storage[7], 0);
  for (int i = 0; i < 1000; ++i) list.AppendInt(i);
  EXPECT_EQ(list.Count(), 1002U);
}

TEST(ListRoom, AListOnStorageIsClearedInPlace) {
  std::array<std::uint8_t, 8> storage{};
  VessaList list{std::span<std::uint8_t>(storage)};
  list.AppendString("abcdef");
  list.Clear();
  list.AppendString("ghijkl");
  EXPECT_EQ(list.Bytes().data(), storage.data());
  EXPECT_EQ(BytesOf(list), Join({{8, 1}, vessa::BytesOf("ghijkl")}));
}

}  // namespace
}  // namespace vessa
