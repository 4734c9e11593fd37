// Fetching results: pops and conversions.

#include <gtest/gtest.h>

#include <cstring>

#include "tests/emulator/host_calls.h"

namespace emulator {
namespace {

TEST(Pop, OfAnEmptyStackFindsNoResult) {
  Host host;
  EXPECT_EQ(PopText().status, kNoResult);
  EXPECT_EQ(PopUnits().status, kNoResult);
  EXPECT_EQ(PopInteger().status, kNoResult);
  EXPECT_EQ(ConvertToInteger().status, kNoResult);
}

TEST(Pop, OfWhatIsNoResultIsRefused) {
  Host host;
  ASSERT_EQ(Callbacks().push_integer(1), 0);
  EXPECT_EQ(PopInteger().status, kInvalidArgument);
  EXPECT_EQ(PopText().status, kInvalidArgument);
  EXPECT_EQ(ConvertToInteger().status, kNoResult);
  EXPECT_EQ(host.StackDepth(), 1U);
}

TEST(Pop, OfAnObjectIsRefused) {
  Host host;
  LeaveResult(host, ObjectRef{1});
  EXPECT_EQ(PopText().status, kInvalidArgument);
  EXPECT_EQ(PopInteger().status, kInvalidArgument);
  EXPECT_EQ(host.StackDepth(), 1U) << "a refused pop pops nothing";
}

TEST(Pop, ConvertsBetweenTheKinds) {
  Host host;
  LeaveResult(host, std::int64_t{-12});
  EXPECT_EQ(PopText().text, "-12");
  LeaveResult(host, std::int64_t{12});
  EXPECT_EQ(PopUnits().text, u"12");
  LeaveResult(host, std::string("12abc"));
  EXPECT_EQ(PopInteger().value, 12);
  LeaveResult(host, std::u16string(u"\u00E9"));
  EXPECT_EQ(PopText().text, "\xE9");
  LeaveResult(host, std::string("\xE9"));
  EXPECT_EQ(PopUnits().text, u"\u00E9");
  LeaveResult(host, Value());
  EXPECT_EQ(PopText().text, "");
}

TEST(Pop, OfACharacterAbove255AsBytesIsRefused) {
  Host host;
  LeaveResult(host, std::u16string(u"\u4E00"));
  EXPECT_EQ(PopText().status, kWideCharacter);
  EXPECT_EQ(PopUnits().text, u"\u4E00") << "a refused pop pops nothing";
}

TEST(Pop, OfALargeIntegerKeepsTheLow32Bits) {
  Host host;
  LeaveResult(host, std::int64_t{0x80000001});
  EXPECT_EQ(PopInteger().value, -2147483647);
  LeaveResult(host, std::int64_t{0x100000005});
  EXPECT_EQ(ConvertToInteger().value, 5);
}

TEST(Pop, HandsOutTextOfAnyLength) {
  Host host;
  LeaveResult(host, std::string(100000, 'x'));
  EXPECT_EQ(PopText().text, std::string(100000, 'x'));
}

TEST(Pop, WithoutAPlaceForTheResultIsRefused) {
  Host host;
  LeaveResult(host, std::string("x"));
  EXPECT_EQ(Callbacks().pop_string(nullptr, nullptr), kInvalidArgument);
  EXPECT_EQ(Callbacks().pop_wide_string(nullptr, nullptr), kInvalidArgument);
  EXPECT_EQ(Callbacks().pop_integer(nullptr), kInvalidArgument);
  EXPECT_EQ(Callbacks().convert_result(vessa::kConvertToInteger, nullptr), kInvalidArgument);
}

TEST(HandedOutText, OfAnEmptyResultIsNoNullPointer) {
  Host host;
  LeaveResult(host, std::string());
  int length = -1;
  unsigned char* text = nullptr;
  ASSERT_EQ(Callbacks().pop_string(&length, &text), 0);
  EXPECT_EQ(length, 0);
  EXPECT_NE(text, nullptr);
}

TEST(HandedOutText, StaysWhereItIsWhenScribblingIsOff) {
  Host host;
  host.ScribbleHandedOutBytes(false);
  LeaveResult(host, std::string(100, 'x'));
  int length = 0;
  unsigned char* text = nullptr;
  ASSERT_EQ(Callbacks().pop_string(&length, &text), 0);
  ASSERT_EQ(Callbacks().push_integer(1), 0);
  EXPECT_EQ(std::string(text, text + length), std::string(100, 'x'));
}

TEST(HandedOutText, IsOverwrittenAtTheNextCallback) {
  Host host;
  // Short enough to lie inside the host, where its memory can be looked at without being another's.
  LeaveResult(host, std::string("short"));
  int length = 0;
  unsigned char* text = nullptr;
  ASSERT_EQ(Callbacks().pop_string(&length, &text), 0);
  EXPECT_EQ(std::string(text, text + length), "short");
  ASSERT_EQ(Callbacks().push_integer(1), 0);
  EXPECT_NE(std::memcmp(text, "short", 5), 0);
}

TEST(ConvertResult, FillsACountedString) {
  Host host;
  vessa::HostString receiver{};
  receiver.count = 32767;
  LeaveResult(host, std::string("value"));
  ASSERT_EQ(Callbacks().convert_result(vessa::kConvertToCountedString, &receiver), 0);
  EXPECT_EQ(receiver.count, 5);
  EXPECT_EQ(std::memcmp(receiver.bytes, "value", 5), 0);
  EXPECT_EQ(host.StackDepth(), 0U);
}

TEST(ConvertResult, FillsACountedStringToItsCapacity) {
  Host host;
  vessa::HostString receiver{};
  receiver.count = 32767;
  LeaveResult(host, std::string(32767, 'x'));
  ASSERT_EQ(Callbacks().convert_result(vessa::kConvertToCountedString, &receiver), 0);
  EXPECT_EQ(receiver.count, 32767);
  EXPECT_EQ(receiver.bytes[32766], 'x');
}

TEST(ConvertResult, OfTooMuchForTheReceiverReturnsAPart) {
  Host host;
  vessa::HostString receiver{};
  receiver.count = 3;
  LeaveResult(host, std::string("value"));
  EXPECT_EQ(Callbacks().convert_result(vessa::kConvertToCountedString, &receiver), kBufferTooSmall);
  EXPECT_EQ(receiver.count, 3);
  EXPECT_EQ(std::memcmp(receiver.bytes, "val\0", 4), 0);
  receiver.count = 32767;
  LeaveResult(host, std::string(32768, 'x'));
  EXPECT_EQ(Callbacks().convert_result(vessa::kConvertToCountedString, &receiver), kBufferTooSmall);
}

TEST(ConvertResult, RefusesACapacityThatNoReceiverHas) {
  Host host;
  vessa::HostString receiver{};
  receiver.count = 32768;
  LeaveResult(host, std::string("value"));
  EXPECT_EQ(Callbacks().convert_result(vessa::kConvertToCountedString, &receiver), kInvalidArgument);
}

TEST(ConvertResult, RefusesOtherTypes) {
  Host host;
  std::int32_t receiver = 0;
  LeaveResult(host, std::int64_t{1});
  EXPECT_EQ(Callbacks().convert_result(2, &receiver), kInvalidArgument);
  EXPECT_EQ(Callbacks().convert_result(vessa::kConvertToInteger, &receiver), 0);
}

}  // namespace
}  // namespace emulator
