// Texts on their way to the host: short pushes and long strings.

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/emulator/host_calls.h"

namespace emulator {
namespace {

using vessa::LongStringDescriptor;

TEST(ShortPush, TakesUpTo32767Units) {
  Host host;
  const std::string bytes(32768, 'x');
  const std::vector<std::uint16_t> units(32768, 'x');
  EXPECT_EQ(Callbacks().push_string(32767, Units(bytes)), 0);
  EXPECT_EQ(Callbacks().push_wide_string(32767, units.data()), 0);
  EXPECT_EQ(host.StackDepth(), 2U);
  EXPECT_EQ(Callbacks().push_string(32768, Units(bytes)), kStringTooLong);
  EXPECT_EQ(Callbacks().push_counted(32768, Units(bytes)), kStringTooLong);
  EXPECT_EQ(Callbacks().push_wide_string(32768, units.data()), kStringTooLong);
  EXPECT_EQ(Callbacks().push_wide_string_alt(32768, units.data()), kStringTooLong);
  EXPECT_EQ(host.StackDepth(), 2U);
}

TEST(ShortPush, RefusesLengthsAndTextsThatCannotBe) {
  Host host;
  EXPECT_EQ(Callbacks().push_string(-1, Units("x")), kInvalidArgument);
  EXPECT_EQ(Callbacks().push_string(1, nullptr), kInvalidArgument);
  EXPECT_EQ(Callbacks().push_wide_string(1, nullptr), kInvalidArgument);
  EXPECT_EQ(Callbacks().push_string(0, nullptr), 0) << "an empty text needs no bytes";
}

TEST(ShortPush, CopiesTheText) {
  Host host;
  const auto object = std::make_shared<Answer>(Value());
  std::string text(100, 'x');
  PushMethod(host.Add(object), "Do");
  PushText(text);
  std::fill(text.begin(), text.end(), 'y');
  Callbacks().invoke_method(1);
  EXPECT_EQ(AsBytes(object->Arguments().at(0)), std::string(100, 'x'));
}

TEST(LongString, TakesTheAreaThatItHandedOut) {
  Host host;
  const auto object = std::make_shared<Answer>(Value());
  PushMethod(host.Add(object), "Do", 0);
  LongStringDescriptor bytes{};
  void* const area = Callbacks().new_long_string(&bytes, 40000);
  ASSERT_NE(area, nullptr);
  EXPECT_EQ(bytes.length, 40000U);
  EXPECT_EQ(bytes.area, area);
  EXPECT_EQ(host.OpenLongStrings(), 1U);
  std::fill_n(static_cast<unsigned char*>(area), 40000, static_cast<unsigned char>('x'));
  ASSERT_EQ(Callbacks().push_long_string(&bytes), 0);
  EXPECT_EQ(host.OpenLongStrings(), 0U);
  LongStringDescriptor units{};
  std::fill_n(static_cast<std::uint16_t*>(Callbacks().new_long_wide_string(&units, 40000)), 40000,
              std::uint16_t{0x4E00});
  ASSERT_EQ(Callbacks().push_long_wide_string(&units), 0);
  ASSERT_EQ(Callbacks().invoke_method(2), 0);
  EXPECT_EQ(object->Arguments().at(0), Value(std::string(40000, 'x')));
  EXPECT_EQ(object->Arguments().at(1), Value(std::u16string(40000, u'\u4E00')));
}

TEST(LongString, SecondWideFormIsTakenToo) {
  Host host;
  LongStringDescriptor units{};
  ASSERT_NE(Callbacks().new_long_wide_string(&units, 40000), nullptr);
  EXPECT_EQ(Callbacks().push_long_wide_string_alt(&units), 0);
}

TEST(LongString, AreasStayInPlaceWhenMoreAreHandedOut) {
  Host host;
  std::vector<LongStringDescriptor> descriptors(100);
  for (LongStringDescriptor& descriptor : descriptors) Callbacks().new_long_string(&descriptor, 2);
  for (LongStringDescriptor& descriptor : descriptors) {
    std::fill_n(static_cast<unsigned char*>(descriptor.area), 2, static_cast<unsigned char>('x'));
    EXPECT_EQ(Callbacks().push_long_string(&descriptor), 0);
  }
}

TEST(LongString, RefusesADescriptorInUse) {
  Host host;
  LongStringDescriptor descriptor{};
  ASSERT_NE(Callbacks().new_long_string(&descriptor, 40000), nullptr);
  EXPECT_EQ(Callbacks().new_long_string(&descriptor, 40000), nullptr);
  EXPECT_EQ(Callbacks().new_long_string(nullptr, 40000), nullptr);
  LongStringDescriptor fresh{};
  EXPECT_EQ(Callbacks().new_long_string(&fresh, -1), nullptr);
}

TEST(LongString, RefusesAnAreaThatItDidNotHandOut) {
  Host host;
  std::string own(40000, 'x');
  LongStringDescriptor forged{40000, own.data()};
  EXPECT_EQ(Callbacks().push_long_string(&forged), kInvalidArgument);
  EXPECT_EQ(Callbacks().push_long_string(nullptr), kInvalidArgument);
  LongStringDescriptor descriptor{};
  ASSERT_NE(Callbacks().new_long_string(&descriptor, 40000), nullptr);
  EXPECT_EQ(Callbacks().push_long_wide_string(&descriptor), kInvalidArgument) << "the area is one of bytes";
  descriptor.length = 40001;
  EXPECT_EQ(Callbacks().push_long_string(&descriptor), kInvalidArgument);
  descriptor.length = 40000;
  EXPECT_EQ(Callbacks().push_long_string(&descriptor), 0);
  EXPECT_EQ(Callbacks().push_long_string(&descriptor), kInvalidArgument) << "it was taken back with the push";
}

TEST(LongString, NotPushedIsCountedUntilTheReset) {
  Host host;
  LongStringDescriptor descriptor{};
  ASSERT_NE(Callbacks().new_long_string(&descriptor, 40000), nullptr);
  EXPECT_EQ(host.OpenLongStrings(), 1U);
  host.ResetStack();
  EXPECT_EQ(host.OpenLongStrings(), 0U);
}

}  // namespace
}  // namespace emulator
