#include "dicom/exception.h"

#include <gtest/gtest.h>

namespace vessa {
namespace {

TEST(Exception, KeepsItsText) { EXPECT_EQ(CDecomposeException("as it stands %1").Text(), "as it stands %1"); }

TEST(Exception, PutsTheArgumentInPlaceOfThePlaceholder) {
  EXPECT_EQ(CDecomposeException("expected a supported syntax, got: %1", "1.2").Text(),
            "expected a supported syntax, got: 1.2");
  EXPECT_EQ(CDecomposeException("%1 first", "one").Text(), "one first");
  EXPECT_EQ(CDecomposeException("(%1)", "").Text(), "()");
}

TEST(Exception, InsertsOneValueAndDoesNotLookInsideIt) {
  EXPECT_EQ(CDecomposeException("%1 and %1", "%1x").Text(), "%1x and %1");
}

TEST(Exception, WithoutAPlaceholderTheArgumentIsDropped) {
  EXPECT_EQ(CDecomposeException("nothing to insert", "value").Text(), "nothing to insert");
}

TEST(Exception, IsCaughtAsTheFamily) {
  try {
    throw CDecomposeException("text");
  } catch (const CException& failure) {
    EXPECT_EQ(failure.Text(), "text");
    return;
  }
  FAIL() << "not of the family";
}

}  // namespace
}  // namespace vessa
