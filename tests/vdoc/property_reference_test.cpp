#include "vdoc/property_reference.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/vdoc/reference_parsing.h"

namespace {

using namespace std::string_view_literals;

// Keywords of sequences and other elements, as PS3.6 has them.
constexpr std::uint32_t kPatientName = 0x00100010;
constexpr std::uint32_t kBeamSequence = 0x300A00B0;
constexpr std::uint32_t kBeamName = 0x300A00C2;
constexpr std::uint32_t kControlPointSequence = 0x300A0111;

TEST(PropertyReference, WritesTheBytesOfTheListThatTheHostReads) {
  // Shortest integers: type 4, low byte first; the omitted high byte of 00100010 is zero.
  EXPECT_EQ(ParseReference("PatientName").bytes, "\x05\x04\x10\x00\x10"sv);
  // Type 5 for group 8000 and above: FFFAFFFA needs three bytes, the fourth is all ones.
  EXPECT_EQ(ParseReference("DigitalSignaturesSequence").bytes, "\x05\x05\xFA\xFF\xFA"sv);
  EXPECT_EQ(ParseReference("(8000,0001)").bytes, "\x06\x05\x01\x00\x00\x80"sv);
  EXPECT_EQ(ParseReference("BeamSequence[1].BeamName").bytes,
            "\x06\x04\xB0\x00\x0A\x30\x03\x04\x01\x06\x04\xC2\x00\x0A\x30"sv);
  EXPECT_EQ(ParseSubscript("BeamSequence[]").bytes, "\x06\x04\xB0\x00\x0A\x30\x02\x04"sv);
}

TEST(PropertyReference, KeywordAndHexadecimalTagGiveTheSameList) {
  EXPECT_EQ(ParseReference("PatientName"), ListOf({kPatientName}));
  EXPECT_EQ(ParseReference("(0010,0010)"), ListOf({kPatientName}));
}

TEST(PropertyReference, MissingClosingParenthesisIsNamedWithItsOffset) {
  EXPECT_EQ(ParseReference("(0010,0010"), Message("Expected character ')' at offset 11"));
}

TEST(PropertyReference, TakesLowerCaseHexDigits) {
  EXPECT_EQ(ParseReference("(7fe0,0010)"), ListOf({0x7FE00010}));
}

TEST(PropertyReference, EmptyTextLacksATagName) {
  EXPECT_EQ(ParseReference(""), Message("Expected tag name at offset 1"));
  EXPECT_EQ(ParseSubscript(""), Message("Expected tag name at offset 1"));
}

TEST(PropertyReference, BlankBehindTheReferenceIsRefused) {
  EXPECT_EQ(ParseReference("PatientName "),
            Message("Unrecognized text follows valid property reference at offset 12"));
}

TEST(PropertyReference, FirstTagIsTestedWhenTheBracketIsMet) {
  EXPECT_EQ(ParseReference("PatientName[1].X"), Message("Element is not a sequence: 00100010 at offset 12"));
}

TEST(PropertyReference, OtherLetterInATagIsNoHexDigit) {
  EXPECT_EQ(ParseReference("(0010,001G)"), Message("Expected hex digit at offset 10"));
}

TEST(PropertyReference, OnlyTheFirstTagIsTestedForBeingASequence) {
  EXPECT_EQ(ParseReference("BeamSequence[1].BeamName[2].PatientName"),
            ListOf({kBeamSequence, 1, kBeamName, 2, kPatientName}));
  EXPECT_EQ(ParseReference("BeamSequence[1].(0008,9999)[2].PatientName"),
            ListOf({kBeamSequence, 1, 0x00089999, 2, kPatientName}));
}

TEST(PropertyReference, ItemNumbersAreWantedAndCountFromOne) {
  EXPECT_EQ(ParseReference("BeamSequence[0].BeamName"), Message("Subscript must not be zero at offset 15"));
  EXPECT_EQ(ParseReference("BeamSequence[]"), Message("Expected integer at offset 14"));
  EXPECT_EQ(ParseReference("BeamSequence[1]"), Message("Expected character '.' at offset 16"));
}

TEST(PropertyReference, SubscriptAboveThirtyTwoBitsIsTheLargestNumber) {
  EXPECT_EQ(ParseReference("BeamSequence[2147483648].BeamName"),
            ListOf({kBeamSequence, 2147483647, kBeamName}));
  EXPECT_EQ(ParseSubscript("BeamSequence[99999999999999999999999999]"), ListOf({kBeamSequence, 2147483647}));
}

TEST(PropertySubscriptReference, LastSubscriptMayBeEmptyQuotedOrANumber) {
  EXPECT_EQ(ParseSubscript("BeamSequence[]"), ListOf({kBeamSequence, 0}));
  EXPECT_EQ(ParseSubscript("BeamSequence[\"\"]"), ListOf({kBeamSequence, 0}));
  EXPECT_EQ(ParseSubscript("BeamSequence[2]"), ListOf({kBeamSequence, 2}));
}

TEST(PropertySubscriptReference, EmptySubscriptStandsOnlyAtTheEnd) {
  EXPECT_EQ(ParseSubscript("BeamSequence[].ControlPointSequence[1]"),
            Message("Empty subscript must be at end of property subscript reference at offset 15"));
  EXPECT_EQ(ParseSubscript("BeamSequence[\"\"].ControlPointSequence[1]"),
            Message("Empty subscript must be at end of property subscript reference at offset 17"));
}

TEST(PropertySubscriptReference, TagIsWantedBehindADot) {
  EXPECT_EQ(ParseSubscript("BeamSequence[1]."), Message("Expected tag name at offset 17"));
}

TEST(PropertySubscriptReference, EveryTagIsTestedForBeingASequence) {
  EXPECT_EQ(ParseSubscript("BeamSequence[1].ControlPointSequence[2]"),
            ListOf({kBeamSequence, 1, kControlPointSequence, 2}));
  EXPECT_EQ(ParseSubscript("BeamSequence[1].BeamName[2]"),
            Message("Element is not a sequence: 300A00C2 at offset 25"));
}

TEST(PropertyReference, PrivateOrUnknownTagMayBeLastButHasNoItems) {
  EXPECT_EQ(ParseReference("(0009,1010)"), ListOf({0x00091010}));
  EXPECT_EQ(ParseReference("(0008,9999)"), ListOf({0x00089999}));
  EXPECT_EQ(ParseReference("BeamSequence[1].(0009,1010)"), ListOf({kBeamSequence, 1, 0x00091010}));
  EXPECT_EQ(ParseReference("(0009,1010)[1].BeamName"), Message("Unrecognized tag: 00091010 at offset 12"));
  EXPECT_EQ(ParseReference("(0009,0010)[1].BeamName"), Message("Unrecognized tag: 00090010 at offset 12"));
  EXPECT_EQ(ParseReference("(0008,9999)[1].BeamName"), Message("Unrecognized tag: 00089999 at offset 12"));
  EXPECT_EQ(ParseSubscript("(0009,1010)[]"), Message("Unrecognized tag: 00091010 at offset 12"));
}

TEST(PropertyReference, TextEndsAtItsFirstZeroByte) {
  EXPECT_EQ(ParseReference("PatientName\0 and more"sv), ListOf({kPatientName}));
  EXPECT_EQ(ParseReference("\0PatientName"sv), Message("Expected tag name at offset 1"));
  EXPECT_EQ(ParseReference("(0010\0,0010)"sv), Message("Expected character ',' at offset 6"));
  EXPECT_EQ(ParseSubscript("BeamSequence[1]\0[2]"sv), ListOf({kBeamSequence, 1}));
}

TEST(PropertyReference, AppendsToTheListThatItIsGiven) {
  vessa::InitialiseDictionary();
  vessa::VessaList list;
  list.AppendInt(0);
  vessa::ParsePropertyReference("PatientName", list);
  const std::span<const std::uint8_t> bytes = list.Bytes();
  EXPECT_EQ(std::string(bytes.begin(), bytes.end()), "\x02\x04\x05\x04\x10\x00\x10"sv);
}

TEST(PropertyReference, LongKeywordIsNamedWhole) {
  const std::string keyword(32000, 'A');
  EXPECT_EQ(ParseReference(keyword),
            Message("Tag name not found in dictionary: " + keyword + " at offset 32001"));
}

TEST(PropertyReference, TakesThousandsOfSteps) {
  std::string text = "BeamSequence";
  std::vector<std::uint32_t> expected{kBeamSequence};
  for (std::uint32_t step = 1; step <= 5000; ++step) {
    text += "[" + std::to_string(step) + "].BeamSequence";
    expected.insert(expected.end(), {step, kBeamSequence});
  }
  EXPECT_EQ(ParseReference(text), ListOf(expected));
}

TEST(PropertyReference, FailureIsAMemberOfTheFamily) {
  vessa::VessaList list;
  EXPECT_THROW(vessa::ParsePropertyReference("?", list), vessa::CException);
}

}  // namespace
