#pragma once

#include <string_view>

// The messages of this folder. "%1" stands for one inserted value.

namespace vessa::vdoc_text {

inline constexpr std::string_view kExpectedCharacter = "Expected character '%1'";
inline constexpr std::string_view kExpectedHexDigit = "Expected hex digit";
inline constexpr std::string_view kExpectedInteger = "Expected integer";
inline constexpr std::string_view kExpectedTagName = "Expected tag name";
inline constexpr std::string_view kTagNameNotFound = "Tag name not found in dictionary: %1";
inline constexpr std::string_view kUnrecognizedTag = "Unrecognized tag: %1";
inline constexpr std::string_view kNotASequence = "Element is not a sequence: %1";
inline constexpr std::string_view kSubscriptIsZero = "Subscript must not be zero";
inline constexpr std::string_view kEmptySubscriptInside =
    "Empty subscript must be at end of property subscript reference";
inline constexpr std::string_view kTextAfterReference = "Unrecognized text follows valid property reference";
inline constexpr std::string_view kTextAfterSubscriptReference =
    "Unrecognized text follows valid property subscript reference";

/// Also said of an odd length where an even one is wanted; hosts know the text, so it is kept.
inline constexpr std::string_view kEvenLength = "Property list has an even length";
inline constexpr std::string_view kEmptyList = "Property list is empty";
inline constexpr std::string_view kDataTooLong =
    "Data is too long to be returned from a query when no result stream is passed";

}  // namespace vessa::vdoc_text
