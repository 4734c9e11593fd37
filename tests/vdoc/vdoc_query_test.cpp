#include "vdoc/vdoc_query.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "stream/binary_output_stream.h"
#include "tests/vdoc/answer.h"
#include "tests/vdoc/document.h"
#include "tests/vdoc/property_list_view.h"
#include "vdoc/exceptions.h"

namespace {

using vessa::CVDocQuery;
using vessa::Tag;

constexpr std::uint32_t kPatientName = 0x00100010;
constexpr std::uint32_t kPatientID = 0x00100020;
constexpr std::uint32_t kBeamSequence = 0x300A00B0;
constexpr std::uint32_t kBeamName = 0x300A00C2;
constexpr std::uint32_t kPoints = 0x300A0111;
constexpr std::uint32_t kEnergy = 0x300A0114;
constexpr std::uint32_t kPixelData = 0x7FE00010;

constexpr std::size_t kChunkBytes = 32648;
constexpr const char* kTooLong =
    "Data is too long to be returned from a query when no result stream is passed";

Item Beam(const std::string& name, std::vector<Item> points) {
  return {Text(kBeamName, "LO", name), Sequence(kPoints, std::move(points))};
}

Item Plan() {
  return {
      Text(0x00080018, "UI", "1.2.3"),
      Sequence(0x00081110, {}),
      Text(kPatientName, "PN", "Doe^John"),
      Text(kPatientID, "LO", ""),
      Sequence(kBeamSequence, {Beam("first", {{Text(kEnergy, "DS", "6.0")}}),
                               Beam("second", {{Text(kEnergy, "DS", "10")}, {Text(kEnergy, "DS", "18")}})}),
      Text(kPixelData, "OW", "pixels"),
      Text(0xFFFCFFFC, "OB", "padding."),
  };
}

enum class SequenceAnswer { kNo, kYes };

// Asks the data set by its events; how the decomposition ended is left in `ended` where one is given.
Answer Ask(const Item& data_set, const std::vector<std::uint32_t>& entries,
           SequenceAnswer sequence_answer = SequenceAnswer::kNo, Ended* ended = nullptr) {
  const PropertyListView list(entries);
  CVDocQuery query(list.View(), sequence_answer == SequenceAnswer::kYes);
  const Ended how = Play(data_set, query);
  if (ended != nullptr) *ended = how;
  return AnswerIn(query.Results());
}

std::string FailureOf(const Item& data_set, const std::vector<std::uint32_t>& entries) {
  const PropertyListView list(entries);
  CVDocQuery query(list.View());
  try {
    Play(data_set, query);
  } catch (const vessa::CVDocQueryException& failure) {
    return failure.Text();
  }
  return "";
}

TEST(VDocQuery, AnswersVrAndValueOfATopLevelElement) {
  EXPECT_EQ(Ask(Plan(), {kPatientName}), Found("PN", "Doe^John"));
  EXPECT_EQ(Ask(Plan(), {0x00080018}), Found("UI", "1.2.3"));
  EXPECT_EQ(Ask(Plan(), {kPixelData}), Found("OW", "pixels"));
}

TEST(VDocQuery, AnswersAnEmptyValueWithItsVr) { EXPECT_EQ(Ask(Plan(), {kPatientID}), Found("LO", "")); }

TEST(VDocQuery, AnswersATagOfAHighGroup) { EXPECT_EQ(Ask(Plan(), {0xFFFCFFFC}), Found("OB", "padding.")); }

TEST(VDocQuery, TagOfAHighGroupMayComeAsAPositiveNumber) {
  PropertyListBytes positive;
  positive.Item(4, "\xFC\xFF\xFC\xFF");
  const PropertyListView list(positive);
  CVDocQuery query(list.View());
  EXPECT_EQ(Play(Plan(), query), Ended::kBySuccess);
  EXPECT_EQ(AnswerIn(query.Results()), Found("OB", "padding."));
}

TEST(VDocQuery, NumbersAreCutToThirtyTwoBits) {
  PropertyListBytes wide;
  wide.Item(4, std::string("\x10\x00\x10\x00\x01", 5));  // 0000000100100010
  const PropertyListView list(wide);
  CVDocQuery query(list.View());
  Play(Plan(), query);
  EXPECT_EQ(AnswerIn(query.Results()), Found("PN", "Doe^John"));
}

TEST(VDocQuery, PropertyListMayHoldNumbersAsText) {
  PropertyListBytes text;
  text.Item(1, "1048592");
  const PropertyListView list(text);
  CVDocQuery query(list.View());
  Play(Plan(), query);
  EXPECT_EQ(AnswerIn(query.Results()), Found("PN", "Doe^John"));
}

TEST(VDocQuery, CountsItemsFromOne) {
  EXPECT_EQ(Ask(Plan(), {kBeamSequence, 1, kBeamName}), Found("LO", "first"));
  EXPECT_EQ(Ask(Plan(), {kBeamSequence, 2, kBeamName}), Found("LO", "second"));
  EXPECT_EQ(Ask(Plan(), {kBeamSequence, 3, kBeamName}), kNoAnswer);
  EXPECT_EQ(Ask(Plan(), {kBeamSequence, 0, kBeamName}), kNoAnswer);
}

TEST(VDocQuery, CountsNestedItemsAnewInEachItem) {
  EXPECT_EQ(Ask(Plan(), {kBeamSequence, 1, kPoints, 1, kEnergy}), Found("DS", "6.0"));
  EXPECT_EQ(Ask(Plan(), {kBeamSequence, 2, kPoints, 1, kEnergy}), Found("DS", "10"));
  EXPECT_EQ(Ask(Plan(), {kBeamSequence, 2, kPoints, 2, kEnergy}), Found("DS", "18"));
  EXPECT_EQ(Ask(Plan(), {kBeamSequence, 1, kPoints, 2, kEnergy}), kNoAnswer);
}

TEST(VDocQuery, AbsentElementHasNoAnswerWhetherStoppedEarlyOrNot) {
  Ended ended{};
  EXPECT_EQ(Ask(Plan(), {0x00100015}, SequenceAnswer::kNo, &ended), kNoAnswer);
  EXPECT_EQ(ended, Ended::kBySuccess);
  EXPECT_EQ(Ask(Plan(), {0xFFFEE000}, SequenceAnswer::kNo, &ended), kNoAnswer);
  EXPECT_EQ(ended, Ended::kAtTheEnd);
  EXPECT_EQ(Ask({}, {kPatientName}, SequenceAnswer::kNo, &ended), kNoAnswer);
  EXPECT_EQ(ended, Ended::kAtTheEnd);
}

TEST(VDocQuery, ElementSoughtInsideAPlainElementIsAbsent) {
  EXPECT_EQ(Ask(Plan(), {kPatientName, 1, kBeamName}), kNoAnswer);
}

TEST(VDocQuery, SequenceIsNoAnswerUnlessAskedFor) {
  Ended ended{};
  EXPECT_EQ(Ask(Plan(), {kBeamSequence}, SequenceAnswer::kNo, &ended), kNoAnswer);
  EXPECT_EQ(ended, Ended::kBySuccess);  // at the first value inside
  EXPECT_EQ(Ask(Plan(), {kBeamSequence}, SequenceAnswer::kYes), Found("SQ", ""));
  EXPECT_EQ(Ask(Plan(), {kBeamSequence, 2, kPoints}, SequenceAnswer::kYes), Found("SQ", ""));
}

TEST(VDocQuery, EmptySequenceIsReportedOnlyWhenSequencesAnswer) {
  EXPECT_EQ(Ask(Plan(), {0x00081110}, SequenceAnswer::kNo), kNoAnswer);
  EXPECT_EQ(Ask(Plan(), {0x00081110}, SequenceAnswer::kYes), Found("SQ", ""));
  EXPECT_EQ(Ask(Plan(), {kPatientName}, SequenceAnswer::kYes), Found("PN", "Doe^John"));
}

TEST(VDocQuery, SequenceAnswersAsSqWhateverItsElementSaid) {
  const PropertyListView list(std::vector<std::uint32_t>{kBeamSequence});
  CVDocQuery query(list.View(), true);
  query.Reset();
  query.StartElement(Tag{kBeamSequence}, vessa::kVrUN, vessa::kUndefinedLength);
  EXPECT_THROW(query.StartSequence(Tag{kBeamSequence}), vessa::CSuccessException);
  EXPECT_EQ(AnswerIn(query.Results()), Found("SQ", ""));
}

TEST(VDocQuery, AnswersTheFirstOfTwoElementsOfOneTag) {
  const Item twice = {Text(kPatientName, "PN", "first "), Text(kPatientName, "PN", "second")};
  EXPECT_EQ(Ask(twice, {kPatientName}), Found("PN", "first "));
}

TEST(VDocQuery, ElementBehindALargerTagCountsAsAbsent) {
  const Item unsorted = {Text(kPatientID, "LO", "7 "), Text(kPatientName, "PN", "Doe^John")};
  EXPECT_EQ(Ask(unsorted, {kPatientName}), kNoAnswer);
}

TEST(VDocQuery, StopsAtTheFirstValueBehindTheTarget) {
  Item data_set = Plan();
  data_set.erase(data_set.begin() + 2);  // no patient name
  const PropertyListView list(std::vector<std::uint32_t>{kPatientName});
  CVDocQuery query(list.View());
  query.Reset();
  query.StartElement(Tag{kPatientID}, vessa::Vr("LO"), 0);
  EXPECT_THROW(query.Data(Tag{kPatientID}, 1, {}), vessa::CSuccessException);
}

TEST(VDocQuery, ListOfEvenLengthIsRefused) {
  for (const std::vector<std::uint32_t>& entries :
       {std::vector<std::uint32_t>{}, {kBeamSequence, 0}, {kBeamSequence, 1, kPoints, 2}}) {
    EXPECT_EQ(FailureOf(Plan(), entries), "Property list has an even length");
  }
}

TEST(VDocQuery, BytesThatAreNoListFailInTheCodec) {
  // A short item that says more bytes than there are; a medium one cut in its length; an unknown type.
  for (const std::string& bytes :
       {std::string("\x09\x04\x10"), std::string("\0\x05", 2), std::string("\x03\x09\x10")}) {
    const PropertyListView list(PropertyListBytes().Raw(bytes));
    CVDocQuery query(list.View());
    EXPECT_THROW(query.Reset(), std::invalid_argument);
  }
}

TEST(VDocQuery, ValueOfOneChunkIsTheLongestThatComesBack) {
  const std::string longest(kChunkBytes, 'v');
  EXPECT_EQ(Ask({Text(kPatientName, "UT", longest)}, {kPatientName}), Found("UT", longest));
}

TEST(VDocQuery, ValueOfTwoChunksIsTooLong) {
  EXPECT_EQ(FailureOf({Text(kPatientName, "UT", std::string(kChunkBytes + 2, 'v'))}, {kPatientName}),
            kTooLong);
  EXPECT_EQ(FailureOf({Text(kPatientName, "UT", std::string(kChunkBytes * 3, 'v'))}, {kPatientName}),
            kTooLong);
}

TEST(VDocQuery, LongValueElsewhereIsNoFailure) {
  const Item data_set = {Text(0x00080018, "UT", std::string(kChunkBytes * 2, 'v')),
                         Text(kPatientName, "PN", "Doe")};
  EXPECT_EQ(Ask(data_set, {kPatientName}), Found("PN", "Doe"));
}

TEST(VDocQuery, FirstFragmentAnswersForEncapsulatedPixelData) {
  Ended ended{};
  EXPECT_EQ(Ask({PixelFragments({"", "one ", "two "})}, {kPixelData}, SequenceAnswer::kNo, &ended),
            Found("OB", ""));
  EXPECT_EQ(ended, Ended::kBySuccess);
  EXPECT_EQ(Ask({PixelFragments({"offsets.", "one "})}, {kPixelData}), Found("OB", "offsets."));
}

TEST(VDocQuery, LongFirstFragmentIsTooLong) {
  EXPECT_EQ(FailureOf({PixelFragments({std::string(kChunkBytes + 2, 'f'), "two "})}, {kPixelData}), kTooLong);
}

TEST(VDocQuery, FragmentsAreNotItems) {
  EXPECT_EQ(Ask({PixelFragments({"", "one "})}, {kPixelData, 1, kPixelData}), kNoAnswer);
}

TEST(VDocQuery, VrThatIsNoTextEndsAtItsZero) {
  const PropertyListView list(std::vector<std::uint32_t>{kPatientName});
  CVDocQuery query(list.View());
  query.Reset();
  query.StartElement(Tag{kPatientName}, vessa::Vr('\0', '\0'), 0);
  EXPECT_THROW(query.Data(Tag{kPatientName}, 1, {}), vessa::CSuccessException);
  EXPECT_EQ(AnswerIn(query.Results()), Found("", ""));
}

TEST(VDocQuery, ResultsAreTwoItemsOfBytes) {
  const PropertyListView list(std::vector<std::uint32_t>{kPatientName});
  CVDocQuery query(list.View());
  Play(Plan(), query);
  const vessa::VessaROList results = query.Results();
  EXPECT_EQ(std::string(results.Bytes().begin(), results.Bytes().end()),
            "\x04\x01PN\x0A\x01"
            "Doe^John");
}

// --- Every element of a data set, by the path that leads to it
// ---------------------------------------------------

void ExpectEachIsFound(const Item& whole, const Item& level, const std::vector<std::uint32_t>& path,
                       int& asked) {
  for (const Element& element : level) {
    std::vector<std::uint32_t> entries = path;
    entries.push_back(element.tag);
    ++asked;
    EXPECT_EQ(Ask(whole, entries, SequenceAnswer::kYes), Found(element.vr, element.value));
    const bool plain = element.vr != "SQ";
    EXPECT_EQ(Ask(whole, entries), plain ? Found(element.vr, element.value) : kNoAnswer);
    for (std::uint32_t item = 1; item <= element.items.size(); ++item) {
      entries.push_back(item);
      ExpectEachIsFound(whole, element.items[item - 1], entries, asked);
      entries.pop_back();
    }
  }
}

Item Nested(int depth) {
  Item item = {Text(kPatientName, "PN", "depth " + std::to_string(depth))};
  if (depth > 0) item.push_back(Sequence(kBeamSequence, {Nested(depth - 1), {}, Nested(depth - 1)}));
  item.push_back(Text(kPixelData, "OW", "behind" + std::to_string(depth)));
  return item;
}

TEST(VDocQuery, FindsEveryElementAtEveryDepth) {
  int asked = 0;
  ExpectEachIsFound(Plan(), Plan(), {}, asked);
  ExpectEachIsFound(Nested(4), Nested(4), {}, asked);
  EXPECT_EQ(asked, 14 + 2 * 31 + 15);
}

// --- Values that are asked for
// ------------------------------------------------------------------------------------

}  // namespace
