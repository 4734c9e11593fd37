#include "emulator/event_log.h"

#include <gtest/gtest.h>

#include "emulator/client.h"
#include "tests/emulator/host_calls.h"

namespace emulator {
namespace {

Value Number(std::int64_t number) { return number; }

void Send(Object& object, std::string_view event, const std::vector<Value>& arguments) {
  object.Call(event, arguments);
}

int CodeOf(Object& object, std::string_view event, const std::vector<Value>& arguments) {
  try {
    object.Call(event, arguments);
  } catch (const HostError& error) {
    return error.code;
  }
  return 0;
}

TEST(EventLog, KeepsOneLineAnEvent) {
  EventLog log;
  Send(log, "StartContent", {std::string("1.2.840.10008.1.2.1")});
  Send(log, "StartElement", {Number(0x00100010), std::string("PN"), Number(8)});
  Send(log, "Data", {Number(0x00100010), Number(1), std::string("Doe^John")});
  Send(log, "EndElement", {Number(0x00100010)});
  Send(log, "StartElement", {Number(0x00081140), std::string("SQ"), Number(4294967295)});
  Send(log, "StartSequence", {});
  Send(log, "StartItem", {Number(0x00081140), Number(4294967295)});
  Send(log, "Data", {Number(0x7FE00010), Number(2), std::string("\0\xFF", 2)});
  Send(log, "Data", {Number(0xFFFEE0DD), Number(1), std::string()});
  Send(log, "EndItem", {Number(0x00081140), Number(4294967295)});
  Send(log, "EndSequence", {});
  Send(log, "EndContent", {});
  EXPECT_EQ(log.Lines(), (std::vector<std::string>{
                             "StartContent 1.2.840.10008.1.2.1", "StartElement 00100010 PN 8",
                             "Data 00100010 1 446F655E4A6F686E", "EndElement 00100010",
                             "StartElement 00081140 SQ 4294967295", "StartSequence",
                             "StartItem 00081140 4294967295", "Data 7FE00010 2 00FF", "Data FFFEE0DD 1",
                             "EndItem 00081140 4294967295", "EndSequence", "EndContent"}));
  EXPECT_EQ(log.Count(), 12U);
  log.Clear();
  EXPECT_TRUE(log.Lines().empty());
}

TEST(EventLog, RefusesUnknownEventsAndWrongArguments) {
  EventLog log;
  EXPECT_EQ(CodeOf(log, "Reset", {}), kMethodMissing);
  EXPECT_EQ(CodeOf(log, "StartSequence", {Number(1)}), kWrongParameters);
  EXPECT_EQ(CodeOf(log, "Data", {Number(1), Number(1)}), kWrongParameters);
  EXPECT_TRUE(log.Lines().empty());
}

TEST(EventLog, ReturnsWhatItIsToldTo) {
  EventLog log;
  EXPECT_EQ(log.Call("EndContent", {}), Value(std::string()));
  log.Return("EndContent", std::string(40000, 'x'));
  EXPECT_EQ(log.Call("EndContent", {}), Value(std::string(40000, 'x')));
  EXPECT_EQ(log.Call("EndSequence", {}), Value(std::string()));
}

TEST(EventLog, FailsTheNthEvent) {
  EventLog log;
  log.FailAt(2, 5);
  EXPECT_EQ(CodeOf(log, "EndSequence", {}), 0);
  EXPECT_EQ(CodeOf(log, "EndContent", {}), 5);
  EXPECT_EQ(CodeOf(log, "EndContent", {}), 0);
  EXPECT_EQ(log.Lines().size(), 3U);
}

TEST(EventLog, ActsAtEachEvent) {
  EventLog log;
  std::vector<std::string> seen;
  log.OnEvent([&](std::string_view event, std::span<const Value> arguments) {
    seen.push_back(std::string(event) + " " + std::to_string(arguments.size()));
  });
  log.KeepLines(false);
  Send(log, "EndElement", {Number(1)});
  Send(log, "EndContent", {});
  EXPECT_EQ(seen, (std::vector<std::string>{"EndElement 1", "EndContent 0"}));
  EXPECT_TRUE(log.Lines().empty());
  EXPECT_EQ(log.Count(), 2U);
}

TEST(StopAtTag, AnswersByItsPredicateAndKeepsTheTags) {
  StopAtTag client([](std::uint32_t tag) { return tag >> 16U != 0x0002U; });
  EXPECT_EQ(client.Call("ShouldStopDecomposition", std::vector<Value>{Number(0x00020010)}), Number(0));
  EXPECT_EQ(client.Call("ShouldStopDecomposition", std::vector<Value>{Number(0xFFFEE000)}), Number(1));
  EXPECT_EQ(client.Asked(), (std::vector<std::uint32_t>{0x00020010U, 0xFFFEE000U}));
  StopAtTag one(0x00100010);
  EXPECT_EQ(one.Call("ShouldStopDecomposition", std::vector<Value>{Number(0x00100010)}), Number(1));
  EXPECT_EQ(one.Call("ShouldStopDecomposition", std::vector<Value>{Number(0x00100011)}), Number(0));
}

TEST(StopAtTag, FailsAndRefuses) {
  StopAtTag client(0);
  client.FailAt(2, 5);
  EXPECT_EQ(CodeOf(client, "ShouldStopDecomposition", {Number(1)}), 0);
  EXPECT_EQ(CodeOf(client, "ShouldStopDecomposition", {Number(1)}), 5);
  EXPECT_EQ(CodeOf(client, "ShouldStopDecomposition", {}), kWrongParameters);
  EXPECT_EQ(CodeOf(client, "Stop", {}), kMethodMissing);
}

}  // namespace
}  // namespace emulator
