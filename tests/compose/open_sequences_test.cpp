#include "compose/open_sequences.h"

#include <gtest/gtest.h>

namespace vessa {
namespace {

TEST(OpenSequences, RefuseTheRootAndEveryAncestor) {
  OpenSequences open(0);
  EXPECT_FALSE(open.Open(0));
  EXPECT_TRUE(open.Open(5));
  EXPECT_TRUE(open.Open(7));
  EXPECT_FALSE(open.Open(5));
  EXPECT_FALSE(open.Open(7));
  EXPECT_FALSE(open.Open(0));
  EXPECT_EQ(open.Innermost().node, 7);
}

TEST(OpenSequences, TakeANodeAgainOnceItIsClosed) {
  OpenSequences open(0);
  EXPECT_TRUE(open.Open(5));
  open.Close();
  EXPECT_TRUE(open.IsEmpty());
  EXPECT_TRUE(open.Open(5));
  EXPECT_TRUE(open.Innermost().item_key.empty());
  EXPECT_TRUE(open.Innermost().tag_key.empty());
  EXPECT_FALSE(open.Innermost().in_item);
}

}  // namespace
}  // namespace vessa
