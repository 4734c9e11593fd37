#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "emulator/host.h"
#include "emulator/stream_object.h"
#include "host/callin.h"
#include "stream/binary_output_stream.h"
#include "tests/vdoc/answer.h"
#include "tests/vdoc/document.h"
#include "tests/vdoc/property_list_view.h"
#include "vdoc/vdoc_query.h"

// Queries with a stream of the host for long values.

namespace {

using vessa::CVDocQuery;

constexpr std::uint32_t kName = 0x00100010;
constexpr std::uint32_t kText = 0x0040A160;
constexpr std::uint32_t kBeams = 0x300A00B0;
constexpr std::uint32_t kPixelData = 0x7FE00010;

constexpr std::size_t kChunkBytes = 32648;
constexpr std::uint64_t kBlockBytes = 8000;  // of one host call

// A value in which no two blocks are alike.
std::string LongValue(std::size_t bytes) {
  std::string value(bytes, '\0');
  for (std::size_t i = 0; i < bytes; ++i) value[i] = static_cast<char>('a' + (i + i / 251) % 26);
  return value;
}

class QueryResultStream : public testing::Test {
 protected:
  void SetUp() override { vessa::SetHostServices(emulator::Host::Table()); }
  void TearDown() override { vessa::SetHostServices(nullptr); }

  Answer Ask(const Item& data_set, const std::vector<std::uint32_t>& entries, bool sequence_answer = false) {
    const PropertyListView list(entries);
    CVDocQuery query(list.View(), sequence_answer, std::make_unique<vessa::CVessaBinaryOutputStream>(oref_));
    ended_ = Play(data_set, query);
    Answer answer = AnswerIn(query.Results());
    EXPECT_EQ(AnswerIn(query.Results()), answer) << "asked again";
    EXPECT_EQ(host_.StackDepth(), 0U);
    return answer;
  }

  const std::string& Written() const { return output_->Bytes(); }

  emulator::Host host_;
  std::shared_ptr<emulator::MemoryStream> output_ = std::make_shared<emulator::MemoryStream>();
  std::uint32_t oref_ = host_.Add(output_);
  Ended ended_{};
};

TEST_F(QueryResultStream, ValueOfOneChunkComesInTheListAlone) {
  for (const std::size_t bytes : {std::size_t{0}, std::size_t{8}, kChunkBytes}) {
    EXPECT_EQ(Ask({Text(kText, "UT", LongValue(bytes))}, {kText}), Found("UT", LongValue(bytes)));
    EXPECT_EQ(output_->Writes(), 0U);
  }
}

TEST_F(QueryResultStream, LongerValueGoesToTheStreamWholeAndItsFirstChunkToTheListToo) {
  const std::string value = LongValue(kChunkBytes + 2);
  EXPECT_EQ(Ask({Text(kText, "UT", value), Text(kPixelData, "OW", "pixels")}, {kText}),
            Found("UT", value.substr(0, kChunkBytes)));
  EXPECT_EQ(Written(), value);
  EXPECT_EQ(output_->Writes(), value.size() / kBlockBytes + 1);
  EXPECT_EQ(ended_, Ended::kBySuccess);  // at the next value
}

TEST_F(QueryResultStream, ValueOfManyChunksKeepsItsOrder) {
  for (const std::size_t bytes : {2 * kChunkBytes, 2 * kChunkBytes + 1, 10 * kChunkBytes + 77}) {
    const std::size_t before = Written().size();
    const std::string value = LongValue(bytes);
    EXPECT_EQ(Ask({Text(kText, "UT", value)}, {kText}), Found("UT", value.substr(0, kChunkBytes)));
    EXPECT_EQ(Written().substr(before), value);
    EXPECT_EQ(ended_, Ended::kAtTheEnd);
  }
}

TEST_F(QueryResultStream, ValuesElsewhereDoNotReachIt) {
  const Item data_set = {Text(kName, "UT", LongValue(3 * kChunkBytes)), Text(kText, "UT", "short "),
                         Text(kPixelData, "OW", LongValue(3 * kChunkBytes))};
  EXPECT_EQ(Ask(data_set, {kText}), Found("UT", "short "));
  EXPECT_EQ(output_->Writes(), 0U);
}

TEST_F(QueryResultStream, OnlyFragmentsOfSeveralChunksReachIt) {
  const std::string first = LongValue(kChunkBytes + 2);
  const std::string second = LongValue(2 * kChunkBytes);
  EXPECT_EQ(Ask({PixelFragments({"offsets.", first, "short", second, "last"})}, {kPixelData}),
            Found("OB", "offsets."));
  EXPECT_EQ(Written(), first + second);
}

TEST_F(QueryResultStream, AnswerStaysTwoItemsWhateverTheNumberOfFragments) {
  EXPECT_EQ(Ask({PixelFragments(std::vector<std::string>(5000, "frame."))}, {kPixelData}),
            Found("OB", "frame."));
  EXPECT_EQ(output_->Writes(), 0U);
}

TEST_F(QueryResultStream, SequenceAnswersWithoutIt) {
  EXPECT_EQ(Ask({Sequence(kBeams, {{Text(kText, "UT", LongValue(2 * kChunkBytes))}})}, {kBeams}, true),
            Found("SQ", ""));
  EXPECT_EQ(output_->Writes(), 0U);
}

TEST_F(QueryResultStream, WhatWasFoundBeforeAFailureReachesIt) {
  const std::string value = LongValue(kChunkBytes + 2);
  {
    const PropertyListView list(std::vector<std::uint32_t>{kText});
    CVDocQuery query(list.View(), false, std::make_unique<vessa::CVessaBinaryOutputStream>(oref_));
    Play({Text(kText, "UT", value)}, query);
    EXPECT_LT(Written().size(), value.size());
    // Nobody asks for the results: the decomposition failed behind this value.
  }
  EXPECT_EQ(Written(), value);
}

TEST_F(QueryResultStream, LastBlockThatTheHostRefusesIsLostQuietlyAndNotSentAgain) {
  const std::string value = LongValue(kChunkBytes + 2);
  const std::uint64_t full_blocks = value.size() / kBlockBytes;
  host_.faults().FailNthMethod("Write", full_blocks + 1, 5);
  {
    const PropertyListView list(std::vector<std::uint32_t>{kText});
    CVDocQuery query(list.View(), false, std::make_unique<vessa::CVessaBinaryOutputStream>(oref_));
    Play({Text(kText, "UT", value)}, query);
    EXPECT_EQ(AnswerIn(query.Results()), Found("UT", value.substr(0, kChunkBytes)));
  }
  EXPECT_EQ(host_.faults().Hits(), 1U);
  EXPECT_EQ(Written(), value.substr(0, full_blocks * kBlockBytes));
}

TEST_F(QueryResultStream, FailureOfTheHostToWriteFailsTheQuery) {
  constexpr int kStatus = 5;
  host_.faults().FailNthMethod("Write", 2, kStatus);
  const PropertyListView list(std::vector<std::uint32_t>{kText});
  CVDocQuery query(list.View(), false, std::make_unique<vessa::CVessaBinaryOutputStream>(oref_));
  try {
    Play({Text(kText, "UT", LongValue(2 * kChunkBytes))}, query);
    FAIL() << "the failure went unnoticed";
  } catch (const vessa::CDecomposeException& failure) {
    EXPECT_EQ(failure.Text(), "Callin error writing bytes: 5");
  }
}

}  // namespace
