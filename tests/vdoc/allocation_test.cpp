#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "tests/vdoc/allocation_count.h"
#include "tests/vdoc/property_list_view.h"
#include "vdoc/vdoc_next_subscript.h"
#include "vdoc/vdoc_query.h"

// Events come by the hundred thousand; none may allocate.

namespace {

using vessa::Tag;

constexpr std::uint32_t kSequence = 0x300A00B0;
constexpr std::uint32_t kName = 0x300A00C2;
constexpr std::uint32_t kPixelData = 0x7FE00010;

// Sequences within sequences, far deeper than any target here, two items in each and an element before it.
void SendNested(vessa::CContentHandlerInterface& handler, int depth) {
  constexpr std::uint8_t kValue[] = {'n', 'a', 'm', 'e'};
  handler.StartElement(Tag{kName - 0x20}, vessa::Vr("LO"), sizeof kValue);
  handler.Data(Tag{kName - 0x20}, 1, kValue);
  handler.EndElement(Tag{kName - 0x20});
  if (depth == 0) return;
  handler.StartElement(Tag{kSequence}, vessa::kVrSQ, vessa::kUndefinedLength);
  handler.StartSequence(Tag{kSequence});
  for (int item = 0; item < 2; ++item) {
    handler.StartItem(Tag{kSequence}, vessa::kUndefinedLength);
    SendNested(handler, depth - 1);
    handler.EndItem(Tag{kSequence}, vessa::kUndefinedLength);
  }
  handler.EndSequence();
  handler.EndElement(Tag{kSequence});
}

std::uint64_t AllocationsOfEvents(vessa::CContentHandlerInterface& handler) {
  handler.Reset();
  const std::uint64_t before = AllocationCount();
  SendNested(handler, 12);
  return AllocationCount() - before;
}

TEST(EventAllocations, CountsThoseOfTheProgram) {
  const std::uint64_t before = AllocationCount();
  const std::vector<int> one(100);
  EXPECT_EQ(AllocationCount(), before + 1);
}

TEST(EventAllocations, QueryMakesNone) {
  for (const std::vector<std::uint32_t>& entries :
       {std::vector<std::uint32_t>{kPixelData}, {kSequence, 3, kName}, {kSequence, 2, kSequence, 3, kName}}) {
    const PropertyListView list(entries);
    vessa::CVDocQuery query(list.View());
    EXPECT_EQ(AllocationsOfEvents(query), 0U);
  }
}

TEST(EventAllocations, NextSubscriptMakesNone) {
  for (const std::vector<std::uint32_t>& entries :
       {std::vector<std::uint32_t>{kPixelData, 0}, {kSequence, 2}, {kSequence, 2, kSequence, 2}}) {
    const PropertyListView list(entries);
    vessa::CVDocNextSubscript next(list.View());
    EXPECT_EQ(AllocationsOfEvents(next), 0U);
  }
}

}  // namespace
