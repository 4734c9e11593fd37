#include "emulator/globals.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "emulator/host_error.h"
#include "emulator/memory_globals.h"

namespace emulator {
namespace {

Value Text(const char* text) { return std::string(text); }

Value Number(std::int64_t number) { return number; }

/// The subscripts of one level, as a walk finds them.
std::vector<std::string> Walk(const Globals& globals, std::vector<Value> above, int direction) {
  std::vector<std::string> found;
  above.push_back(Text(""));
  for (;;) {
    const NextSubscript next = globals.Order("A", above, direction);
    if (next.subscript.empty()) return found;
    found.push_back(next.subscript);
    above.back() = next.subscript;
  }
}

TEST(Globals, KeepsValuesByNameAndSubscripts) {
  MemoryGlobals globals;
  globals.Set("A", {}, Text("root"));
  globals.Set("A", {Number(1), Text("x")}, Text("value"));
  globals.Set("AB", {Number(1), Text("x")}, Text("other"));
  EXPECT_EQ(globals.Get("A", {}), Text("root"));
  EXPECT_EQ(globals.Get("A", {Number(1), Text("x")}), Text("value"));
  EXPECT_EQ(globals.Get("AB", {Number(1), Text("x")}), Text("other"));
  EXPECT_EQ(globals.Get("A", {Number(1)}), std::nullopt);
  EXPECT_EQ(globals.Get("B", {}), std::nullopt);
  globals.Set("A", {}, Text("again"));
  EXPECT_EQ(globals.Get("A", {}), Text("again"));
}

TEST(Globals, ANumberAndItsTextAreOneSubscript) {
  MemoryGlobals globals;
  globals.Set("A", {Text("12")}, Text("value"));
  EXPECT_EQ(globals.Get("A", {Number(12)}), Text("value"));
  EXPECT_EQ(globals.Get("A", {12.0}), Text("value"));
  EXPECT_EQ(globals.Get("A", {Text("012")}), std::nullopt);
}

TEST(Globals, KeepsNumbersAsTextAndWideTextAsItIs) {
  MemoryGlobals globals;
  globals.Set("A", {Number(1)}, Number(-5));
  globals.Set("A", {Number(2)}, .5);
  globals.Set("A", {Number(3)}, std::u16string(u"\u4E00a"));
  globals.Set("A", {Number(4)}, Value());
  EXPECT_EQ(globals.Get("A", {Number(1)}), Text("-5"));
  EXPECT_EQ(globals.Get("A", {Number(2)}), Text(".5"));
  EXPECT_EQ(globals.Get("A", {Number(3)}), Value(std::u16string(u"\u4E00a")));
  EXPECT_EQ(globals.Get("A", {Number(4)}), Text(""));
}

TEST(Globals, RefusesAnEmptySubscriptInANode) {
  MemoryGlobals globals;
  try {
    globals.Set("A", {Number(1), Text("")}, Text("value"));
    FAIL();
  } catch (const HostError& error) {
    EXPECT_EQ(error.code, kInvalidSubscript);
  }
  EXPECT_EQ(globals.Defined("A", {}), 0);
}

TEST(Globals, DefinedTellsValuesFromNodesBelow) {
  MemoryGlobals globals;
  globals.Set("A", {Number(1)}, Text(""));
  globals.Set("A", {Number(2), Number(1)}, Text("x"));
  globals.Set("A", {Number(3)}, Text("x"));
  globals.Set("A", {Number(3), Number(1), Number(1)}, Text("x"));
  globals.Set("AB", {}, Text("x"));
  EXPECT_EQ(globals.Defined("A", {Number(0)}), 0);
  EXPECT_EQ(globals.Defined("A", {Number(1)}), 1);
  EXPECT_EQ(globals.Defined("A", {Number(2)}), 10);
  EXPECT_EQ(globals.Defined("A", {Number(3)}), 11);
  EXPECT_EQ(globals.Defined("A", {Text("")}), 0);
  EXPECT_EQ(globals.Defined("A", {}), 10);
  EXPECT_EQ(globals.Defined("AB", {}), 1);
  EXPECT_EQ(globals.Defined("B", {}), 0);
}

TEST(Globals, WalksALevelInTheHostsOrderBothWays) {
  MemoryGlobals globals;
  const std::vector<std::string> order = {"-2", "-1.5", "0", ".5", "2", "10", "01", "B", "a", "aa"};
  const std::vector<std::string> reversed(order.rbegin(), order.rend());
  for (const std::string& subscript : reversed) globals.Set("A", {Number(7), subscript}, Text("x"));
  globals.Set("A", {Number(6), Text("before")}, Text("x"));
  globals.Set("A", {Number(8), Text("behind")}, Text("x"));
  EXPECT_EQ(Walk(globals, {Number(7)}, +1), order);
  EXPECT_EQ(Walk(globals, {Number(7)}, -1), reversed);
  EXPECT_EQ(Walk(globals, {}, +1), (std::vector<std::string>{"6", "7", "8"}));
  EXPECT_EQ(Walk(globals, {}, -1), (std::vector<std::string>{"8", "7", "6"}));
  EXPECT_EQ(Walk(globals, {Number(9)}, +1), std::vector<std::string>());
  EXPECT_EQ(Walk(globals, {Number(9)}, -1), std::vector<std::string>());
}

TEST(Globals, WalksFromASubscriptThatIsNotThere) {
  MemoryGlobals globals;
  globals.Set("A", {Number(10)}, Text("x"));
  globals.Set("A", {Number(20)}, Text("x"));
  EXPECT_EQ(globals.Order("A", {Number(15)}, +1).subscript, "20");
  EXPECT_EQ(globals.Order("A", {Number(15)}, -1).subscript, "10");
  EXPECT_EQ(globals.Order("A", {Number(20)}, +1).subscript, "");
  EXPECT_EQ(globals.Order("A", {Number(10)}, -1).subscript, "");
}

TEST(Globals, WalkStepsOverTheNodesBelow) {
  MemoryGlobals globals;
  globals.Set("A", {Number(1)}, Text("one"));
  globals.Set("A", {Number(1), Text("\xFF\xFF"), Number(9)}, Text("deep"));
  globals.Set("A", {Number(2), Number(5)}, Text("no value at 2"));
  globals.Set("A", {Number(3)}, Text("three"));
  globals.Set("A", {Number(3), Number(5)}, Text("deep"));
  for (const int direction : {+1, -1}) {
    const NextSubscript two = globals.Order("A", {Number(2 - direction)}, direction);
    EXPECT_EQ(two.subscript, "2");
    EXPECT_EQ(two.value, std::nullopt);
  }
  EXPECT_EQ(globals.Order("A", {Number(2)}, +1).value, Text("three"));
  EXPECT_EQ(globals.Order("A", {Text("")}, -1).value, Text("three")) << "though the last node lies below it";
  EXPECT_EQ(globals.Order("A", {Number(2)}, -1).value, Text("one"));
}

TEST(Globals, KillTakesTheNodeAndAllBelowIt) {
  MemoryGlobals globals;
  globals.Set("A", {Number(1)}, Text("x"));
  globals.Set("A", {Number(1), Text("\xFF"), Number(1)}, Text("x"));
  globals.Set("A", {Number(10)}, Text("x"));
  globals.Set("A", {Text("1a")}, Text("x"));
  globals.Set("AB", {Number(1)}, Text("x"));
  globals.Kill("A", {Number(1)});
  EXPECT_EQ(globals.Defined("A", {Number(1)}), 0);
  EXPECT_EQ(globals.Defined("A", {Number(10)}), 1);
  EXPECT_EQ(globals.Defined("A", {Text("1a")}), 1);
  globals.Kill("A");
  EXPECT_EQ(globals.Defined("A", {}), 0);
  EXPECT_EQ(globals.Defined("AB", {}), 10);
}

TEST(Globals, VisitSeesEveryValueFromANodeDown) {
  MemoryGlobals globals;
  globals.Set("A", {Number(2)}, Text("two"));
  globals.Set("A", {Number(2), Text("b"), Number(1)}, Text("deep"));
  globals.Set("A", {Number(2), Number(10)}, Text("ten"));
  globals.Set("A", {Number(3)}, Text("three"));
  std::vector<std::string> seen;
  const auto note = [&seen](const GlobalNode& node, const Value& value) {
    std::string line = node.name;
    for (const std::string& subscript : node.subscripts) line += "/" + subscript;
    seen.push_back(line + "=" + AsBytes(value));
    return true;
  };
  globals.Visit("A", {Number(2)}, note);
  EXPECT_EQ(seen, (std::vector<std::string>{"A/2=two", "A/2/10=ten", "A/2/b/1=deep"}));
  seen.clear();
  globals.Visit("A", {}, [&](const GlobalNode& node, const Value& value) {
    note(node, value);
    return seen.size() < 2;
  });
  EXPECT_EQ(seen, (std::vector<std::string>{"A/2=two", "A/2/10=ten"}));
}

/// What a walk over the nodes of a global and a tree of numbers find must be the same.
void ExpectAll(const Globals& globals, const std::map<int, std::string>& expected) {
  std::vector<std::string> walked;
  std::vector<std::string> backward;
  std::vector<std::string> order;
  NextSubscript next = globals.Order("A", {Text("")}, +1);
  for (; !next.subscript.empty(); next = globals.Order("A", {next.subscript}, +1)) {
    walked.push_back(next.subscript + "=" + AsBytes(next.value.value_or(Value())));
  }
  next = globals.Order("A", {Text("")}, -1);
  for (; !next.subscript.empty(); next = globals.Order("A", {next.subscript}, -1)) {
    backward.insert(backward.begin(), next.subscript + "=" + AsBytes(next.value.value_or(Value())));
  }
  for (const auto& [number, text] : expected) {
    order.push_back(std::to_string(number) + "=" + text);
    EXPECT_EQ(globals.Get("A", {Number(number)}), Value(text));
  }
  EXPECT_EQ(walked, order);
  EXPECT_EQ(backward, order);
}

TEST(Globals, ManyNodesKeepTheirOrderThroughAllChanges) {
  MemoryGlobals globals;
  std::map<int, std::string> expected;
  std::mt19937 random(7);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same on every run
  const auto any_number = [&random] { return static_cast<int>(random() % 100000) - 50000; };
  for (int change = 0; change < 3000; ++change) {
    const int number = any_number();
    expected[number] = std::to_string(change);
    globals.Set("A", {Number(number)}, expected[number]);
  }
  for (int number = 60000; number < 60500; ++number) {
    globals.Set("A", {Number(number)}, expected[number] = "one behind the other");
  }
  ExpectAll(globals, expected);
  for (int change = 0; change < 2000; ++change) {
    const int number = std::next(expected.begin(), static_cast<int>(random() % expected.size()))->first;
    expected.erase(number);
    globals.Kill("A", {Number(number)});
    EXPECT_EQ(globals.Defined("A", {Number(number)}), 0);
  }
  ExpectAll(globals, expected);
}

/// Nodes by their subscripts, all of them texts, in the order of their bytes.
using Nodes = std::set<std::vector<std::string>>;

std::vector<Value> Values(const std::vector<std::string>& subscripts) {
  return {subscripts.begin(), subscripts.end()};
}

/// What follows the last subscript on its level.
std::string NeighbourIn(const Nodes& nodes, const std::vector<std::string>& subscripts, int direction) {
  const std::size_t level = subscripts.size() - 1;
  const auto is_on_level = [&](const std::vector<std::string>& node) {
    return node.size() > level && std::equal(subscripts.begin(), subscripts.end() - 1, node.begin());
  };
  std::string neighbour;
  for (const auto& node : nodes) {
    if (!is_on_level(node)) continue;
    if (direction > 0 && node[level] > subscripts.back()) return node[level];
    if (direction < 0 && (subscripts.back().empty() || node[level] < subscripts.back()))
      neighbour = node[level];
  }
  return neighbour;
}

TEST(Globals, NodesOfAllDepthsHaveTheirNeighboursThroughAllChanges) {
  const std::vector<std::string> texts = {"a",
                                          "aa",
                                          "b",
                                          std::string("b\0", 2),
                                          std::string("b\0c", 3),
                                          "a text that is longer than what is compared at once: 1",
                                          "a text that is longer than what is compared at once: 2"};
  std::mt19937 random(11);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same on every run
  const auto any_node = [&] {
    std::vector<std::string> subscripts(1 + random() % 5);
    for (std::string& subscript : subscripts) subscript = texts[random() % texts.size()];
    return subscripts;
  };
  MemoryGlobals globals;
  Nodes nodes;
  for (int change = 0; change < 1500; ++change) {
    auto node = any_node();
    if (change % 5 == 4) {
      globals.Kill("A", Values(node));
      std::erase_if(nodes, [&](const auto& other) {
        return other.size() >= node.size() && std::equal(node.begin(), node.end(), other.begin());
      });
    } else {
      globals.Set("A", Values(node), Text(node.back().c_str()));
      nodes.insert(node);
    }
    node = any_node();
    EXPECT_EQ(globals.Get("A", Values(node)).has_value(), nodes.contains(node));
    if (random() % 3 == 0) node.back().clear();
    const int direction = random() % 2 == 0 ? 1 : -1;
    ASSERT_EQ(globals.Order("A", Values(node), direction).subscript, NeighbourIn(nodes, node, direction));
  }
}

/// However many nodes come before: those of the other global may be the first that are kept together.
TEST(Globals, AWalkEndsWhereAnotherGlobalHasTheSameSubscripts) {
  for (std::int64_t last = 1; last <= 200; ++last) {
    MemoryGlobals globals;
    for (std::int64_t number = 1; number <= last; ++number) {
      globals.Set("A", {Number(1), Number(number)}, Text("x"));
    }
    for (std::int64_t number = 1; number <= 3; ++number) {
      globals.Set("B", {Number(number), Number(1000)}, Text("x"));
    }
    EXPECT_EQ(globals.Order("A", {Number(1), Number(last)}).subscript, "") << last;
  }
}

TEST(Globals, KillOfManyNodesLeavesThoseAround) {
  MemoryGlobals globals;
  globals.Set("A", {Text("below")}, Text("first"));
  for (int number = 0; number < 500; ++number) globals.Set("B", {Number(1), Number(number)}, Text("x"));
  globals.Set("B", {Number(2)}, Text("last"));
  globals.Kill("B", {Number(1)});
  EXPECT_EQ(globals.Order("B", {Text("")}).subscript, "2");
  EXPECT_EQ(globals.Order("B", {Number(2)}, -1).subscript, "");
  EXPECT_EQ(globals.Get("A", {Text("below")}), Text("first"));
  globals.Kill("A");
  globals.Kill("B");
  EXPECT_EQ(globals.Order("B", {Text("")}, -1).subscript, "");
  globals.Set("C", {Number(1)}, Text("again"));
  EXPECT_EQ(globals.Order("C", {Text("")}, -1).value, Text("again"));
}

}  // namespace
}  // namespace emulator
