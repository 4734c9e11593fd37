#include <gtest/gtest.h>

#include <string>

#include "decompose/stream_decomposer.h"
#include "dicom/dictionary.h"
#include "stream/binary_output_stream.h"
#include "tests/vdoc/answer.h"
#include "tests/vdoc/document.h"
#include "tests/vdoc/memory_input_stream.h"
#include "tests/vdoc/property_list_view.h"
#include "vdoc/vdoc_next_subscript.h"
#include "vdoc/vdoc_query.h"

// Queries over streams of bytes, through the decomposer.

namespace {

using vessa::CVDocNextSubscript;
using vessa::CVDocQuery;

constexpr std::uint32_t kName = 0x00100010;
constexpr std::uint32_t kSetup = 0x00081110;
constexpr std::uint32_t kBeams = 0x300A00B0;
constexpr std::uint32_t kBeamName = 0x300A00C2;
constexpr std::uint32_t kPoints = 0x300A0111;
constexpr std::uint32_t kEnergy = 0x300A0114;
constexpr std::uint32_t kPixelData = 0x7FE00010;
constexpr std::uint32_t kPadding = 0xFFFCFFFC;

constexpr std::string_view kExplicit = "1.2.840.10008.1.2.1";
constexpr std::string_view kJpegBaseline = "1.2.840.10008.1.2.4.50";

void Decompose(MemoryInputStream& stream, vessa::CContentHandlerInterface& handler,
               std::string_view syntax = kExplicit) {
  vessa::InitialiseDictionary();
  constexpr std::uint32_t kNoClient = 0;
  vessa::StreamDecomposer(stream, handler, kNoClient, false).DecomposeStream(syntax);
}

Answer Ask(MemoryInputStream& stream, const std::vector<std::uint32_t>& entries, bool sequence_answer = false,
           std::string_view syntax = kExplicit) {
  const PropertyListView list(entries);
  CVDocQuery query(list.View(), sequence_answer);
  Decompose(stream, query, syntax);
  return AnswerIn(query.Results());
}

Answer Ask(const std::string& bytes, const std::vector<std::uint32_t>& entries, bool sequence_answer = false,
           Passing passing = Passing::kByReading) {
  MemoryInputStream stream(bytes, passing);
  return Ask(stream, entries, sequence_answer);
}

std::uint32_t Next(const std::string& bytes, const std::vector<std::uint32_t>& entries) {
  const PropertyListView list(entries);
  CVDocNextSubscript next(list.View());
  MemoryInputStream stream(bytes);
  Decompose(stream, next);
  return next.Found();
}

Item Beam(const std::string& name, std::vector<Item> points) {
  return {Text(kBeamName, "LO", name), Sequence(kPoints, std::move(points))};
}

Item Plan() {
  return {Text(0x00080018, "UI", "1.2.3."),
          Sequence(kSetup, {}),
          Text(kName, "PN", "Doe^John"),
          Sequence(kBeams, {Beam("first ", {{Text(kEnergy, "DS", "6.")}}),
                            {},
                            Beam("third ", {{Text(kEnergy, "DS", "10")}, {Text(kEnergy, "DS", "18")}})}),
          Text(kPixelData, "OW", "pixels"),
          Text(kPadding, "OB", "padding.")};
}

void ExpectEachIsFound(const std::string& bytes, const Item& level, const std::vector<std::uint32_t>& path,
                       int& asked) {
  for (const Element& element : level) {
    std::vector<std::uint32_t> entries = path;
    entries.push_back(element.tag);
    ++asked;
    EXPECT_EQ(Ask(bytes, entries, true), Found(element.vr, element.value));
    EXPECT_EQ(Ask(bytes, entries), element.vr == "SQ" ? kNoAnswer : Found(element.vr, element.value));
    for (std::uint32_t item = 1; item <= element.items.size(); ++item) {
      entries.push_back(item);
      ExpectEachIsFound(bytes, element.items[item - 1], entries, asked);
      entries.pop_back();
    }
  }
}

TEST(QueryOverStream, FindsEveryElementWhateverTheLengths) {
  for (const Lengths lengths : {Lengths::kDefined, Lengths::kUndefined}) {
    int asked = 0;
    ExpectEachIsFound(Encode(Plan(), lengths), Plan(), {}, asked);
    EXPECT_EQ(asked, 13);
  }
}

TEST(QueryOverStream, AbsentElementHasNoAnswer) {
  const std::string bytes = Encode(Plan(), Lengths::kUndefined);
  for (const std::vector<std::uint32_t>& entries : {std::vector<std::uint32_t>{0x00100020},
                                                    {kBeams, 2, kBeamName},
                                                    {kBeams, 4, kBeamName},
                                                    {0xFFFFFFFF},
                                                    {kName, 1, kName},
                                                    {kBeams, 1, kPoints, 2, kEnergy}}) {
    EXPECT_EQ(Ask(bytes, entries), kNoAnswer);
  }
  EXPECT_EQ(Ask("", {kName}), kNoAnswer);
}

TEST(QueryOverStream, ReadsNothingBehindTheAnswer) {
  Item data_set = Plan();
  data_set.push_back(Text(0xFFFEFFFF, "OB", std::string(1'000'000, 'x')));
  const std::string bytes = Encode(data_set, Lengths::kUndefined);
  MemoryInputStream stream(bytes);
  EXPECT_EQ(Ask(stream, {kName}), Found("PN", "Doe^John"));
  EXPECT_EQ(stream.GetPosition(), static_cast<std::int64_t>(bytes.find("Doe^John") + 9));
}

// The first value at or behind the target ends the walk before the damage is met.
TEST(QueryOverStream, DamageBehindTheAnswerDoesNoHarmAndDamageBeforeItFails) {
  const std::string intact = Encode(Plan(), Lengths::kUndefined);
  const std::string damage("\xFE\xFF\x0D\xE0\0\0\0\0", 8);  // an item delimitation at top level
  EXPECT_EQ(Ask(intact + damage, {kPadding}), Found("OB", "padding."));
  EXPECT_EQ(Ask(intact + damage, {kBeams, 3, kBeamName}), Found("LO", "third "));
  try {
    Ask(damage + intact, {kName});
    FAIL() << "the damage went unnoticed";
  } catch (const vessa::CDecomposeException& failure) {
    EXPECT_EQ(failure.Text(), "DecomposeElement: caller did not expect [Item Delimitation]");
  }
}

TEST(QueryOverStream, UnsupportedSyntaxFails) {
  const PropertyListView list(std::vector<std::uint32_t>{kName});
  CVDocQuery query(list.View());
  MemoryInputStream stream("");
  EXPECT_THROW(Decompose(stream, query, "1.2.3"), vessa::CDecomposeException);
}

// What comes of a query of a stream that may be cut: an answer, or the status or text of the failure.
struct Outcome {
  Answer answer;
  vessa::Status status = vessa::kSuccess;
  std::string text;

