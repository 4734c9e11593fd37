#include <gtest/gtest.h>

#include <random>

#include "emulator/host_error.h"
#include "emulator/memory_globals.h"
#include "emulator/store/lmdb_globals.h"
#include "tests/store/node_list.h"
#include "tests/store/scratch_folder.h"

namespace emulator {
namespace {

std::shared_ptr<LmdbEnvironment> Environment(const ScratchFolder& folder) {
  return std::make_shared<LmdbEnvironment>(folder.Path());
}

/// Subscripts that meet often: numbers, texts, texts with zeros.
class RandomSubscripts {
 public:
  std::vector<Value> Next(std::size_t fewest) {
    std::vector<Value> subscripts(fewest + Below(4));
    for (Value& subscript : subscripts) subscript = One();
    return subscripts;
  }
  std::size_t Below(std::size_t count) { return random_() % count; }

 private:
  Value One() {
    switch (Below(4)) {
      case 0:
        return static_cast<std::int64_t>(Below(6)) - 3;
      case 1:
        return std::string(1 + Below(2), static_cast<char>(Below(3)));
      case 2:
        return std::string(Below(2) == 0 ? ".5" : "-12.25");
      default:
        return std::string("abcd").substr(Below(4));
    }
  }

  std::mt19937 random_{20240607};
};

TEST(LmdbGlobals, AnswersAsTheGlobalsInMemoryDo) {
  const ScratchFolder folder;
  LmdbGlobals lmdb(Environment(folder), Access::kWrite);
  MemoryGlobals memory;
  RandomSubscripts random;
  for (int step = 0; step < 20000; ++step) {
    const std::string name = random.Below(2) == 0 ? "A" : "A.B";
    switch (random.Below(10)) {
      case 0: {
        const auto subscripts = random.Next(step % 1000 == 0 ? 0 : 2);
        lmdb.Kill(name, subscripts);
        memory.Kill(name, subscripts);
        break;
      }
      case 1:
      case 2:
      case 3: {
        const auto subscripts = random.Next(0);
        const Value value = std::string(random.Below(5000), 'x');
        lmdb.Set(name, subscripts, value);
        memory.Set(name, subscripts, value);
        break;
      }
      case 4:
      case 5: {
        const auto subscripts = random.Next(0);
        ASSERT_EQ(lmdb.Get(name, subscripts), memory.Get(name, subscripts));
        ASSERT_EQ(lmdb.Defined(name, subscripts), memory.Defined(name, subscripts));
        break;
      }
      default: {
        auto subscripts = random.Next(1);
        if (random.Below(4) == 0) subscripts.back() = std::string();
        const int direction = random.Below(2) == 0 ? 1 : -1;
        const NextSubscript ours = lmdb.Order(name, subscripts, direction);
        const NextSubscript theirs = memory.Order(name, subscripts, direction);
        ASSERT_EQ(ours.subscript, theirs.subscript);
        ASSERT_EQ(ours.value, theirs.value);
      }
    }
  }
  EXPECT_EQ(NodeList(lmdb, "A"), NodeList(memory, "A"));
  EXPECT_EQ(NodeList(lmdb, "A.B"), NodeList(memory, "A.B"));
  EXPECT_GT(NodeList(memory, "A").size(), 50U);
}

TEST(LmdbGlobals, KeepsWhatWasCommittedAndDropsTheRest) {
  const ScratchFolder folder;
  {
    const auto environment = Environment(folder);
    LmdbGlobals first(environment, Access::kWrite);
    first.Set("A", {std::int64_t{1}}, std::string("kept"));
    first.Commit();
    LmdbGlobals second(environment, Access::kWrite);
    second.Set("A", {std::int64_t{1}}, std::string("dropped"));
    second.Set("A", {std::int64_t{2}}, std::string("dropped"));
  }
  const LmdbGlobals reader(Environment(folder), Access::kRead);
  EXPECT_EQ(NodeList(reader, "A"), std::vector<std::string>{"1=kept"});
}

TEST(LmdbGlobals, AReaderSeesWhatWasThereWhenItBegan) {
  const ScratchFolder folder;
  const auto environment = Environment(folder);
  const LmdbGlobals before(environment, Access::kRead);
  {
    LmdbGlobals writer(environment, Access::kWrite);
    writer.Set("A", {}, std::string("new"));
    writer.Commit();
  }
  EXPECT_EQ(before.Get("A", {}), std::nullopt);
  EXPECT_EQ(LmdbGlobals(environment, Access::kRead).Get("A", {}), Value(std::string("new")));
}

TEST(LmdbGlobals, HoldsValuesOfAnyLength) {
  const ScratchFolder folder;
  LmdbGlobals globals(Environment(folder), Access::kWrite);
  for (const std::size_t length : {std::size_t{0}, std::size_t{32648}, std::size_t{5'000'000}}) {
    globals.Set("A", {}, std::string(length, 'x'));
    EXPECT_EQ(globals.Get("A", {}), Value(std::string(length, 'x')));
  }
}

TEST(LmdbGlobals, RefusesSubscriptsTooLongToBeKeptAndNeverCutsThem) {
  const ScratchFolder folder;
  LmdbGlobals globals(Environment(folder), Access::kWrite);
  const auto status_of = [&globals](const std::string& subscript) {
    try {
      globals.Set("A", {subscript}, std::string("1"));
    } catch (const HostError& error) {
      return error.code;
    }
    return 0;
  };
  // The name takes 4 bytes of the key, the text 3 besides its own.
  EXPECT_EQ(status_of(std::string(504, 'x')), 0);
  EXPECT_EQ(status_of(std::string(505, 'x')), 5);
  EXPECT_EQ(status_of(std::string(5000, 'x')), 5);
  EXPECT_EQ(NodeList(globals, "A"), std::vector<std::string>{std::string(504, 'x') + "=1"});
}

TEST(LmdbGlobals, LooksForSubscriptsOfAnyLength) {
  const ScratchFolder folder;
  LmdbGlobals lmdb(Environment(folder), Access::kWrite);
  MemoryGlobals memory;
  for (const std::string& subscript : {std::string("w"), std::string(504, 'x'), std::string("y")}) {
    lmdb.Set("A", {subscript}, std::string("1"));
    memory.Set("A", {subscript}, std::string("1"));
  }
  for (const std::size_t length : {500U, 503U, 504U, 505U, 506U, 507U, 508U, 600U}) {
    const std::string wanted(length, 'x');
    EXPECT_EQ(lmdb.Get("A", {wanted}), memory.Get("A", {wanted})) << length;
    EXPECT_EQ(lmdb.Defined("A", {wanted}), memory.Defined("A", {wanted})) << length;
    EXPECT_EQ(lmdb.Order("A", {wanted}).subscript, memory.Order("A", {wanted}).subscript) << length;
    EXPECT_EQ(lmdb.Order("A", {wanted}, -1).subscript, memory.Order("A", {wanted}, -1).subscript) << length;
  }
}

TEST(LmdbGlobals, RemovesManyNodesAtOnce) {
  const ScratchFolder folder;
  LmdbGlobals globals(Environment(folder), Access::kWrite);
  globals.Set("A", {std::int64_t{0}}, std::string("before"));
  for (std::int64_t node = 0; node < 20000; ++node)
    globals.Set("A", {std::int64_t{1}, node}, std::string(100, 'x'));
  globals.Set("A", {std::int64_t{2}}, std::string("behind"));
  globals.Kill("A", {std::int64_t{1}});
  EXPECT_EQ(NodeList(globals, "A"), (std::vector<std::string>{"0=before", "2=behind"}));
}

}  // namespace
}  // namespace emulator
