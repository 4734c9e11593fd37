#include "emulator/value.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "emulator/host_error.h"

namespace emulator {
namespace {

int CodeOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const HostError& error) {
    return error.code;
  }
  return 0;
}

TEST(Value, TextIsANumberUpToWhereItStopsBeingOne) {
  EXPECT_EQ(AsInteger(std::string("12abc")), 12);
  EXPECT_EQ(AsInteger(std::string("-7.9")), -7);
  EXPECT_EQ(AsInteger(std::string("+3")), 3);
  EXPECT_EQ(AsInteger(std::string("abc")), 0);
  EXPECT_EQ(AsInteger(std::string()), 0);
  EXPECT_EQ(AsInteger(std::string("-")), 0);
  EXPECT_EQ(AsInteger(std::u16string(u"41")), 41);
  EXPECT_EQ(AsInteger(Value()), 0);
}

TEST(Value, IntegersOutsideTheRangeBecomeItsLimits) {
  constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
  constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(AsInteger(std::string("9223372036854775807")), kHighest);
  EXPECT_EQ(AsInteger(std::string("9223372036854775808")), kHighest);
  EXPECT_EQ(AsInteger(std::string("-9223372036854775808")), kLowest);
  EXPECT_EQ(AsInteger(std::string("-9223372036854775809")), kLowest);
  EXPECT_EQ(AsInteger(1e300), kHighest);
  EXPECT_EQ(AsInteger(-1e300), kLowest);
  EXPECT_EQ(AsInteger(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST(Value, NumbersBecomeCanonicalText) {
  EXPECT_EQ(AsBytes(std::int64_t{-12}), "-12");
  EXPECT_EQ(AsBytes(0.5), ".5");
  EXPECT_EQ(AsBytes(-0.25), "-.25");
  EXPECT_EQ(AsBytes(-0.0), "0");
  EXPECT_EQ(AsBytes(100.0), "100");
  EXPECT_EQ(AsBytes(1e21), "1000000000000000000000");
  EXPECT_EQ(AsBytes(1e-7), ".0000001");
  EXPECT_EQ(AsBytes(Value()), "");
}

TEST(Value, TextsConvertByCharacterCode) {
  EXPECT_EQ(AsBytes(std::u16string(u"a\u00FF")), "a\xFF");
  EXPECT_EQ(AsWideText(std::string("a\xFF\0", 3)), std::u16string(u"a\u00FF\0", 3));
  EXPECT_EQ(CodeOf([] { AsBytes(std::u16string(u"\u0100")); }), kWideCharacter);
}

TEST(Value, ObjectsConvertToNothing) {
  EXPECT_EQ(CodeOf([] { AsBytes(ObjectRef{1}); }), kInvalidArgument);
  EXPECT_EQ(CodeOf([] { AsInteger(ObjectRef{1}); }), kInvalidArgument);
}

}  // namespace
}  // namespace emulator
