#include "tests/decompose/decomposition.h"
#include "tests/support/processor_time.h"
#include "tests/support/small_thread.h"

// Sequences in sequences, as deep as an input likes.

namespace {

using dicom_bytes::Item;
using dicom_bytes::kItem;
using dicom_bytes::kUndefined;
using dicom_bytes::TagAndLength;

constexpr std::uint32_t kImages = 0x00081140;

/// Counts events, and how deep they go.
class Depth : public vessa::CContentHandlerInterface {
 public:
  vessa::Status StartContent(std::string_view) override { return vessa::kSuccess; }
  vessa::Status EndContent() override { return vessa::kSuccess; }
  vessa::Status StartItem(vessa::Tag, std::uint32_t) override { return vessa::kSuccess; }
  vessa::Status EndItem(vessa::Tag, std::uint32_t) override { return vessa::kSuccess; }
  vessa::Status StartElement(vessa::Tag, vessa::Vr, std::uint32_t) override {
    ++elements;
    return vessa::kSuccess;
  }
  vessa::Status EndElement(vessa::Tag) override { return vessa::kSuccess; }
  vessa::Status Data(vessa::Tag, std::uint32_t, std::span<const std::uint8_t>) override {
    return vessa::kSuccess;
  }
  vessa::Status StartSequence(vessa::Tag) override {
    deepest = std::max(deepest, ++depth);
    return vessa::kSuccess;
  }
  vessa::Status EndSequence() override {
    --depth;
    return vessa::kSuccess;
  }

  int elements = 0;
  int depth = 0;
  int deepest = 0;
};

/// A stream over bytes of the test's own; no host is in the way.
class Bytes : public vessa::CVessaInputStream {
 public:
  explicit Bytes(const std::string& bytes) : bytes_{BytesOf(bytes)} {}

  vessa::Status Read(std::span<std::uint8_t> destination) override {
    if (destination.size() > bytes_.size()) return vessa::kReadFell;
    std::copy_n(bytes_.begin(), destination.size(), destination.begin());
    return Skip(static_cast<std::int64_t>(destination.size()));
  }
  vessa::Status Peek(std::span<std::uint8_t> destination, bool& at_end) override {
    at_end = bytes_.empty();
    if (at_end || destination.size() > bytes_.size()) return at_end ? vessa::kSuccess : vessa::E_INVALIDARG;
    std::copy_n(bytes_.begin(), destination.size(), destination.begin());
    return vessa::kSuccess;
  }
  vessa::Status Skip(std::int64_t count) override {
    bytes_ = bytes_.subspan(static_cast<std::size_t>(count));
    position_ += count;
    return vessa::kSuccess;
  }
  std::int64_t GetPosition() override { return position_; }
  std::int32_t GetSize() override { return 0; }
  vessa::Status Open() override { return vessa::kSuccess; }
  std::uint32_t GetOref() override { return 0; }

 private:
  std::span<const std::uint8_t> bytes_;
  std::int64_t position_ = 1;
};

std::string UndefinedNesting(int levels) {
  const std::string open = kExplicit.Header(kImages, "SQ", kUndefined) + TagAndLength(kItem, kUndefined);
  const std::string close = dicom_bytes::ItemEnd() + dicom_bytes::SequenceEnd();
  std::string bytes;
  for (int level = 0; level < levels; ++level) bytes += open;
  bytes += kExplicit.Element(0x00100010, "PN", "ab");
  for (int level = 0; level < levels; ++level) bytes += close;
  return bytes + kExplicit.Element(0x00100010, "PN", "ab");
}

// 20 bytes a level: the header of the sequence, 12, and that of its item, 8.
std::string DefinedNesting(int levels) {
  const std::string element = kExplicit.Element(0x00100010, "PN", "ab");
  std::string bytes;
  for (int level = levels; level > 0; --level) {
    const auto inside =
        static_cast<std::uint32_t>(element.size()) + 20 * static_cast<std::uint32_t>(level - 1);
    bytes += kExplicit.Header(kImages, "SQ", inside + 8) + TagAndLength(kItem, inside);
  }
  return bytes + element + element;
}

void Decompose(const std::string& bytes, Depth& depth) {
  Bytes stream(bytes);
  const std::uint32_t no_client = 0;
  vessa::StreamDecomposer decomposer(stream, depth, no_client, false);
  decomposer.DecomposeStream(dicom_bytes::kExplicitLittleEndian);
}

class Nesting : public testing::TestWithParam<int> {};

TEST_P(Nesting, TakesASmallStackWhateverItsDepth) {
  for (const std::string& bytes : {UndefinedNesting(GetParam()), DefinedNesting(GetParam())}) {
    Depth depth;
    RunOnSmallStack([&] { Decompose(bytes, depth); });
    EXPECT_EQ(depth.deepest, GetParam());
    EXPECT_EQ(depth.depth, 0);
    EXPECT_EQ(depth.elements, GetParam() + 2);
  }
}

INSTANTIATE_TEST_SUITE_P(Levels, Nesting, testing::Values(1, 2, 1000, 100000));

// Ten times the depth may take ten times the time, not a hundred times; the bound leaves room for a busy machine.
TEST(NestingTime, GrowsWithTheDepthAndNotWithItsSquare) {
  const auto seconds_for = [](int levels) {
    const std::string bytes = UndefinedNesting(levels);
    return ProcessorSeconds([&] {
      Depth depth;
      Decompose(bytes, depth);
    });
  };
  EXPECT_LT(seconds_for(50000), 40 * seconds_for(5000) + kCoarseTick);
}

using HostNesting = Decomposition;

TEST_F(HostNesting, ReachesTheHostLevelByLevel) {
  EXPECT_EQ(Decompose(DefinedNesting(1000)), kNoFailure);
  const Lines events = Events();
  constexpr std::size_t kInnermost = std::size_t{3} * 1000;  // behind StartElement, StartSequence, StartItem
  ASSERT_EQ(events.size(), kInnermost + 3 + kInnermost + 3 + 1);
  EXPECT_EQ(events[0], "StartElement 00081140 SQ 19998");
  EXPECT_EQ(events[kInnermost - 1], "StartItem 00081140 10");
  EXPECT_EQ(events[kInnermost], "StartElement 00100010 PN 2");
  EXPECT_EQ(events[kInnermost + 3], "EndItem 00081140 10");
  EXPECT_EQ(events[kInnermost + 3 + kInnermost - 1], "EndElement 00081140");
}

// --- Many items and elements

TEST(ManyElements, OfOneMillionItemsEachIsReported) {
  constexpr int kItems = 1000000;
  constexpr int kElements = 200000;
  const std::string item = Item("");
  const std::string element = kExplicit.Element(0x00100010, "PN", "");
  std::string items;
  for (int i = 0; i < kItems; ++i) items += item;
  std::string bytes = kExplicit.UndefinedSequence(kImages, items);
  for (int i = 0; i < kElements; ++i) bytes += element;
  Depth depth;
  Decompose(bytes, depth);
  EXPECT_EQ(depth.elements, kElements + 1);
}

}  // namespace
