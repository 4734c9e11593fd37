#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "tests/vdoc/answer.h"
#include "tests/vdoc/document.h"
#include "tests/vdoc/property_list_view.h"
#include "vdoc/vdoc_next_subscript.h"
#include "vdoc/vdoc_query.h"

// A value may be passed over exactly when hearing of it would do nothing.

namespace {

using vessa::CVDocNextSubscript;
using vessa::CVDocQuery;
using vessa::Tag;

constexpr std::uint32_t kName = 0x00100010;
constexpr std::uint32_t kBeams = 0x300A00B0;
constexpr std::uint32_t kPixelData = 0x7FE00010;

// Hears everything that the query hears and tells of every value whether the query did anything with it.
class WatchedQuery : public CVDocQuery {
 public:
  using CVDocQuery::CVDocQuery;

  vessa::Status Data(Tag tag, std::uint32_t chunk_number, std::span<const std::uint8_t> chunk) override {
    const bool wanted = WantsValue(tag);
    const std::size_t answered = Results().Bytes().size();
    ++values_;
    try {
      const vessa::Status status = CVDocQuery::Data(tag, chunk_number, chunk);
      EXPECT_EQ(wanted, Results().Bytes().size() != answered);
      EXPECT_EQ(status, vessa::kSuccess);
      return status;
    } catch (const vessa::CSuccessException&) {
      EXPECT_TRUE(wanted);
      throw;
    }
  }

  int Values() const { return values_; }

 private:
  int values_ = 0;
};

class RandomDataSets {
 public:
  explicit RandomDataSets(unsigned seed) : random_{seed} {}

  std::uint32_t Below(std::uint32_t bound) { return static_cast<std::uint32_t>(random_() % bound); }

  // Few tags, so that targets are met often; not always in order, and some of them twice.
  Item DataSet(int depth) {
    Item elements;
    std::uint32_t tag = 0;
    for (std::uint32_t i = Below(4); i > 0; --i) {
      tag = Below(10) == 0 ? Below(5) : tag + Below(3);
      elements.push_back(depth > 0 && Below(2) == 0 ? Sequence(tag, Items(depth - 1))
                                                    : Text(tag, "LO", "value "));
    }
    return elements;
  }

  std::vector<std::uint32_t> Target(std::size_t length) {
    std::vector<std::uint32_t> target(length);
    for (std::size_t i = 0; i < length; ++i) target[i] = i % 2 == 0 ? Below(5) : Below(3);
    return target;
  }

 private:
  std::vector<Item> Items(int depth) {
    std::vector<Item> items;
    for (std::uint32_t i = Below(4); i > 0; --i) items.push_back(DataSet(depth));
    return items;
  }

  std::mt19937 random_;
};

TEST(WantsValue, IsTrueExactlyWhenDataWouldDoSomething) {
  RandomDataSets random(7);
  int values = 0;
  for (int i = 0; i < 5000; ++i) {
    const PropertyListView list(random.Target(1 + 2 * random.Below(3)));
    WatchedQuery query(list.View(), random.Below(2) == 0);
    Play(random.DataSet(3), query);
    values += query.Values();
  }
  EXPECT_GT(values, 5000);
}

TEST(WantsValue, PassingOverChangesNoAnswerOfAQuery) {
  RandomDataSets random(11);
  int found = 0;
  for (int i = 0; i < 5000; ++i) {
    const Item data_set = random.DataSet(3);
    const PropertyListView list(random.Target(1 + 2 * random.Below(3)));
    const bool sequence_answer = random.Below(2) == 0;
    CVDocQuery hearing(list.View(), sequence_answer);
    CVDocQuery passing(list.View(), sequence_answer);
    EXPECT_EQ(Play(data_set, hearing, Unwanted::kSent), Play(data_set, passing, Unwanted::kPassedOver));
    EXPECT_EQ(AnswerIn(hearing.Results()), AnswerIn(passing.Results()));
    if (AnswerIn(passing.Results()) != kNoAnswer) ++found;
  }
  EXPECT_GT(found, 300);
}

TEST(WantsValue, PassingOverChangesNoNextSubscript) {
  RandomDataSets random(13);
  int found = 0;
  for (int i = 0; i < 5000; ++i) {
    const Item data_set = random.DataSet(3);
    const PropertyListView list(random.Target(2 + 2 * random.Below(2)));
    CVDocNextSubscript hearing(list.View());
    CVDocNextSubscript passing(list.View());
    EXPECT_EQ(Play(data_set, hearing, Unwanted::kSent), Play(data_set, passing, Unwanted::kPassedOver));
    EXPECT_EQ(hearing.Found(), passing.Found());
    if (passing.Found() != 0) ++found;
  }
  EXPECT_GT(found, 100);
}

TEST(WantsValue, IsTrueForEveryChunkOfTheAnswer) {
  const PropertyListView list(std::vector<std::uint32_t>{kName});
  CVDocQuery query(list.View());
  query.Reset();
  query.StartElement(Tag{kName}, vessa::Vr("UT"), 40'000);
  const std::vector<std::uint8_t> chunk(32648);
  EXPECT_TRUE(query.WantsValue(Tag{kName}));
  EXPECT_EQ(query.Data(Tag{kName}, 1, chunk), vessa::kSuccess);  // held back
  EXPECT_TRUE(query.WantsValue(Tag{kName}));
}

TEST(WantsValue, IsFalseForValuesThatComeBefore) {
  const PropertyListView list({kBeams, 1, kName});
  CVDocQuery query(list.View());
  query.Reset();
  for (const std::uint32_t tag : {kName, kBeams}) {  // before it, and on the way to it
    query.StartElement(Tag{tag}, vessa::Vr("LO"), 0);
    EXPECT_FALSE(query.WantsValue(Tag{tag}));
    query.EndElement(Tag{tag});
  }
  query.StartElement(Tag{kPixelData}, vessa::Vr("OW"), 0);
  EXPECT_TRUE(query.WantsValue(Tag{kPixelData}));
}

TEST(WantsValue, NextSubscriptWantsNone) {
  const PropertyListView list(std::vector<std::uint32_t>{kBeams, 0});
  CVDocNextSubscript next(list.View());
  next.Reset();
  next.StartElement(Tag{kBeams}, vessa::Vr("UN"), 4);
  EXPECT_FALSE(next.WantsValue(Tag{kBeams}));
}

}  // namespace
