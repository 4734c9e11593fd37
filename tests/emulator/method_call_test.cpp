// Calls of methods and fetches of properties.

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "tests/emulator/host_calls.h"

namespace emulator {
namespace {

TEST(MethodCall, HandsTheArgumentsToTheObjectInTheOrderOfTheirPushes) {
  Host host;
  const auto object = std::make_shared<Answer>(std::int64_t{7});
  const std::uint32_t oref = host.Add(object);
  const std::uint16_t wide[] = {0x4E00};
  ASSERT_EQ(PushMethod(oref, "Do"), 0);
  ASSERT_EQ(Callbacks().push_integer(-5), 0);
  ASSERT_EQ(Callbacks().push_unsigned(4294967295U), 0);
  ASSERT_EQ(Callbacks().push_double(1.5), 0);
  ASSERT_EQ(PushText(std::string_view("a\0b", 3)), 0);
  ASSERT_EQ(Callbacks().push_wide_string(1, wide), 0);
  ASSERT_EQ(Callbacks().push_wide_string_alt(1, wide), 0);
  ASSERT_EQ(Callbacks().push_counted(2, Units("xy")), 0);
  ASSERT_EQ(Callbacks().push_object(oref), 0);
  ASSERT_EQ(host.StackDepth(), 9U);
  ASSERT_EQ(Callbacks().invoke_method(8), 0);
  const std::vector<Value> expected = {std::int64_t{-5},
                                       std::int64_t{4294967295},
                                       1.5,
                                       std::string("a\0b", 3),
                                       std::u16string(u"\u4E00"),
                                       std::u16string(u"\u4E00"),
                                       std::string("xy"),
                                       ObjectRef{oref}};
  EXPECT_EQ(object->Arguments(), expected);
  EXPECT_EQ(host.StackDepth(), 1U);
  EXPECT_EQ(PopInteger().value, 7);
  EXPECT_EQ(host.StackDepth(), 0U);
}

TEST(MethodCall, LeavesNoResultWhenNoneIsWanted) {
  Host host;
  const std::uint32_t oref = host.Add(std::make_shared<Answer>(std::int64_t{7}));
  ASSERT_EQ(PushMethod(oref, "Do", 0), 0);
  ASSERT_EQ(Callbacks().invoke_method(0), 0);
  EXPECT_EQ(host.StackDepth(), 0U);
  EXPECT_EQ(ConvertToInteger().status, kNoResult);
}

TEST(MethodCall, RefusesAnUnknownObject) {
  Host host;
  EXPECT_EQ(PushMethod(0, "Peek"), kInvalidOref);
  EXPECT_EQ(PushMethod(1, "Peek"), kInvalidOref);
  EXPECT_EQ(PushProperty(1, "Size"), kInvalidOref);
  EXPECT_EQ(Callbacks().push_object(1), kInvalidOref);
  EXPECT_EQ(host.StackDepth(), 0U);
}

TEST(MethodCall, RefusesARemovedObjectAndGivesItsReferenceToNobody) {
  Host host;
  const std::uint32_t oref = host.Add(std::make_shared<Answer>(Value()));
  ASSERT_EQ(PushMethod(oref, "Do"), 0);
  host.Remove(oref);
  EXPECT_EQ(Callbacks().invoke_method(0), kInvalidOref);
  EXPECT_EQ(PushMethod(oref, "Do"), kInvalidOref);
  EXPECT_EQ(host.Add(std::make_shared<Answer>(Value())), oref + 1);
}

TEST(MethodCall, RefusesAMissingMethodAndAMissingProperty) {
  Host host;
  const std::uint32_t oref = host.Add(std::make_shared<Object>());
  ASSERT_EQ(PushMethod(oref, "Peek"), 0);
  EXPECT_EQ(Callbacks().invoke_method(0), kMethodMissing);
  EXPECT_EQ(host.StackDepth(), 1U) << "a refused call stays as it was";
  host.ResetStack();
  ASSERT_EQ(PushProperty(oref, "Size"), 0);
  EXPECT_EQ(Callbacks().get_property(), kPropertyMissing);
}

TEST(MethodCall, RefusesMoreArgumentsThanWerePushed) {
  Host host;
  const std::uint32_t oref = host.Add(std::make_shared<Answer>(Value()));
  ASSERT_EQ(PushMethod(oref, "Do"), 0);
  ASSERT_EQ(Callbacks().push_integer(1), 0);
  EXPECT_EQ(Callbacks().invoke_method(2), kInvalidArgument);
  EXPECT_EQ(Callbacks().invoke_method(-1), kInvalidArgument);
  EXPECT_EQ(host.StackDepth(), 2U);
  EXPECT_EQ(Callbacks().invoke_method(1), 0);
}

TEST(MethodCall, RefusesFewerArgumentsThanWerePushed) {
  Host host;
  const std::uint32_t oref = host.Add(std::make_shared<Answer>(Value()));
  ASSERT_EQ(PushMethod(oref, "Do"), 0);
  ASSERT_EQ(Callbacks().push_integer(1), 0);
  EXPECT_EQ(Callbacks().invoke_method(0), kInvalidArgument);
}

TEST(MethodCall, RefusesAnInvocationOfNothing) {
  Host host;
  EXPECT_EQ(Callbacks().invoke_method(0), kInvalidArgument);
  EXPECT_EQ(Callbacks().get_property(), kInvalidArgument);
  const std::uint32_t oref = host.Add(std::make_shared<Answer>(Value()));
  ASSERT_EQ(PushProperty(oref, "Size"), 0);
  EXPECT_EQ(Callbacks().invoke_method(0), kInvalidArgument) << "a property is no method";
  EXPECT_EQ(Callbacks().get_property(), 0);
}

TEST(MethodCall, RefusesACallBegunInsideAnother) {
  Host host;
  const std::uint32_t oref = host.Add(std::make_shared<Answer>(Value()));
  ASSERT_EQ(PushMethod(oref, "Do"), 0);
  EXPECT_EQ(PushMethod(oref, "Do"), kInvalidArgument);
  host.ResetStack();
  ASSERT_EQ(PushMethod(oref, "Do"), 0);
  ASSERT_EQ(Callbacks().push_integer(1), 0);
  EXPECT_EQ(PushProperty(oref, "Size"), kInvalidArgument);
  host.ResetStack();
  ASSERT_EQ(PushGlobal("A"), 0);
  EXPECT_EQ(PushMethod(oref, "Do"), kInvalidArgument);
}

TEST(MethodCall, AfterAFailureANewCallMayBegin) {
  Host host;
  const std::uint32_t oref = host.Add(std::make_shared<Object>());
  ASSERT_EQ(PushMethod(oref, "Do"), 0);
  ASSERT_EQ(Callbacks().invoke_method(0), kMethodMissing);
  EXPECT_EQ(PushMethod(oref, "Do"), 0);
  EXPECT_EQ(host.StackDepth(), 2U) << "what the failed call had pushed is still there";
}

TEST(MethodCall, RefusesAFlagThatIsNeitherYesNorNo) {
  Host host;
  const std::uint32_t oref = host.Add(std::make_shared<Object>());
  EXPECT_EQ(PushMethod(oref, "Do", 2), kInvalidArgument);
}

TEST(MethodCall, AResultNotFetchedStaysOnTheStack) {
  Host host;
  LeaveResult(host, std::int64_t{1});
  LeaveResult(host, std::int64_t{2});
  EXPECT_EQ(host.StackDepth(), 2U);
  EXPECT_EQ(PopInteger().value, 2);
  EXPECT_EQ(PopInteger().value, 1);
}

TEST(MethodCall, ResultsNeverFetchedFillTheStack) {
  Host host;
  const std::uint32_t oref = host.Add(std::make_shared<Answer>(Value()));
  int status = 0;
  for (int i = 0; i < 5000 && status == 0; ++i) {
    status = PushMethod(oref, "Do");
    if (status == 0) status = Callbacks().invoke_method(0);
  }
  EXPECT_EQ(status, kStackFull);
}

TEST(MethodCall, AFullStackTakesNothingMore) {
  Host host;
  int status = 0;
  while (status == 0) status = Callbacks().push_integer(1);
  EXPECT_EQ(status, kStackFull);
  const std::size_t depth = host.StackDepth();
  EXPECT_EQ(PushText("x"), kStackFull);
  EXPECT_EQ(host.StackDepth(), depth);
  host.ResetStack();
  EXPECT_EQ(Callbacks().push_integer(1), 0);
}

TEST(MethodCall, FailuresOfTheObjectAreAnswered) {
  class Failing : public Object {
    Value Call(std::string_view method, std::span<const Value> /*arguments*/) override {
      if (method == "HostError") throw HostError{5};
      if (method == "NoCode") throw HostError{0};
      if (method == "NoMemory") throw std::bad_alloc();
      throw std::runtime_error("anything");
    }
  };
  Host host;
  const std::uint32_t oref = host.Add(std::make_shared<Failing>());
  const auto status_of = [&](std::string_view method) {
    PushMethod(oref, method);
    return Callbacks().invoke_method(0);
  };
  EXPECT_EQ(status_of("HostError"), 5);
  EXPECT_EQ(status_of("NoCode"), kFailure);
  EXPECT_EQ(status_of("NoMemory"), kOutOfStore);
  EXPECT_EQ(status_of("Other"), kFailure);
}

TEST(PropertyFetch, LeavesTheValueAsAResult) {
  Host host;
  const std::uint32_t oref = host.Add(std::make_shared<Answer>(std::int64_t{41}));
  ASSERT_EQ(PushProperty(oref, "Size"), 0);
  ASSERT_EQ(Callbacks().get_property(), 0);
  EXPECT_EQ(ConvertToInteger().value, 41);
  EXPECT_EQ(host.StackDepth(), 0U);
}

TEST(Callbacks, AnswerNotConnectedWithoutAHost) {
  EXPECT_EQ(Callbacks().push_integer(1), kNotConnected);
  vessa::LongStringDescriptor descriptor{};
  EXPECT_EQ(Callbacks().new_long_string(&descriptor, 40000), nullptr);
}

TEST(Callbacks, GoToTheNewestHost) {
  Host outer;
  {
    Host inner;
    Callbacks().push_integer(1);
    EXPECT_EQ(inner.StackDepth(), 1U);
  }
  EXPECT_EQ(outer.StackDepth(), 0U);
  Callbacks().push_integer(1);
  EXPECT_EQ(outer.StackDepth(), 1U);
  EXPECT_EQ(outer.CallbackCount(), 1U);
}

}  // namespace
}  // namespace emulator
