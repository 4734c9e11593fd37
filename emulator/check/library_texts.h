#pragma once

// What the library says when it gives a decomposition up.

#include <cstdint>
#include <string>
#include <string_view>

namespace emulator::library_texts {

inline constexpr const char* kOddLength =
    "DecomposeElement reading VR and data length: Datalength is an odd number";
inline constexpr const char* kItemAsElement = "Expected [Item Delimitation] or element, got [Item]";
inline constexpr const char* kSequenceEndAsElement =
    "Expected [Item Delimitation] or element, got [Sequence Delimitation Item]";
inline constexpr const char* kUnexpectedItemEnd =
    "DecomposeElement: caller did not expect [Item Delimitation]";
inline constexpr const char* kSequenceEndInDefinedSequence =
    "DecomposeItem: caller did not expect [Sequence Delimitation Item]";
inline constexpr const char* kUndefinedFragment = "DecomposeData_UndefLength: [Item] has undefined length";
/// It names the pixel data, whatever tag stands in the place of the fragment.
inline constexpr const char* kNoFragment =
    "DecomposeData_UndefLength: Expected [Item] or [Sequence Delimitation Item], got: 7FE00010";

std::string UnsupportedSyntax(std::string_view syntax);
std::string UndefinedLength(std::string_view vr);
std::string NoItem(std::uint32_t tag);
std::string NoEncapsulatedSyntax(std::string_view syntax);
std::string NoEncapsulatedTag(std::uint32_t tag);
std::string NoEncapsulatedVr(std::string_view vr);
std::string FragmentsEndWithLength(std::uint32_t length);

/// The message of a failed call, made of one of these texts; of none where the data end inside an element.
std::string Message(const std::string& text);

}  // namespace emulator::library_texts
