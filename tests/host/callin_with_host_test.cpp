// The callins against the stand-in host, which keeps a stack and refuses what does not follow from it.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "emulator/host.h"
#include "emulator/stream_object.h"
#include "host/callin.h"
#include "tests/host/expect_status.h"

namespace vessa {
namespace {

constexpr std::int32_t kTagKey = 1048592;

class CallinWithHost : public testing::Test {
 protected:
  CallinWithHost() { SetHostServices(emulator::Host::Table()); }
  ~CallinWithHost() override {
    SetHostServices(nullptr);
    EXPECT_EQ(host_.StackDepth(), 0U);  // nothing is left over
  }

  std::uint32_t AddStream(const std::string& bytes) {
    return host_.Add(std::make_shared<emulator::MemoryStream>(bytes));
  }

  emulator::Host host_;
};

std::string AsText(std::span<const std::uint8_t> bytes) { return {bytes.begin(), bytes.end()}; }

TEST_F(CallinWithHost, CallsAMethodAndPopsItsResult) {
  const std::uint32_t stream = AddStream("DICM");
  CallMethod<"i">(stream, "Peek", ResultWanted::kYes, 3);
  EXPECT_EQ(AsText(PopString()), "DIC");
}

TEST_F(CallinWithHost, CallsAMethodWithoutAResult) {
  const std::uint32_t stream = AddStream("DICM");
  CallMethod<"i">(stream, "Skip", ResultWanted::kNo, 3);
  EXPECT_EQ(ReadIntegerProperty(stream, "Position"), 4);
  EXPECT_EQ(ReadIntegerProperty(stream, "Size"), 5);
}

TEST_F(CallinWithHost, DropsAResultOfFullLength) {
  const std::uint32_t stream = AddStream(std::string(40000, 'x'));
  CallMethod<"i">(stream, "Peek", ResultWanted::kYes, 32767);
  DropResult();
}

TEST_F(CallinWithHost, AResultTooLongToDropIsTheHostsError) {
  const std::uint32_t stream = AddStream(std::string(40000, 'x'));
  CallMethod<"i">(stream, "Peek", ResultWanted::kYes, 32768);
  ExpectStatus([] { DropResult(); }, -10);
  host_.ResetStack();
}

TEST_F(CallinWithHost, WritesALongStringInOneCall) {
  const auto stream = std::make_shared<emulator::MemoryStream>();
  const std::string text(100000, 'x');
  CallMethod<"*a">(host_.Add(stream), "Write", ResultWanted::kNo, 100000, text.c_str());
  EXPECT_EQ(stream->Bytes(), text);
  EXPECT_EQ(host_.OpenLongStrings(), 0U);
}

TEST_F(CallinWithHost, AnUnknownObjectMethodOrPropertyIsTheHostsError) {
  const std::uint32_t stream = AddStream("");
  ExpectStatus([] { ReadIntegerProperty(4711, "Size"); }, 119);
  host_.ResetStack();
  ExpectStatus([&] { CallMethod<"">(stream, "Fly", ResultWanted::kYes); }, 120);
  host_.ResetStack();
  ExpectStatus([&] { ReadIntegerProperty(stream, "Colour"); }, 121);
  host_.ResetStack();
}

TEST_F(CallinWithHost, ReadsGlobals) {
  host_.globals().Set("KevDICOM.Data", {std::string("id"), std::int64_t{3}, std::string("v")},
                      std::string("PN"));
  EXPECT_EQ(ReadGlobalString<"aia">("KevDICOM.Data", "", "id", 3, "v"), "PN");
  EXPECT_EQ(ReadGlobalWideString<"aia">("KevDICOM.Data", "", "id", 3, "v"), u"PN");
  EXPECT_EQ(ReadGlobalDefined<"aia">("KevDICOM.Data", "", "id", 3, "v"), 1);
  EXPECT_EQ(ReadGlobalDefined<"a">("KevDICOM.Data", "", "id"), 10);
  EXPECT_EQ(ReadGlobalDefined<"a">("KevDICOM.Data", "", "other"), 0);
}

TEST_F(CallinWithHost, WalksAGlobalForward) {
  host_.globals().Set("g", {std::int64_t{kTagKey}}, std::string("5"));
  PushGlobalReference("g");
  GlobalOrder(PushArguments<"a">(""), 1, true);
  ASSERT_NE(PopInteger(), 0);
  EXPECT_EQ(AsText(PopString()), "5");
  EXPECT_EQ(AsText(PopString()), "1048592");
  PushGlobalReference("g");
  GlobalOrder(PushArguments<"i">(kTagKey), 1, true);
  EXPECT_EQ(PopInteger(), 0);
  EXPECT_EQ(AsText(PopString()), "");
}

TEST_F(CallinWithHost, SimplePixelDataFramesFollowsItsNode) {
  EXPECT_FALSE(SimplePixelDataFrames());
  host_.globals().Set("KevDICOM.Debug", {std::string("simplepixeldataframes"), std::string("below")},
                      std::string());
  EXPECT_FALSE(SimplePixelDataFrames());
  host_.globals().Set("KevDICOM.Debug", {std::string("simplepixeldataframes")}, std::string("1"));
  EXPECT_TRUE(SimplePixelDataFrames());
  host_.globals().Kill("KevDICOM.Debug");
  EXPECT_FALSE(SimplePixelDataFrames());
}

TEST_F(CallinWithHost, AHostThatLiesIsAFailedCallin) {
  const std::uint32_t stream = AddStream("DICM");
  const auto peek = [&] { CallMethod<"i">(stream, "Peek", ResultWanted::kYes, 4); };
  host_.faults().LieNth(emulator::Lie::kNegativeLength, 1);
  peek();
  ExpectStatus([] { PopString(); }, -1);
  host_.faults().Clear();
  host_.faults().LieNth(emulator::Lie::kNoBytes, 1);
  peek();
  ExpectStatus([] { PopWideString(); }, -1);
  host_.faults().Clear();
  host_.faults().LieNth(emulator::Lie::kCountAboveCapacity, 1);
  peek();
  ExpectStatus([] { DropResult(); }, -1);
  host_.ResetStack();
}

}  // namespace
}  // namespace vessa