  bool operator==(const Outcome&) const = default;
};

Outcome Try(const std::string& bytes, const std::vector<std::uint32_t>& entries, Passing passing) {
  try {
    return {Ask(bytes, entries, false, passing), vessa::kSuccess, ""};
  } catch (const vessa::Status status) {
    return {kNoAnswer, status, ""};
  } catch (const vessa::CDecomposeException& failure) {
    return {kNoAnswer, vessa::kSuccess, failure.Text()};
  }
}

// Lengths are undefined: a stream that ends inside an item of defined length is never left.
TEST(QueryOverStream, StreamCutAnywhereGivesTheWholeValueOrNone) {
  const std::string bytes = Encode(Plan(), Lengths::kUndefined);
  const std::vector<std::uint32_t> target = {kBeams, 3, kPoints, 1, kEnergy};
  const std::size_t answer_ends = bytes.find("DS\x02", bytes.find("third ")) + 6;
  for (std::size_t length = 0; length <= bytes.size(); ++length) {
    const Outcome outcome = Try(bytes.substr(0, length), target, Passing::kByReading);
    EXPECT_EQ(outcome.answer, length < answer_ends ? kNoAnswer : Found("DS", "10")) << length;
    EXPECT_EQ(Try(bytes.substr(0, length), target, Passing::kByMoving), outcome) << length;
  }
}

TEST(QueryOverStream, StreamThatEndsInsideAValueBeforeTheAnswerFails) {
  const std::string value(100'000, 'x');
  const std::string bytes =
      Encode({Text(0x00080018, "OB", value), Text(kName, "PN", "Doe^John")}, Lengths::kDefined);
  for (const Passing passing : {Passing::kByReading, Passing::kByMoving}) {
    EXPECT_EQ(Ask(bytes, {kName}, false, passing), Found("PN", "Doe^John"));
    for (const std::size_t length :
         {std::size_t{12}, std::size_t{13}, std::size_t{50'000}, value.size() + 11}) {
      EXPECT_EQ(Try(bytes.substr(0, length), {kName}, passing).status, vessa::kReadFell) << length;
    }
  }
}

TEST(QueryOverStream, ValuesThatCannotBeTheAnswerAreNotRead) {
  const std::string huge(1'000'000, 'x');
  const std::string bytes =
      Encode({Text(kName, "PN", "Doe^John"), Sequence(kBeams, {{Text(kBeamName, "UT", huge)}}),
              Text(kPixelData, "OW", huge), Text(kPadding, "OB", "padding.")},
             Lengths::kUndefined);
  MemoryInputStream stream(bytes, Passing::kByMoving);
  EXPECT_EQ(Ask(stream, {kPadding}), Found("OB", "padding."));
  EXPECT_LT(stream.BytesRead(), 200U);

  const PropertyListView list(std::vector<std::uint32_t>{0xFFFAFFFA, 0});
  CVDocNextSubscript next(list.View());
  MemoryInputStream again(bytes, Passing::kByMoving);
  Decompose(again, next);
  EXPECT_LT(again.BytesRead(), 200U);
}

TEST(QueryOverStream, FragmentsOfPixelDataAnswerByTheirFirst) {
  const std::string bytes =
      Encode({Text(kName, "PN", "Doe^John"), PixelFragments({"offs", "fragment"})}, Lengths::kUndefined);
  MemoryInputStream stream(bytes);
  EXPECT_EQ(Ask(stream, {kPixelData}, false, kJpegBaseline), Found("OB", "offs"));
}

TEST(QueryOverStream, ElementBehindFragmentsIsFound) {
  const std::string bytes =
      Encode({PixelFragments({"", std::string(100'000, 'f')}), Text(kPadding, "OB", "padding.")},
             Lengths::kUndefined);
  MemoryInputStream stream(bytes);
  EXPECT_EQ(Ask(stream, {kPadding}, false, kJpegBaseline), Found("OB", "padding."));
  MemoryInputStream passing(bytes, Passing::kByMoving);
  EXPECT_EQ(Ask(passing, {kPadding}, false, kJpegBaseline), Found("OB", "padding."));
  EXPECT_LT(passing.BytesRead(), 100U);
}

TEST(QueryOverStream, DeepNestingCostsNeitherStackNorTime) {
  constexpr int kDepth = 100'000;
  const std::string open("\x0A\x30\xB0\x00SQ\0\0\xFF\xFF\xFF\xFF\xFE\xFF\x00\xE0\xFF\xFF\xFF\xFF", 20);
  const std::string close("\xFE\xFF\x0D\xE0\0\0\0\0\xFE\xFF\xDD\xE0\0\0\0\0", 16);
  std::string bytes;
  for (int level = 0; level < kDepth; ++level) bytes += open;
  for (int level = 0; level < kDepth; ++level) bytes += close;
  bytes += Encode({Text(kPixelData, "OW", "pixels")}, Lengths::kDefined);
  EXPECT_EQ(Ask(bytes, {kPixelData}), Found("OW", "pixels"));
  std::vector<std::uint32_t> deep;
  for (int level = 0; level < 5000; ++level) deep.insert(deep.end(), {kBeams, 1});
  deep.push_back(kPixelData);
  EXPECT_EQ(Ask(bytes, deep), kNoAnswer);
}

TEST(NextSubscriptOverStream, WalksTheItemsToTheEnd) {
  for (const Lengths lengths : {Lengths::kDefined, Lengths::kUndefined}) {
    const std::string bytes = Encode(Plan(), lengths);
    EXPECT_EQ(Next(bytes, {kBeams, 0}), 1U);
    EXPECT_EQ(Next(bytes, {kBeams, 1}), 2U);
    EXPECT_EQ(Next(bytes, {kBeams, 2}), 3U);
    EXPECT_EQ(Next(bytes, {kBeams, 3}), 0U);
    EXPECT_EQ(Next(bytes, {kBeams, 3, kPoints, 0}), 1U);
    EXPECT_EQ(Next(bytes, {kBeams, 3, kPoints, 1}), 2U);
    EXPECT_EQ(Next(bytes, {kBeams, 3, kPoints, 2}), 0U);
    EXPECT_EQ(Next(bytes, {kBeams, 2, kPoints, 0}), 0U);
    EXPECT_EQ(Next(bytes, {kSetup, 0}), 0U);
    EXPECT_EQ(Next(bytes, {0x0040A730, 0}), 0U);
  }
}

}  // namespace
