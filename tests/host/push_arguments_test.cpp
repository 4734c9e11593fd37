// The argument formatter.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "host/callin.h"
#include "tests/host/expect_status.h"
#include "tests/host/scripted_host.h"

namespace vessa {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(PushArguments, PushesEveryKindOfValueByItsLetter) {
  ScriptedHost host;
  VessaList list;
  list.AppendString("in");
  const std::uint8_t raw[] = {'c', 'n', 't'};
  const std::span<const std::uint8_t> counted(raw);
  EXPECT_EQ(PushArguments<"iudoanxlc">(-7, 4294967295U, 2.5, 3U, "text", u"wide", u"alt", &list, &counted),
            9);
  EXPECT_THAT(host.calls, ElementsAre("PushInteger -7", "PushUnsigned 4294967295", "PushDouble 2.500000",
                                      "PushObject 3", "PushString 'text'", "PushWideString 'wide'",
                                      "PushWideStringAlt 'alt'", "PushString '\4\1in'", "PushCounted 'cnt'"));
}

TEST(PushArguments, AnEmptyFormatPushesNothing) {
  ScriptedHost host;
  EXPECT_EQ(PushArguments<"">(), 0);
  EXPECT_THAT(host.calls, IsEmpty());
}

TEST(PushArguments, AStarTakesALengthAndIsNotCounted) {
  ScriptedHost host;
  EXPECT_EQ(PushArguments<"a*n">("key", 2, u"wide"), 2);
  EXPECT_THAT(host.calls, ElementsAre("PushString 'key'", "PushWideString 'wi'"));
}

TEST(PushArguments, ALengthHoldsForOneText) {
  ScriptedHost host;
  EXPECT_EQ(PushArguments<"*aa">(2, "abcdef", "abcdef"), 2);
  EXPECT_THAT(host.calls, ElementsAre("PushString 'ab'", "PushString 'abcdef'"));
}

TEST(PushArguments, ALengthWaitsForTheNextText) {
  ScriptedHost host;
  EXPECT_EQ(PushArguments<"*iax">(1, 42, "abc", u"abc"), 3);
  EXPECT_THAT(host.calls, ElementsAre("PushInteger 42", "PushString 'a'", "PushWideStringAlt 'abc'"));
}

TEST(PushArguments, AGivenLengthCountsZerosToo) {
  ScriptedHost host;
  PushArguments<"*a">(4, "a\0bc");
  EXPECT_EQ(host.calls.at(0), std::string("PushString 'a\0bc'", 17));
}

TEST(PushArguments, AGivenLengthOfZeroIsAnEmptyText) {
  ScriptedHost host;
  EXPECT_EQ(PushArguments<"*a">(0, "abc"), 1);
  EXPECT_THAT(host.calls, ElementsAre("PushString ''"));
}

TEST(PushArguments, ALetterWithoutMeaningIsCountedAndThatIsAll) {
  ScriptedHost host;
  EXPECT_EQ(PushArguments<"q">(), 1);
  EXPECT_THAT(host.calls, IsEmpty());
  EXPECT_EQ(PushArguments<"qiA ">(7), 4);
  EXPECT_THAT(host.calls, ElementsAre("PushInteger 7"));
}

TEST(PushArguments, ANullTextIsEmpty) {
  ScriptedHost host;
  const char* const no_text = nullptr;
  const char16_t* const no_wide_text = nullptr;
  EXPECT_EQ(PushArguments<"a*anx">(no_text, 5, no_text, no_wide_text, no_wide_text), 4);
  EXPECT_THAT(host.calls,
              ElementsAre("PushString ''", "PushString ''", "PushWideString ''", "PushWideStringAlt ''"));
  EXPECT_NE(host.last_text, nullptr);
}

TEST(PushArguments, AnEmptyListIsAnEmptyText) {
  ScriptedHost host;
  const VessaList list;
  EXPECT_EQ(PushArguments<"l">(&list), 1);
  EXPECT_THAT(host.calls, ElementsAre("PushString ''"));
}

TEST(PushArguments, SignedAndUnsignedIntegersStandForEachOther) {
  ScriptedHost host;
  PushArguments<"iuo">(4294967295U, -1, -1);
  EXPECT_THAT(host.calls, ElementsAre("PushInteger -1", "PushUnsigned 4294967295", "PushObject 4294967295"));
}

TEST(PushArguments, AShortTextIsHandedOverWhereItLies) {
  ScriptedHost host;
  const std::uint8_t chunk[] = {1, 2, 3};
  PushArguments<"*a">(3, &chunk[0]);
  EXPECT_EQ(host.last_text, &chunk[0]);
}

// --- Long texts -----------------------------------------------------------------------------------------------

TEST(PushArguments, AText32767LongIsShort) {
  ScriptedHost host;
  const std::string text(32767, 'x');
  const std::u16string wide(32767, u'x');
  PushArguments<"a*anx">(text.c_str(), 32767, text.c_str(), wide.c_str(), wide.c_str());
  EXPECT_THAT(host.calls, ElementsAre("PushString of 32767", "PushString of 32767", "PushWideString of 32767",
                                      "PushWideStringAlt of 32767"));
}

TEST(PushArguments, AText32768LongGoesThroughALongString) {
  ScriptedHost host;
  std::string text(32768, 'x');
  text.back() = 'y';
  EXPECT_EQ(PushArguments<"a">(text.c_str()), 1);
  EXPECT_THAT(host.calls, ElementsAre("NewLongString zeroed 32768", "PushLongString 32768"));
  EXPECT_EQ(host.area, text);
}

TEST(PushArguments, LongWideTextsGoThroughLongStringsOfTheirOwn) {
  const std::u16string text = std::u16string(32767, u'x') + u"\u4E2D";
  std::string text_bytes(text.size() * 2, '\0');
  std::memcpy(text_bytes.data(), text.data(), text_bytes.size());
  {
    ScriptedHost host;
    PushArguments<"n">(text.c_str());
    EXPECT_THAT(host.calls, ElementsAre("NewLongWideString zeroed 32768", "PushLongWideString 32768"));
    EXPECT_EQ(host.area, text_bytes);
  }
  {
    ScriptedHost host;
    PushArguments<"*x">(32768, text.c_str());
    EXPECT_THAT(host.calls, ElementsAre("NewLongWideString zeroed 32768", "PushLongWideStringAlt 32768"));
    EXPECT_EQ(host.area, text_bytes);
  }
}

TEST(PushArguments, ALongStringWithoutAreaFails) {
  ScriptedHost host;
  host.gives_areas = false;
  const std::string text(40000, 'x');
  const std::u16string wide(40000, u'x');
  ExpectStatus([&] { PushArguments<"a">(text.c_str()); }, -1);
  ExpectStatus([&] { PushArguments<"n">(wide.c_str()); }, -1);
  ExpectStatus([&] { PushArguments<"x">(wide.c_str()); }, -1);
  EXPECT_EQ(host.calls.size(), 3U);
}

// --- Failures -------------------------------------------------------------------------------------------------

TEST(PushArguments, RaisesTheStatusOfTheFirstPushThatFails) {
  const std::string text(32768, 'x');
  VessaList list;
  const std::span<const std::uint8_t> counted;
  const auto push = [&] {
    PushArguments<"iudoanxlca">(1, 2U, 3.0, 4U, "a", u"n", u"x", &list, &counted, text.c_str());
  };
  constexpr std::size_t kCallbacks = 11;  // the long text takes two
  for (std::size_t n = 1; n <= kCallbacks; ++n) {
    ScriptedHost host;
    host.fail_at = n;
    host.status = -3;
    const bool area_refused = n == kCallbacks - 1;
    ExpectStatus(push, area_refused ? -1 : -3);
    EXPECT_EQ(host.calls.size(), n);  // nothing was called behind the failure
  }
  ScriptedHost host;
  push();
  EXPECT_EQ(host.calls.size(), kCallbacks);
}

TEST(PushArguments, ANegativeLengthFails) {
  ScriptedHost host;
  ExpectStatus([] { PushArguments<"*a">(-1, "abc"); }, kUnexpected);
  EXPECT_THAT(host.calls, IsEmpty());
}

}  // namespace
}  // namespace vessa
