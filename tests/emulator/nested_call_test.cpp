// Methods that call the library, which calls the host again.

#include <gtest/gtest.h>

#include <functional>

#include "tests/emulator/host_calls.h"

namespace emulator {
namespace {

class Acting : public Object {
 public:
  explicit Acting(std::function<Value(std::span<const Value>)> action) : action_(std::move(action)) {}
  Value Call(std::string_view /*method*/, std::span<const Value> arguments) override {
    return action_(arguments);
  }

 private:
  std::function<Value(std::span<const Value>)> action_;
};

std::uint32_t AddActing(Host& host, std::function<Value(std::span<const Value>)> action) {
  return host.Add(std::make_shared<Acting>(std::move(action)));
}

TEST(NestedCall, HasItsOwnPartOfTheStack) {
  Host host;
  const std::uint32_t inner = host.Add(std::make_shared<Answer>(std::string("inner")));
  const std::uint32_t outer = AddActing(host, [&](std::span<const Value> arguments) {
    EXPECT_EQ(PopText().status, kNoResult) << "the outer call's arguments are out of reach";
    EXPECT_EQ(PushMethod(inner, "Get"), 0);
    EXPECT_EQ(PushText("argument of the inner call"), 0);
    EXPECT_EQ(Callbacks().invoke_method(1), 0);
    EXPECT_EQ(PopText().text, "inner");
    return Value("got " + AsBytes(arguments[0]));
  });
  ASSERT_EQ(PushMethod(outer, "Do"), 0);
  ASSERT_EQ(PushText("argument of the outer call"), 0);
  ASSERT_EQ(Callbacks().invoke_method(1), 0);
  EXPECT_EQ(PopText().text, "got argument of the outer call");
  EXPECT_EQ(host.StackDepth(), 0U);
}

TEST(NestedCall, WhatItLeavesBehindIsCounted) {
  Host host;
  const std::uint32_t outer = AddActing(host, [](std::span<const Value>) {
    Callbacks().push_integer(1);
    return Value();
  });
  ASSERT_EQ(PushMethod(outer, "Do", 0), 0);
  ASSERT_EQ(Callbacks().invoke_method(0), 0);
  EXPECT_EQ(host.StackDepth(), 1U);
  host.ResetStack();
  EXPECT_EQ(host.StackDepth(), 0U);
}

TEST(NestedCall, FailingLeavesTheOuterCallAsItWas) {
  Host host;
  const std::uint32_t outer = AddActing(host, [](std::span<const Value>) -> Value {
    Callbacks().push_integer(1);
    throw HostError{5};
  });
  ASSERT_EQ(PushMethod(outer, "Do"), 0);
  ASSERT_EQ(PushText("x"), 0);
  EXPECT_EQ(Callbacks().invoke_method(1), 5);
  EXPECT_EQ(host.StackDepth(), 3U) << "the call, its argument, what the method left behind";
}

TEST(NestedCall, AMethodMayRemoveItsOwnObject) {
  Host host;
  std::uint32_t self = 0;
  self = AddActing(host, [&](std::span<const Value>) {
    host.Remove(self);
    return Value(std::int64_t{1});
  });
  ASSERT_EQ(PushMethod(self, "Do"), 0);
  EXPECT_EQ(Callbacks().invoke_method(0), 0);
  EXPECT_EQ(PopInteger().value, 1);
}

TEST(NestedCall, AMethodMayAddManyObjects) {
  Host host;
  const std::uint32_t outer = AddActing(host, [&](std::span<const Value> arguments) {
    for (int i = 0; i < 1000; ++i) host.Add(std::make_shared<Object>());
    return arguments[0];
  });
  ASSERT_EQ(PushMethod(outer, "Do"), 0);
  ASSERT_EQ(PushText("still here"), 0);
  ASSERT_EQ(Callbacks().invoke_method(1), 0);
  EXPECT_EQ(PopText().text, "still here");
}

}  // namespace
}  // namespace emulator
