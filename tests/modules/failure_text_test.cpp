#include "modules/VessaDCM/failure_text.h"

#include <gtest/gtest.h>

#include <string>

namespace vessa {
namespace {

std::u16string TextOf(const char* error, const char* step) {
  FrameState state;
  if (error != nullptr) state.error_text.Assign(error);
  state.step_text = step;
  FailureText text;
  text.Build(state);
  return std::u16string(text.View());
}

TEST(FailureText, JoinsErrorAndStep) {
  EXPECT_EQ(TextOf("List Format Error", " decomposing stream"), u"List Format Error -  decomposing stream");
}

TEST(FailureText, IsTheStepAloneWithoutAnError) {
  EXPECT_EQ(TextOf(nullptr, " decomposing stream"), u" decomposing stream");
}

TEST(FailureText, KeepsTheDashWithoutAStep) { EXPECT_EQ(TextOf("failed", nullptr), u"failed - "); }

TEST(FailureText, SaysThatNothingIsKnown) { EXPECT_EQ(TextOf(nullptr, nullptr), u"status not set"); }

TEST(FailureText, IsCutWhereNoResultCouldHoldIt) {
  EXPECT_EQ(TextOf(std::string(40000, 'x').c_str(), " step").size(), kMaxFailureUnits);
}

}  // namespace
}  // namespace vessa
