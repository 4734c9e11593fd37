// Globals as the library reads them: by callbacks.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/emulator/host_calls.h"

namespace emulator {
namespace {

Value Text(const char* text) { return std::string(text); }

class GlobalCallback : public testing::Test {
 protected:
  GlobalCallback() {
    host_.globals().Set("A", {std::int64_t{1}}, Text("one"));
    host_.globals().Set("A", {std::int64_t{2}, Text("x")}, Text("below two"));
    host_.globals().Set("A", {std::int64_t{3}}, Text("three"));
  }

  /// GlobalOrder after the subscript; the results are left on the stack.
  static int Order(std::string_view subscript, int direction, int value_wanted) {
    PushGlobal("A");
    PushText(subscript);
    return Callbacks().global_order(1, direction, value_wanted);
  }

  Host host_;
};

TEST_F(GlobalCallback, GetLeavesTheValueInEitherKindOfText) {
  ASSERT_EQ(PushGlobal("A"), 0);
  ASSERT_EQ(Callbacks().push_integer(2), 0);
  ASSERT_EQ(PushText("x"), 0);
  ASSERT_EQ(Callbacks().global_get(2, 0), 0);
  EXPECT_EQ(PopUnits().text, u"below two");
  ASSERT_EQ(PushGlobal("A"), 0);
  ASSERT_EQ(PushText("1"), 0);
  ASSERT_EQ(Callbacks().global_get(1, 0), 0);
  EXPECT_EQ(PopText().text, "one");
  EXPECT_EQ(host_.StackDepth(), 0U);
}

TEST_F(GlobalCallback, GetOfANodeWithoutAValueIsUndefined) {
  ASSERT_EQ(PushGlobal("A"), 0);
  ASSERT_EQ(Callbacks().push_integer(2), 0);
  EXPECT_EQ(Callbacks().global_get(1, 0), kUndefinedNode);
  EXPECT_EQ(host_.StackDepth(), 0U) << "the reference was used";
}

TEST_F(GlobalCallback, GetWithoutSubscriptsReadsTheRoot) {
  host_.globals().Set("A", {}, Text("root"));
  ASSERT_EQ(PushGlobal("A"), 0);
  ASSERT_EQ(Callbacks().global_get(0, 0), 0);
  EXPECT_EQ(PopText().text, "root");
}

TEST_F(GlobalCallback, DefinedLeavesItsCode) {
  const auto defined = [](int subscript) {
    PushGlobal("A");
    Callbacks().push_integer(subscript);
    EXPECT_EQ(Callbacks().global_defined(1, 0), 0);
    return PopInteger().value;
  };
  host_.globals().Set("A", {std::int64_t{3}, Text("x")}, Text("below three"));
  EXPECT_EQ(defined(0), 0);
  EXPECT_EQ(defined(1), 1);
  EXPECT_EQ(defined(2), 10);
  EXPECT_EQ(defined(3), 11);
  EXPECT_EQ(host_.StackDepth(), 0U);
}

TEST_F(GlobalCallback, OrderLeavesOnlyTheSubscriptWhenNoValueIsWanted) {
  ASSERT_EQ(Order("", +1, 0), 0);
  EXPECT_EQ(PopText().text, "1");
  ASSERT_EQ(Order("", -1, 0), 0);
  EXPECT_EQ(PopText().text, "3");
  ASSERT_EQ(Order("3", +1, 0), 0);
  EXPECT_EQ(PopText().text, "");
  EXPECT_EQ(host_.StackDepth(), 0U);
}

TEST_F(GlobalCallback, OrderLeavesTheValueAboveTheSubscript) {
  ASSERT_EQ(Order("", +1, 1), 0);
  EXPECT_EQ(PopInteger().value, 1);
  EXPECT_EQ(PopText().text, "one");
  EXPECT_EQ(PopText().text, "1");
  EXPECT_EQ(host_.StackDepth(), 0U);
}

TEST_F(GlobalCallback, OrderSaysWhenTheNeighbourHasNoValue) {
  ASSERT_EQ(Order("1", +1, 1), 0);
  EXPECT_EQ(PopInteger().value, 0);
  EXPECT_EQ(PopText().text, "2");
  EXPECT_EQ(host_.StackDepth(), 0U);
}

TEST_F(GlobalCallback, OrderEndsWithoutAValueAndWithAnEmptySubscript) {
  ASSERT_EQ(Order("3", +1, 1), 0);
  EXPECT_EQ(PopInteger().value, 0);
  EXPECT_EQ(PopText().text, "");
  EXPECT_EQ(host_.StackDepth(), 0U);
}

TEST_F(GlobalCallback, RefusesWhatMakesNoSense) {
  EXPECT_EQ(Order("", 0, 1), kInvalidArgument);
  host_.ResetStack();
  EXPECT_EQ(Order("", 2, 1), kInvalidArgument);
  host_.ResetStack();
  EXPECT_EQ(Order("", 1, 2), kInvalidArgument);
  host_.ResetStack();
  ASSERT_EQ(PushGlobal("A"), 0);
  EXPECT_EQ(Callbacks().global_order(0, 1, 0), kInvalidArgument) << "there is no subscript to follow";
  EXPECT_EQ(Callbacks().global_get(1, 0), kInvalidArgument) << "more subscripts than were pushed";
  EXPECT_EQ(Callbacks().global_get(0, 1), kInvalidArgument);
  EXPECT_EQ(Callbacks().global_defined(0, 1), kInvalidArgument);
  EXPECT_EQ(Callbacks().global_defined(-1, 0), kInvalidArgument);
  EXPECT_EQ(Callbacks().invoke_method(0), kInvalidArgument) << "a global is no method";
}

TEST_F(GlobalCallback, RefusesReadsWithoutAReference) {
  EXPECT_EQ(Callbacks().global_get(0, 0), kInvalidArgument);
  EXPECT_EQ(Callbacks().global_defined(0, 0), kInvalidArgument);
  EXPECT_EQ(Callbacks().global_order(1, 1, 0), kInvalidArgument);
}

TEST_F(GlobalCallback, RefusesNamesThatAreNone) {
  EXPECT_EQ(PushGlobal("^A"), kInvalidName);
  EXPECT_EQ(PushGlobal(""), kInvalidName);
  EXPECT_EQ(PushGlobal("A(1)"), kInvalidName);
  EXPECT_EQ(PushGlobal("KevDICOM.Data"), 0);
}

TEST_F(GlobalCallback, KnowsOnlyItsOwnNamespace) {
  const auto push = [](std::string_view name_space) {
    return Callbacks().push_global_in_namespace(1, Units("A"), Length(name_space), Units(name_space));
  };
  EXPECT_EQ(push("ELSEWHERE"), kUnknownNamespace);
  ASSERT_EQ(push(""), 0);
  ASSERT_EQ(Callbacks().push_integer(1), 0);
  ASSERT_EQ(Callbacks().global_get(1, 0), 0);
  EXPECT_EQ(PopText().text, "one");
}

TEST_F(GlobalCallback, RefusesSubscriptsThatCannotBe) {
  const std::uint16_t wide[] = {0x4E00};
  ASSERT_EQ(PushGlobal("A"), 0);
  ASSERT_EQ(Callbacks().push_wide_string(1, wide), 0);
  EXPECT_EQ(Callbacks().global_get(1, 0), kWideCharacter);
}

TEST_F(GlobalCallback, RefusesAnObjectAsASubscriptWhenItIsUsed) {
  const std::uint16_t wide[] = {0x4E00};
  ASSERT_EQ(PushGlobal("A"), 0);
  ASSERT_EQ(Callbacks().push_object(0), 0);
  ASSERT_EQ(Callbacks().push_wide_string(1, wide), 0);
  EXPECT_EQ(Callbacks().global_get(2, 0), kInvalidArgument) << "the first one's refusal";
  EXPECT_EQ(Callbacks().global_order(2, 1, 0), kInvalidArgument);
}

TEST_F(GlobalCallback, TakesSubscriptsOfEveryKind) {
  const std::uint16_t units[] = {'x'};
  const auto get = [] {
    EXPECT_EQ(Callbacks().global_get(2, 0), 0);
    return PopText().text;
  };
  ASSERT_EQ(PushGlobal("A"), 0);
  ASSERT_EQ(Callbacks().push_double(2.0), 0);
  ASSERT_EQ(Callbacks().push_wide_string(1, units), 0);
  EXPECT_EQ(get(), "below two");
  ASSERT_EQ(PushGlobal("A"), 0);
  ASSERT_EQ(Callbacks().push_unsigned(2), 0);
  ASSERT_EQ(Callbacks().push_counted(1, Units("x")), 0);
  EXPECT_EQ(get(), "below two");
}

/// The value of ^B(subscript).
std::string ValueOfB(std::string_view subscript) {
  EXPECT_EQ(PushGlobal("B"), 0);
  EXPECT_EQ(PushText(subscript), 0);
  EXPECT_EQ(Callbacks().global_get(1, 0), 0);
  return PopText().text;
}

TEST_F(GlobalCallback, FindsTheNodeOfEveryTextOfOneCharacter) {
  std::vector<std::string> texts;
  for (int byte = 0; byte <= 0xFF; ++byte) texts.emplace_back(1, static_cast<char>(byte));
  for (const std::string& text : texts) host_.globals().Set("B", {text}, "of " + text);
  for (const std::string& text : texts) EXPECT_EQ(ValueOfB(text), "of " + text);
}

TEST_F(GlobalCallback, FindsTheNodesOfTextsThatBeginAlike) {
  const std::vector<std::string> texts{"d",  "dd", "d1",  "1", "12",   "1.2",     "1.2.3",   "1.2.3.4",
                                       "10", "01", "1.0", ".", "-1.5", "1.2.3.5", "1.2.3.4", "-"};
  for (const std::string& text : texts) host_.globals().Set("B", {text}, "of " + text);
  for (const std::string& text : texts) EXPECT_EQ(ValueOfB(text), "of " + text);
}

TEST_F(GlobalCallback, AReferenceOutlivesTheRefusalOfAnother) {
  ASSERT_EQ(PushGlobal("A"), 0);
  ASSERT_EQ(PushText("3"), 0);
  ASSERT_EQ(PushGlobal("^"), kInvalidArgument) << "while the first one waits for its subscripts";
  ASSERT_EQ(PushGlobal("A"), 0) << "which the refusal has interrupted";
  ASSERT_EQ(PushText("1"), 0);
  ASSERT_EQ(Callbacks().global_get(1, 0), 0);
  EXPECT_EQ(PopText().text, "one");
  ASSERT_EQ(Callbacks().global_get(1, 0), 0);
  EXPECT_EQ(PopText().text, "three");
}

}  // namespace
}  // namespace emulator
