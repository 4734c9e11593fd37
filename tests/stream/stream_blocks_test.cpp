#include "stream/stream_blocks.h"

#include <algorithm>
#include <memory>

#include "tests/support/emulated_host.h"

namespace {

class StreamBlocks : public EmulatedHost {
 protected:
  std::uint32_t Serve(std::string bytes) {
    return Add(std::make_shared<emulator::MemoryStream>(std::move(bytes)));
  }

  vessa::PackBlock block_;
};

TEST_F(StreamBlocks, WhatIsLeftOfABlockIsFilledWithZeros) {
  block_.fill(0xAA);
  ASSERT_EQ(vessa::ReadBlock(Serve("abc"), block_), 3U);
  EXPECT_TRUE(std::equal(block_.begin(), block_.begin() + 3, "abc"));
  EXPECT_EQ(std::count(block_.begin() + 3, block_.end(), 0), static_cast<std::ptrdiff_t>(block_.size() - 3));
}

TEST_F(StreamBlocks, AFullBlockIsTakenWhole) {
  const std::string bytes = SomeBytes(vessa::kPackBlockBytes + 1);
  ASSERT_EQ(vessa::ReadBlock(Serve(bytes), block_), vessa::kPackBlockBytes);
  EXPECT_TRUE(std::equal(block_.begin(), block_.end(), BytesOf(bytes).begin()));
}

}  // namespace
