#pragma once

// Tags as people write them.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace emulator {

/// "(0010,0010)", upper-case hexadecimal.
std::string DisplayTag(std::uint32_t tag);

/// "00100010", upper-case hexadecimal.
std::string PlainTag(std::uint32_t tag);

/// Reads 0010,0010 or (0010,0010) or 00100010; nothing for any other text.
std::optional<std::uint32_t> ParseTag(std::string_view text);

constexpr std::uint32_t GroupOf(std::uint32_t tag) { return tag >> 16U; }
constexpr std::uint32_t ElementOf(std::uint32_t tag) { return tag & 0xFFFFU; }
constexpr bool IsPrivate(std::uint32_t tag) { return GroupOf(tag) % 2 == 1; }

inline constexpr std::uint32_t kMetaGroupLength = 0x00020000;
inline constexpr std::uint32_t kMetaVersion = 0x00020001;
inline constexpr std::uint32_t kMediaStorageSopClassUid = 0x00020002;
inline constexpr std::uint32_t kMediaStorageSopInstanceUid = 0x00020003;
inline constexpr std::uint32_t kTransferSyntaxUid = 0x00020010;
inline constexpr std::uint32_t kImplementationClassUid = 0x00020012;
inline constexpr std::uint32_t kImplementationVersionName = 0x00020013;
inline constexpr std::uint32_t kSpecificCharacterSet = 0x00080005;
inline constexpr std::uint32_t kSopClassUid = 0x00080016;
inline constexpr std::uint32_t kSopInstanceUid = 0x00080018;
inline constexpr std::uint32_t kBitsAllocated = 0x00280100;
inline constexpr std::uint32_t kPixelRepresentation = 0x00280103;
inline constexpr std::uint32_t kWaveformBitsAllocated = 0x54001004;
inline constexpr std::uint32_t kPixelData = 0x7FE00010;
inline constexpr std::uint32_t kItem = 0xFFFEE000;
inline constexpr std::uint32_t kItemDelimitation = 0xFFFEE00D;
inline constexpr std::uint32_t kSequenceDelimitation = 0xFFFEE0DD;
inline constexpr std::uint32_t kMetaGroup = 0x0002;
inline constexpr std::uint32_t kUndefinedLength = 0xFFFFFFFF;

}  // namespace emulator
