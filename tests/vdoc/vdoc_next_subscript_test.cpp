#include "vdoc/vdoc_next_subscript.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/vdoc/document.h"
#include "tests/vdoc/property_list_view.h"
#include "vdoc/exceptions.h"

namespace {

using vessa::CVDocNextSubscript;

constexpr std::uint32_t kS = 0x300A00B0;  // BeamSequence
constexpr std::uint32_t kT = 0x300A0111;  // ControlPointSequence
constexpr std::uint32_t kName = 0x00100010;
constexpr std::uint32_t kPixelData = 0x7FE00010;

Item Plain() { return {Text(kName, "PN", "Doe^John")}; }

// S has three items; T has no item in the first, two in the second, one in the third.
Item Plan() {
  return {Text(kName, "PN", "Doe^John"),
          Sequence(kS, {{Sequence(kT, {})}, {Sequence(kT, {Plain(), Plain()})}, {Sequence(kT, {Plain()})}}),
          Text(kPixelData, "OW", "pixels")};
}

std::uint32_t Next(const Item& data_set, const std::vector<std::uint32_t>& entries, Ended* ended = nullptr) {
  const PropertyListView list(entries);
  CVDocNextSubscript next(list.View());
  const Ended how = Play(data_set, next);
  if (ended != nullptr) *ended = how;
  return next.Found();
}

std::string FailureOf(const std::vector<std::uint32_t>& entries) {
  const PropertyListView list(entries);
  CVDocNextSubscript next(list.View());
  try {
    next.Reset();
  } catch (const vessa::CVDocQueryException& failure) {
    return failure.Text();
  }
  return "";
}

TEST(VDocNextSubscript, WalksTheItemsToTheEnd) {
  EXPECT_EQ(Next(Plan(), {kS, 0}), 1U);
  EXPECT_EQ(Next(Plan(), {kS, 1}), 2U);
  EXPECT_EQ(Next(Plan(), {kS, 2}), 3U);
  EXPECT_EQ(Next(Plan(), {kS, 3}), 0U);
  EXPECT_EQ(Next(Plan(), {kS, 4}), 0U);
}

TEST(VDocNextSubscript, EmptyOrAbsentSequenceHasNone) {
  EXPECT_EQ(Next({Sequence(kS, {})}, {kS, 0}), 0U);
  EXPECT_EQ(Next({}, {kS, 0}), 0U);
  EXPECT_EQ(Next(Plain(), {kS, 0}), 0U);
}

TEST(VDocNextSubscript, CountsItemsInsideTheNamedItemOnly) {
  EXPECT_EQ(Next(Plan(), {kS, 1, kT, 0}), 0U);
  EXPECT_EQ(Next(Plan(), {kS, 2, kT, 0}), 1U);
  EXPECT_EQ(Next(Plan(), {kS, 2, kT, 1}), 2U);
  EXPECT_EQ(Next(Plan(), {kS, 2, kT, 2}), 0U);
  EXPECT_EQ(Next(Plan(), {kS, 3, kT, 1}), 0U);
}

TEST(VDocNextSubscript, StopsWhenALaterItemStarts) {
  Ended ended{};
  EXPECT_EQ(Next(Plan(), {kS, 1, kT, 0}, &ended), 0U);
  EXPECT_EQ(ended, Ended::kBySuccess);  // at the second item of S
  EXPECT_EQ(Next(Plan(), {kS, 3}, &ended), 0U);
  EXPECT_EQ(ended, Ended::kAtTheEnd);  // no item behind it: values are not looked at
}

TEST(VDocNextSubscript, ItemsInsideTheLastOneAreNotTheNext) {
  const Item data_set = {Sequence(kS, {{Sequence(kT, {Plain(), Plain(), Plain()})}})};
  EXPECT_EQ(Next(data_set, {kS, 1}), 0U);
}

TEST(VDocNextSubscript, FragmentsOfPixelDataAreNotItems) {
  EXPECT_EQ(Next({PixelFragments({"", "one ", "two "})}, {kPixelData, 0}), 0U);
  EXPECT_EQ(Next({PixelFragments({"", "one "}), Sequence(0xFFFAFFFA, {Plain()})}, {0xFFFAFFFA, 0}), 1U);
}

TEST(VDocNextSubscript, StopsAtFragmentsBehindTheTarget) {
  Ended ended{};
  EXPECT_EQ(Next({PixelFragments({"", "one "})}, {kS, 0}, &ended), 0U);
  EXPECT_EQ(ended, Ended::kBySuccess);
}

TEST(VDocNextSubscript, TagsOfHighGroupsComeLast) {
  const Item data_set = {Sequence(kS, {Plain()}), Sequence(0xFFFAFFFA, {Plain(), Plain()})};
  EXPECT_EQ(Next(data_set, {0xFFFAFFFA, 1}), 2U);
}

TEST(VDocNextSubscript, BehindTheLargestNumberComesNone) {
  EXPECT_EQ(Next(Plan(), {kS, 0xFFFFFFFF}), 0U);
  EXPECT_EQ(Next({Sequence(kS, {})}, {kS, 0xFFFFFFFF}), 0U);
  EXPECT_EQ(Next(Plan(), {kS, 0x7FFFFFFF}), 0U);
}

TEST(VDocNextSubscript, NumberInsideThePathIsTakenAsItStands) { EXPECT_EQ(Next(Plan(), {kS, 0, kT, 0}), 0U); }

TEST(VDocNextSubscript, OddLengthIsRefusedAsEven) {
  EXPECT_EQ(FailureOf({kS}), "Property list has an even length");
  EXPECT_EQ(FailureOf({kS, 1, kT}), "Property list has an even length");
}

TEST(VDocNextSubscript, EmptyListIsRefused) { EXPECT_EQ(FailureOf({}), "Property list is empty"); }

TEST(VDocNextSubscript, BytesThatAreNoListFailInTheCodec) {
  const PropertyListView list(PropertyListBytes().Raw("\x09\x04\x10"));
  CVDocNextSubscript next(list.View());
  EXPECT_THROW(next.Reset(), std::invalid_argument);
}

TEST(VDocNextSubscript, DoesNotAskForEmptySequences) {
  const PropertyListView list(std::vector<std::uint32_t>{kS, 0});
  CVDocNextSubscript next(list.View());
  EXPECT_FALSE(next.WantsEmptySequences());
}

}  // namespace
