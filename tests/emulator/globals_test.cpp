#include "emulator/globals.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace emulator
