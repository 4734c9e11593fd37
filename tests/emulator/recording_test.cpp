// What is told of the callbacks to those who watch.

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "emulator/stream_object.h"
#include "tests/emulator/host_calls.h"

namespace emulator {
namespace {

using Lines = std::vector<std::string>;

TEST(Recording, IsOffAtFirst) {
  Host host;
  Callbacks().push_integer(1);
  EXPECT_TRUE(host.Calls().empty());
}

TEST(Recording, WritesOneLineACallback) {
  Host host;
  const std::uint32_t oref = host.Add(std::make_shared<MemoryStream>("01234567"));
  host.Record(true);
  PushMethod(oref, "Peek");
  Callbacks().push_integer(8000);
  Callbacks().invoke_method(1);
  PopText();
  PushProperty(oref, "Size");
  Callbacks().get_property();
  ConvertToInteger();
  PushMethod(oref, "Nothing", 0);
  Callbacks().invoke_method(0);
  EXPECT_EQ(host.Calls(),
            (Lines{"PushMethod 1 \"Peek\" 1", "PushInteger 8000", "InvokeMethod 1", "PopString -> 8 bytes",
                   "PushProperty 1 \"Size\"", "GetProperty", "ConvertResult 1 -> 9",
                   "PushMethod 1 \"Nothing\" 0", "InvokeMethod 0 = 120"}));
  host.ClearCalls();
  EXPECT_TRUE(host.Calls().empty());
}

TEST(Recording, WritesArgumentsOfEveryKind) {
  Host host;
  host.Record(true);
  const std::uint16_t wide[] = {'a', 0x4E00, 0xE9};
  const std::string long_text(65, 'x');
  const std::vector<std::uint16_t> long_units(65, 'x');
  Callbacks().push_integer(-1);
  Callbacks().push_unsigned(4294967295U);
  Callbacks().push_double(1.5);
  Callbacks().push_double(0.1);
  PushText(std::string_view("a\0\"\\\xFF", 5));
  PushText(long_text.substr(1));
  PushText(long_text);
  Callbacks().push_wide_string(3, wide);
  Callbacks().push_wide_string_alt(65, long_units.data());
  Callbacks().push_counted(1, Units("c"));
  Callbacks().push_object(0);
  Callbacks().push_string(-1, nullptr);
  EXPECT_EQ(host.Calls(),
            (Lines{"PushInteger -1", "PushUnsigned 4294967295", "PushDouble 1.5", "PushDouble 0.1",
                   "PushString \"a\\x00\\\"\\\\\\xFF\"", "PushString \"" + long_text.substr(1) + "\"",
                   "PushString 65 bytes", "PushWideString \"a\\u4E00\\xE9\"", "PushWideStringAlt 65 units",
                   "PushCounted \"c\"", "PushObject 0", "PushString -1 bytes = -12"}));
}

TEST(Recording, WritesGlobalsAndLongStrings) {
  Host host;
  host.globals().Set("A", {std::string("x")}, std::int64_t{5});
  host.Record(true);
  Callbacks().push_global_in_namespace(1, Units("A"), 0, nullptr);
  PushText("x");
  Callbacks().global_defined(1, 0);
  PopInteger();
  PushGlobal("A");
  PushText("");
  Callbacks().global_order(1, -1, 1);
  PopInteger();
  PopUnits();
  PopText();
  PushGlobal("A");
  Callbacks().global_get(0, 0);
  vessa::LongStringDescriptor descriptor{};
  Callbacks().new_long_string(&descriptor, 40000);
  Callbacks().push_long_string(&descriptor);
  Callbacks().new_long_wide_string(&descriptor, 40000);
  EXPECT_EQ(host.Calls(),
            (Lines{"PushGlobalInNamespace \"A\" 0 bytes", "PushString \"x\"", "GlobalDefined 1 0",
                   "PopInteger -> 1", "PushGlobal \"A\"", "PushString \"\"", "GlobalOrder 1 -1 1",
                   "PopInteger -> 1", "PopWideString -> 1 units", "PopString -> 1 bytes", "PushGlobal \"A\"",
                   "GlobalGet 0 0 = 9", "NewLongString 40000", "PushLongString 40000 bytes",
                   "NewLongWideString 40000 -> null"}));
}

TEST(Recording, PutsNestedCallbacksBehindTheirInvocation) {
  class Calling : public Object {
    Value Call(std::string_view /*method*/, std::span<const Value> /*arguments*/) override {
      Callbacks().push_integer(7);
      return {};
    }
  };
  Host host;
  const std::uint32_t oref = host.Add(std::make_shared<Calling>());
  std::vector<Operation> observed;
  host.Observe([&](const Callback& callback) { observed.push_back(callback.operation); });
  host.Record(true);
  PushMethod(oref, "Do", 0);
  Callbacks().invoke_method(0);
  EXPECT_EQ(host.Calls(), (Lines{"PushMethod 1 \"Do\" 0", "InvokeMethod 0", "PushInteger 7"}));
  EXPECT_EQ(observed, (std::vector<Operation>{Operation::kPushMethod, Operation::kPushInteger,
                                              Operation::kInvokeMethod}));
}

TEST(Recording, ShowsFailuresByPlan) {
  Host host;
  host.faults().FailNth(1, 5);
  host.Record(true);
  Callbacks().push_integer(1);
  EXPECT_EQ(host.Calls(), Lines{"PushInteger 1 = 5"});
}

TEST(Observer, SeesTheBytesHandedOut) {
  Host host;
  LeaveResult(host, std::string("value"));
  std::string bytes;
  host.Observe([&](const Callback& callback) { bytes = callback.bytes; });
  PopText();
  EXPECT_EQ(bytes, "value");
}

TEST(Observer, SeesHowLongACallbackTook) {
  class Slow : public Object {
    Value Call(std::string_view /*method*/, std::span<const Value> /*arguments*/) override {
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
      return {};
    }
  };
  Host host;
  std::chrono::nanoseconds took{0};
  host.Observe([&](const Callback& callback) { took = callback.took; });
  PushMethod(host.Add(std::make_shared<Slow>()), "Do");
  Callbacks().invoke_method(0);
  EXPECT_GE(took, std::chrono::milliseconds(15));
}

TEST(Observer, LetsNoExceptionIntoTheLibrary) {
  Host host;
  host.Observe([](const Callback&) { throw HostError{1}; });
  EXPECT_EQ(Callbacks().push_integer(1), kFailure);
}

TEST(Operation, IsFoundByItsName) {
  for (std::size_t i = 0; i < kOperationCount; ++i) {
    const auto operation = static_cast<Operation>(i);
    EXPECT_EQ(FindOperation(OperationName(operation)), operation);
  }
  EXPECT_EQ(FindOperation("Peek"), std::nullopt);
  EXPECT_EQ(OperationName(Operation::kPushLongWideStringAlt), "PushLongWideStringAlt");
}

}  // namespace
}  // namespace emulator
