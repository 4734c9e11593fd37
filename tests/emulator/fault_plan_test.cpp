#include "emulator/fault_plan.h"

#include <gtest/gtest.h>

#include "tests/emulator/host_calls.h"

namespace emulator {
namespace {

TEST(FaultPlan, FailsTheNthCallbackOfAnyKindOnce) {
  Host host;
  host.faults().FailNth(2, -4);
  EXPECT_EQ(Callbacks().push_integer(1), 0);
  EXPECT_EQ(PushText("x"), -4);
  EXPECT_EQ(PushText("x"), 0);
  EXPECT_EQ(host.StackDepth(), 2U) << "a failed callback pushes nothing";
  EXPECT_EQ(host.CallbackCount(), 3U);
  EXPECT_EQ(host.faults().Hits(), 1U);
}

TEST(FaultPlan, FailsAnOperationFromTheNthUseOn) {
  Host host;
  host.faults().FailNth(Operation::kPushString, 2, 21, true);
  EXPECT_EQ(PushText("x"), 0);
  EXPECT_EQ(Callbacks().push_integer(1), 0);
  EXPECT_EQ(PushText("x"), 21);
  EXPECT_EQ(Callbacks().push_integer(1), 0);
  EXPECT_EQ(PushText("x"), 21);
}

TEST(FaultPlan, FailsTheNthInvocationOfAMethod) {
  Host host;
  const std::uint32_t oref = host.Add(std::make_shared<Answer>(Value()));
  host.faults().FailNthMethod("Skip", 2, 5);
  const auto call = [&](std::string_view method) {
    PushMethod(oref, method, 0);
    Callbacks().push_integer(1);
    const int status = Callbacks().invoke_method(1);
    host.ResetStack();
    return status;
  };
  EXPECT_EQ(call("Skip"), 0);
  EXPECT_EQ(call("Peek"), 0);
  EXPECT_EQ(call("Skip"), 5);
  EXPECT_EQ(call("Skip"), 0);
}

TEST(FaultPlan, FailsOnEachOfTheOccasions) {
  const auto failed_of_ten = [](const Occasions& occasions) {
    Host host;
    host.faults().Fail(Operation::kPushInteger, occasions, 5);
    std::string failed;
    for (int n = 1; n <= 10; ++n) failed += Callbacks().push_integer(n) == 0 ? '.' : 'x';
    return failed;
  };
  EXPECT_EQ(failed_of_ten({}), "xxxxxxxxxx");
  EXPECT_EQ(failed_of_ten({3, 5}), "..xxx.....");
  EXPECT_EQ(failed_of_ten({.first = 2, .step = 3}), ".x..x..x..");
  EXPECT_EQ(failed_of_ten({2, 7, 2}), ".x.x.x....");
}

TEST(FaultPlan, CountsFromWhenTheRuleWasGivenAndForgets) {
  Host host;
  Callbacks().push_integer(1);
  host.faults().FailNth(1, -4);
  EXPECT_EQ(Callbacks().push_integer(1), -4);
  host.faults().FailNth(1, -4, true);
  host.faults().Clear();
  EXPECT_EQ(Callbacks().push_integer(1), 0);
}

TEST(FaultPlan, AnAreaIsNotGiven) {
  Host host;
  host.faults().FailNth(Operation::kNewLongString, 1, -1);
  vessa::LongStringDescriptor descriptor{};
  EXPECT_EQ(Callbacks().new_long_string(&descriptor, 40000), nullptr);
  EXPECT_EQ(host.OpenLongStrings(), 0U);
}

TEST(FaultPlan, AnInvocationFailedByPlanDoesNotReachTheObject) {
  Host host;
  const auto object = std::make_shared<Answer>(Value());
  host.faults().FailNth(Operation::kInvokeMethod, 1, 5);
  PushMethod(host.Add(object), "Do");
  Callbacks().push_integer(1);
  EXPECT_EQ(Callbacks().invoke_method(1), 5);
  EXPECT_TRUE(object->Arguments().empty());
  EXPECT_EQ(Callbacks().invoke_method(1), 0) << "the call stands as it was";
}

TEST(FaultPlan, LiesAboutTheLengthOfAText) {
  Host host;
  host.faults().LieNth(Lie::kNegativeLength, 2);
  LeaveResult(host, std::string("one"));
  LeaveResult(host, std::string("two"));
  int length = 0;
  unsigned char* text = nullptr;
  ASSERT_EQ(Callbacks().pop_string(&length, &text), 0);
  EXPECT_EQ(length, 3);
  ASSERT_EQ(Callbacks().pop_string(&length, &text), 0);
  EXPECT_EQ(length, -1);
}

TEST(FaultPlan, LiesAboutThereBeingAText) {
  Host host;
  host.faults().LieNth(Lie::kNoBytes, 1);
  LeaveResult(host, std::string());
  int length = 0;
  std::uint16_t units = 0;
  std::uint16_t* text = &units;
  ASSERT_EQ(Callbacks().pop_wide_string(&length, &text), 0);
  EXPECT_GT(length, 0);
  EXPECT_EQ(text, nullptr);
}

TEST(FaultPlan, LiesAboutTheCountOfAConvertedResult) {
  Host host;
  host.faults().LieNth(Lie::kCountAboveCapacity, 1);
  LeaveResult(host, std::string("x"));
  vessa::HostString receiver{};
  receiver.count = 32767;
  ASSERT_EQ(Callbacks().convert_result(vessa::kConvertToCountedString, &receiver), 0);
  EXPECT_EQ(receiver.count, 65535);
}

}  // namespace
}  // namespace emulator
