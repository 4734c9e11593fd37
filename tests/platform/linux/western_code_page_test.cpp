#include <gtest/gtest.h>

#include <clocale>

#include "platform/code_page.h"

namespace vessa {
namespace {

TEST(CodePage, IsWestern) { EXPECT_EQ(Widen("\x80\x9F\xA0\xE9"), u"\u20AC\u0178\u00A0\u00E9"); }

TEST(CodePage, DoesNotFollowTheLocale) {
  std::setlocale(LC_ALL, "");
  EXPECT_EQ(Narrow(u"\u20AC\u0178\u00A0\u00E9"), "\x80\x9F\xA0\xE9");
  std::setlocale(LC_ALL, "C");
}

}  // namespace
}  // namespace vessa
