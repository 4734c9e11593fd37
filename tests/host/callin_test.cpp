// Every callin, callback by callback.

#include "host/callin.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "tests/host/expect_status.h"
#include "tests/host/scripted_host.h"

namespace vessa {
namespace {

using testing::ElementsAre;

/// Every callin once, with what it does.
const std::vector<std::pair<const char*, std::function<void()>>>& EveryCallin() {
  static const std::vector<std::pair<const char*, std::function<void()>>> kCallins = {
      {"PushMethod", [] { PushMethod(1, "Peek", ResultWanted::kYes); }},
      {"InvokeMethod", [] { InvokeMethod(1); }},
      {"CallMethod", [] { CallMethod<"i">(1, "Peek", ResultWanted::kYes, 8000); }},
      {"ConvertResultToInteger", [] { ConvertResultToInteger(); }},
      {"DropResult", [] { DropResult(); }},
      {"PopString", [] { PopString(); }},
      {"PopWideString", [] { PopWideString(); }},
      {"PopInteger", [] { PopInteger(); }},
      {"ReadIntegerProperty", [] { ReadIntegerProperty(1, "Size"); }},
      {"PushGlobalReference", [] { PushGlobalReference("g"); }},
      {"PushGlobalReferenceInNamespace", [] { PushGlobalReferenceInNamespace("g", ""); }},
      {"GlobalGet", [] { GlobalGet(0); }},
      {"GlobalDefined", [] { GlobalDefined(0); }},
      {"GlobalOrder", [] { GlobalOrder(1, 1, true); }},
      {"ReadGlobalString", [] { ReadGlobalString<"a">("g", "", "key"); }},
      {"ReadGlobalWideString", [] { ReadGlobalWideString<"a">("g", "", "key"); }},
      {"ReadGlobalDefined", [] { ReadGlobalDefined<"a">("g", "", "key"); }},
      {"SimplePixelDataFrames", [] { SimplePixelDataFrames(); }},
      {"PushArguments i", [] { PushArguments<"i">(1); }},
      {"PushArguments u", [] { PushArguments<"u">(1U); }},
      {"PushArguments d", [] { PushArguments<"d">(1.0); }},
      {"PushArguments o", [] { PushArguments<"o">(1U); }},
      {"PushArguments a", [] { PushArguments<"a">(""); }},
      {"PushArguments n", [] { PushArguments<"n">(u""); }},
      {"PushArguments x", [] { PushArguments<"x">(u""); }},
      {"PushArguments c",
       [] {
         const std::span<const std::uint8_t> none;
         PushArguments<"c">(&none);
       }},
      {"PushArguments long a", [] { PushArguments<"*a">(40000, std::string(40000, 'x').c_str()); }},
      {"PushArguments long n", [] { PushArguments<"*n">(40000, std::u16string(40000, u'x').c_str()); }},
  };
  return kCallins;
}

TEST(Callin, FailsWithoutATable) {
  SetHostServices(nullptr);
  for (const auto& [name, callin] : EveryCallin()) {
    SCOPED_TRACE(name);
    ExpectStatus(callin, -1);
  }
}

TEST(Callin, FailsAgainWhenTheTableIsTakenAway) {
  { ScriptedHost host; }
  ExpectStatus([] { PopInteger(); }, -1);
}

TEST(Callin, RaisesTheStatusOfWhicheverCallbackFails) {
  for (const auto& [name, callin] : EveryCallin()) {
    SCOPED_TRACE(name);
    std::size_t callbacks = 0;
    {
      ScriptedHost host;
      callin();
      callbacks = host.calls.size();
    }
    ASSERT_GT(callbacks, 0U);
    for (std::size_t n = 1; n <= callbacks; ++n) {
      ScriptedHost host;
      host.fail_at = n;
      host.status = 5;
      const bool area_refused = std::string(name).find("long") != std::string::npos && n == 1;
      ExpectStatus(callin, area_refused ? -1 : 5);
      EXPECT_EQ(host.calls.size(), n);
    }
  }
}

TEST(Callin, RaisesNegativeStatusesAsTheyAre) {
  for (const int status :
       {-17, -1, 1, 202, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    ScriptedHost host;
    host.fail_at = 1;
    host.status = status;
    ExpectStatus([] { InvokeMethod(0); }, status);
  }
}

// --- Methods and properties -----------------------------------------------------------------------------------

TEST(CallMethod, PushesTheMethodThenTheArgumentsAndInvokesItWithTheirCount) {
  ScriptedHost host;
  CallMethod<"aai">(7, "StartElement", ResultWanted::kYes, "00100010", "PN", 8);
  CallMethod<"">(7, "EndContent", ResultWanted::kNo);
  EXPECT_THAT(host.calls, ElementsAre("PushMethod 7 'StartElement' 1", "PushString '00100010'",
                                      "PushString 'PN'", "PushInteger 8", "InvokeMethod 3",
                                      "PushMethod 7 'EndContent' 0", "InvokeMethod 0"));
}

TEST(CallMethod, CountsTheLettersThatPushNothing) {
  ScriptedHost host;
  CallMethod<"*aq">(1, "M", ResultWanted::kNo, 1, "abc");
  EXPECT_EQ(host.calls.back(), "InvokeMethod 2");
}

TEST(ReadIntegerProperty, PushesGetsAndConverts) {
  ScriptedHost host;
  host.integer = -5;
  EXPECT_EQ(ReadIntegerProperty(9, "Position"), -5);
  EXPECT_THAT(host.calls, ElementsAre("PushProperty 9 'Position'", "GetProperty", "ConvertResult 1"));
}

TEST(ConvertResultToInteger, AnswersTheInteger) {
  ScriptedHost host;
  host.integer = std::numeric_limits<std::int32_t>::min();
  EXPECT_EQ(ConvertResultToInteger(), std::numeric_limits<std::int32_t>::min());
}

TEST(DropResult, OffersTheWholeCapacity) {
  ScriptedHost host;
  host.counted_length = 32767;
  DropResult();
  EXPECT_THAT(host.calls, ElementsAre("ConvertResult 3 capacity 32767"));
}

TEST(DropResult, ACountAboveTheCapacityIsAFailedCallin) {
  for (const std::uint16_t count : {std::uint16_t{32768}, std::uint16_t{65535}}) {
    ScriptedHost host;
    host.counted_length = count;
    ExpectStatus([] { DropResult(); }, -1);
  }
}

// --- Popping --------------------------------------------------------------------------------------------------

TEST(PopString, AnswersTheHostsBytesWhereTheyLie) {
  ScriptedHost host;
  unsigned char bytes[] = {'a', 0, 0xFF};
  host.bytes = bytes;
  host.length = 3;
  const std::span<const std::uint8_t> popped = PopString();
  EXPECT_EQ(popped.data(), bytes);
  EXPECT_EQ(popped.size(), 3U);
}

TEST(PopWideString, AnswersTheHostsUnitsWhereTheyLie) {
  ScriptedHost host;
  std::uint16_t units[] = {'a', 0x4E2D};
  host.units = units;
  host.length = 2;
  const std::u16string_view popped = PopWideString();
  EXPECT_EQ(static_cast<const void*>(popped.data()), units);
  EXPECT_EQ(popped, u"a\u4E2D");
}

TEST(PopString, NoBytesAreAnEmptyText) {
  ScriptedHost host;
  EXPECT_EQ(PopString().size(), 0U);
  EXPECT_EQ(PopWideString(), u"");
}

TEST(PopString, ANegativeLengthIsAFailedCallin) {
  ScriptedHost host;
  unsigned char byte = 0;
  std::uint16_t unit = 0;
  host.bytes = &byte;
  host.units = &unit;
  for (const int length : {-1, std::numeric_limits<int>::min()}) {
    host.length = length;
    ExpectStatus([] { PopString(); }, -1);
    ExpectStatus([] { PopWideString(); }, -1);
  }
}

TEST(PopString, ALengthWithoutBytesIsAFailedCallin) {
  ScriptedHost host;
  host.length = 1;
  ExpectStatus([] { PopString(); }, -1);
  ExpectStatus([] { PopWideString(); }, -1);
}

// --- Globals --------------------------------------------------------------------------------------------------

TEST(ReadGlobalString, PushesTheNodeGetsAndPopsIt) {
  ScriptedHost host;
  unsigned char bytes[] = {'P', 0, 'N'};
  host.bytes = bytes;
  host.length = 3;
  EXPECT_EQ(ReadGlobalString<"aia">("KevDICOM.Data", "", "id", 3, "v"), std::string("P\0N", 3));
  EXPECT_THAT(host.calls, ElementsAre("PushGlobalInNamespace 'KevDICOM.Data' ''", "PushString 'id'",
                                      "PushInteger 3", "PushString 'v'", "GlobalGet 3 0", "PopString"));
}

TEST(ReadGlobalWideString, PopsTheNodeAs16BitText) {
  ScriptedHost host;
  std::uint16_t units[] = {0x4E2D};
  host.units = units;
  host.length = 1;
  EXPECT_EQ(ReadGlobalWideString<"">("g", "SPACE"), u"\u4E2D");
  EXPECT_THAT(host.calls, ElementsAre("PushGlobalInNamespace 'g' 'SPACE'", "GlobalGet 0 0", "PopWideString"));
}

TEST(ReadGlobalDefined, PopsTheCode) {
  ScriptedHost host;
  host.integer = 11;
  EXPECT_EQ(ReadGlobalDefined<"ii">("g", "", 1, 2), 11);
  EXPECT_THAT(host.calls, ElementsAre("PushGlobalInNamespace 'g' ''", "PushInteger 1", "PushInteger 2",
                                      "GlobalDefined 2 0", "PopInteger"));
}

TEST(GlobalOrder, PassesDirectionAndWishOn) {
  ScriptedHost host;
  PushGlobalReference("KevDICOM.Data");
  GlobalOrder(PushArguments<"a">(""), -1, true);
  GlobalOrder(2, 1, false);
  EXPECT_THAT(host.calls, ElementsAre("PushGlobal 'KevDICOM.Data'", "PushString ''", "GlobalOrder 1 -1 1",
                                      "GlobalOrder 2 1 0"));
}

TEST(SimplePixelDataFrames, IsSetWhenTheNodeHoldsAValue) {
  for (const auto& [code, set] : {std::pair{0, false}, {1, true}, {10, false}, {11, true}}) {
    ScriptedHost host;
    host.integer = code;
    EXPECT_EQ(SimplePixelDataFrames(), set) << code;
    EXPECT_THAT(host.calls,
                ElementsAre("PushGlobalInNamespace 'KevDICOM.Debug' ''", "PushString 'simplepixeldataframes'",
                            "GlobalDefined 1 0", "PopInteger"));
  }
}

}  // namespace
}  // namespace vessa
