#include "vdoc/document_path.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using vessa::CDocumentPath;
using vessa::PathRelation;
using vessa::Tag;

// Relation of a path, tags and item numbers in turn, to a target.
PathRelation Relate(const std::vector<std::uint32_t>& path, std::vector<std::uint32_t> target) {
  CDocumentPath document;
  document.SetTarget(std::move(target));
  for (std::size_t i = 0; i < path.size(); ++i) {
    if (i % 2 == 0) {
      document.PushTag(Tag{path[i]});
    } else {
      document.PushItemCounter();
      for (std::uint32_t item = 0; item < path[i]; ++item) document.CountItem();
    }
  }
  return document.Relation();
}

TEST(DocumentPath, ComparesTheFirstEntryThatDiffers) {
  EXPECT_EQ(Relate({5}, {7}), PathRelation::kBefore);
  EXPECT_EQ(Relate({9}, {7}), PathRelation::kPassed);
  EXPECT_EQ(Relate({7}, {7}), PathRelation::kEqual);
  EXPECT_EQ(Relate({7, 1, 9}, {7, 2, 3}), PathRelation::kBefore);
  EXPECT_EQ(Relate({7, 3, 1}, {7, 2, 3}), PathRelation::kPassed);
  EXPECT_EQ(Relate({7, 2, 3}, {7, 2, 3}), PathRelation::kEqual);
  EXPECT_EQ(Relate({6, 9, 9}, {7}), PathRelation::kBefore);
  EXPECT_EQ(Relate({8, 1, 1}, {7}), PathRelation::kPassed);
}

TEST(DocumentPath, TheShorterOfTwoThatAgreeLeads) {
  EXPECT_EQ(Relate({}, {7}), PathRelation::kLeads);
  EXPECT_EQ(Relate({7}, {7, 1, 3}), PathRelation::kLeads);
  EXPECT_EQ(Relate({7, 1}, {7, 1, 3}), PathRelation::kLeads);
  EXPECT_EQ(Relate({7, 1}, {7}), PathRelation::kInside);
  EXPECT_EQ(Relate({7, 1, 3}, {7}), PathRelation::kInside);
  EXPECT_EQ(Relate({7, 1, 3, 4, 5}, {7, 1, 3}), PathRelation::kInside);
}

TEST(DocumentPath, EntriesAreUnsigned) {
  EXPECT_EQ(Relate({0x7FE00010}, {0xFFFAFFFA}), PathRelation::kBefore);
  EXPECT_EQ(Relate({0xFFFAFFFA}, {0x7FE00010}), PathRelation::kPassed);
}

TEST(DocumentPath, LeavingAnEmptyPathAndCountingInItDoNothing) {
  CDocumentPath document;
  document.SetTarget({7});
  document.Pop();
  document.CountItem();
  document.PushTag(Tag{7});
  document.CountItem();  // a fragment of pixel data
  EXPECT_EQ(document.Relation(), PathRelation::kEqual);
}

TEST(DocumentPath, ANewTargetBeginsAnew) {
  CDocumentPath document;
  document.SetTarget({7});
  document.PushTag(Tag{7});
  document.SetTarget({7});
  EXPECT_EQ(document.Relation(), PathRelation::kLeads);
}

// The same from the plain comparison, entry by entry, along long walks.
PathRelation CompareAll(const std::vector<std::uint32_t>& path, const std::vector<std::uint32_t>& target) {
  for (std::size_t i = 0; i < path.size() && i < target.size(); ++i) {
    if (path[i] != target[i]) return path[i] < target[i] ? PathRelation::kBefore : PathRelation::kPassed;
  }
  if (path.size() == target.size()) return PathRelation::kEqual;
  return path.size() < target.size() ? PathRelation::kLeads : PathRelation::kInside;
}

TEST(DocumentPath, AgreesWithComparingAllEntriesOnEveryStep) {
  std::mt19937 random(20240601);
  const auto below = [&random](std::uint32_t bound) { return static_cast<std::uint32_t>(random() % bound); };
  for (int walk = 0; walk < 300; ++walk) {
    std::vector<std::uint32_t> target(below(6));
    for (std::uint32_t& entry : target) entry = below(3);
    CDocumentPath document;
    document.SetTarget(target);
    std::vector<std::uint32_t> path;
    for (int step = 0; step < 300; ++step) {
      switch (below(4)) {
        case 0: {
          const std::uint32_t tag = below(3);
          document.PushTag(Tag{tag});
          path.push_back(tag);
          break;
        }
        case 1:
          document.PushItemCounter();
          path.push_back(0);
          break;
        case 2:
          document.CountItem();
          if (!path.empty() && path.size() % 2 == 0) ++path.back();
          break;
        default:
          document.Pop();
          if (!path.empty()) path.pop_back();
      }
      ASSERT_EQ(document.Relation(), CompareAll(path, target)) << "walk " << walk << " step " << step;
    }
  }
}

}  // namespace
