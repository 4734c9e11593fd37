#include <algorithm>
#include <string>

#include "tests/callouts/decomposing.h"
#include "tests/support/processor_time.h"
#include "tests/support/resident_memory.h"
#include "tests/support/small_thread.h"

// Data sets as deep and as long as an input likes.

namespace emulator {
namespace {

using dicom_bytes::Item;
using dicom_bytes::ItemEnd;
using dicom_bytes::kItem;
using dicom_bytes::kUndefined;
using dicom_bytes::SequenceEnd;
using dicom_bytes::TagAndLength;

constexpr std::uint32_t kImages = 0x00081140;

std::string Name() { return kExplicit.Element(0x00100010, "PN", "ab"); }  // 10 bytes

/// Sequences of one item each in one another, 20 bytes a level, the innermost with one element.
std::string DefinedNesting(std::uint32_t levels) {
  std::string bytes;
  for (std::uint32_t inside = 10 + 20 * (levels - 1); levels > 0; --levels, inside -= 20) {
    bytes += kExplicit.Header(kImages, "SQ", inside + 8) + TagAndLength(kItem, inside);
  }
  return bytes + Name();
}

std::string UndefinedNesting(std::uint32_t levels) {
  std::string bytes;
  std::string ends;
  for (std::uint32_t level = 0; level < levels; ++level) {
    bytes += kExplicit.Header(kImages, "SQ", kUndefined) + TagAndLength(kItem, kUndefined);
    ends += ItemEnd() + SequenceEnd();
  }
  return bytes + Name() + ends;
}

/// What the handler must see of either.
Lines NestingEvents(std::uint32_t levels, bool defined) {
  const auto length = [defined](std::uint32_t value) { return std::to_string(defined ? value : kUndefined); };
  Lines lines = {"StartContent 1.2.840.10008.1.2.1"};
  for (std::uint32_t level = levels; level > 0; --level) {
    const std::uint32_t inside = 10 + 20 * (level - 1);
    lines.push_back("StartElement 00081140 SQ " + length(inside + 8));
    lines.emplace_back("StartSequence");
    lines.push_back("StartItem 00081140 " + length(inside));
  }
  lines.insert(lines.end(), {"StartElement 00100010 PN 2", "Data 00100010 1 6162", "EndElement 00100010"});
  for (std::uint32_t level = 1; level <= levels; ++level) {
    lines.push_back("EndItem 00081140 " + length(10 + 20 * (level - 1)));
    lines.emplace_back("EndSequence");
    lines.emplace_back("EndElement 00081140");
  }
  lines.emplace_back("EndContent");
  return lines;
}

class DeepNesting : public Decomposing, public testing::WithParamInterface<std::uint32_t> {};

TEST_P(DeepNesting, HasTheSameEventsAtAnyDepthOnASmallStack) {
  for (const bool defined : {true, false}) {
    const std::string bytes = defined ? DefinedNesting(GetParam()) : UndefinedNesting(GetParam());
    ListResult result;
    RunOnSmallStack([&] { result = Decompose(bytes); });
    ExpectSuccess(result);
    EXPECT_TRUE(log_->Lines() == NestingEvents(GetParam(), defined));  // too many to print
    EXPECT_EQ(Consumed(), static_cast<std::int64_t>(bytes.size()));
  }
}

INSTANTIATE_TEST_SUITE_P(Levels, DeepNesting, testing::Values(1U, 2U, 1000U, 100000U));

class VastStream : public Decomposing {
 protected:
  double SecondsFor(const std::string& bytes) {
    prepare_log_ = [](EventLog& log) { log.KeepLines(false); };
    return ProcessorSeconds([&] { ExpectSuccess(Decompose(bytes)); });
  }
};

// Ten times the depth may take ten times the time, not a hundred times; the bound leaves room for a busy machine.
TEST_F(VastStream, TakesTimeAsItsDepthAndNotAsItsSquare) {
  EXPECT_LT(SecondsFor(UndefinedNesting(50000)), 40 * SecondsFor(UndefinedNesting(5000)) + kCoarseTick);
}

/// A stream of one unit of bytes over and over, of which only what is peeked at is ever in memory.
class RepeatingStream : public StreamObject {
 public:
  RepeatingStream(std::string start, std::string unit, std::int64_t times)
      : start_{std::move(start)}, unit_{std::move(unit)}, times_{times} {}

  std::int64_t ByteCount() const override { return Size(start_) + times_ * Size(unit_); }

 protected:
  std::string_view BytesAt(std::int64_t offset, std::int64_t count) override {
    window_.clear();
    for (std::int64_t at = offset; at < offset + count; ++at) window_ += ByteAt(at);
    return window_;
  }
  void Append(std::string_view /*bytes*/) override {}

 private:
  static std::int64_t Size(const std::string& bytes) { return static_cast<std::int64_t>(bytes.size()); }
  char ByteAt(std::int64_t at) const {
    if (at < Size(start_)) return start_[static_cast<std::size_t>(at)];
    return unit_[static_cast<std::size_t>((at - Size(start_)) % Size(unit_))];
  }

  std::string start_;
  std::string unit_;
  std::int64_t times_;
  std::string window_;
};

/// One million times the unit, in constant memory.
class AMillion : public LoadedLibrary {
 protected:
  static constexpr std::int64_t kMillion = 1000000;

  /// @return  events of the whole stream
  std::uint64_t Decompose(const std::string& start, const std::string& unit, const std::string& message) {
    auto [stream, stream_oref] = Make<RepeatingStream>(start, unit, kMillion);
    auto [log, log_oref] = Make<EventLog>();
    log->KeepLines(false);
    std::size_t least = 0;
    std::size_t most = 0;
    log->OnEvent([&, &events = *log](std::string_view, std::span<const Value>) {
      if (events.Count() % 100000 != 0) return;
      const std::size_t now = ResidentMemory();
      least = least == 0 ? now : std::min(least, now);
      most = std::max(most, now);
    });
    const ListResult result = Call("zfDecomposeStream", ListBuilder()
                                                            .Integer(stream_oref)
                                                            .String(dicom_bytes::kExplicitLittleEndian)
                                                            .Integer(log_oref)
                                                            .Integer(0));
    EXPECT_EQ(result.message, std::u16string(message.begin(), message.end()));
    EXPECT_GT(least, 0U);
    if (kResidentMemoryTells) {
      EXPECT_LT(most - least, std::size_t{2} << 20);  // one byte an event would be more
    }
    return log->Count();
  }
};

TEST_F(AMillion, ElementsAreReportedInConstantMemory) {
  EXPECT_EQ(Decompose("", Name(), ""), 2 + 3 * kMillion);
}

TEST_F(AMillion, ItemsAreReportedInConstantMemory) {
  // No delimitation ends the sequence: the stream ends where the next item should be.
  EXPECT_EQ(Decompose(kExplicit.Header(kImages, "SQ", kUndefined), Item(Name()), " decomposing stream"),
            3 + 5 * kMillion);
}

}  // namespace
}  // namespace emulator
