#include "emulator/store/stored_vr.h"

#include <algorithm>
#include <array>

#include "emulator/tag_text.h"

namespace emulator {
namespace {

constexpr std::string_view kUnknown = "UN";
constexpr std::uint16_t kBitsOfAByte = 8;
constexpr std::uint16_t kSigned = 1;
constexpr std::uint32_t kLutData = 0x00283006;
constexpr std::uint32_t kGrayLookupTableData = 0x00281200;
constexpr std::uint32_t kWaveformGroup = 0x5400;

/// Those that the library writes with a 32-bit length.
bool HasLongLength(std::string_view vr) {
  constexpr std::array<std::string_view, 6> kLong = {"OB", "OW", "OF", "SQ", "UT", "UN"};
  return std::find(kLong.begin(), kLong.end(), vr) != kLong.end();
}

/// Those with a 32-bit length by PS3.5 section 7.1.2 that the library writes with 16 bits.
bool IsMiswritten(std::string_view vr) {
  constexpr std::array<std::string_view, 7> kMiswritten = {"OD", "OL", "OV", "SV", "UC", "UR", "UV"};
  return std::find(kMiswritten.begin(), kMiswritten.end(), vr) != kMiswritten.end();
}

bool IsPrivateCreator(std::uint32_t tag) {
  constexpr std::uint32_t kFirst = 0x0010;
  constexpr std::uint32_t kLast = 0x00FF;
  return IsPrivate(tag) && ElementOf(tag) >= kFirst && ElementOf(tag) <= kLast;
}

bool FitsBytes(const std::optional<std::uint16_t>& bits) {
  return bits && *bits > 0 && *bits <= kBitsOfAByte;
}

std::string_view ResolvedXs(std::uint32_t tag, std::uint32_t length, const PixelDescription& description) {
  if (length > kLongestShortValue) return "OW";
  const bool is_table = tag == kLutData || tag == kGrayLookupTableData;
  return !is_table && description.pixel_representation == kSigned ? "SS" : "US";
}

std::string_view ResolvedOx(std::uint32_t tag, const PixelDescription& description) {
  const bool is_bytes = GroupOf(tag) == kWaveformGroup
                            ? FitsBytes(description.waveform_bits_allocated)
                            : tag == kPixelData && FitsBytes(description.bits_allocated);
  return is_bytes ? "OB" : "OW";
}

}  // namespace

bool IsPlaceholder(std::string_view vr) { return vr == "XS" || vr == "OX"; }

std::string_view StoredVr(std::uint32_t tag, std::string_view dictionary_vr, std::uint32_t length) {
  if (IsPrivateCreator(tag) && length <= kLongestShortValue) return "LO";
  if (IsPrivate(tag) || IsMiswritten(dictionary_vr) || dictionary_vr == "NA") return kUnknown;
  return length > kLongestShortValue && !HasLongLength(dictionary_vr) ? kUnknown : dictionary_vr;
}

std::string_view ResolvedVr(std::uint32_t tag, std::string_view placeholder, std::uint32_t length,
                            const PixelDescription& description) {
  return placeholder == "XS" ? ResolvedXs(tag, length, description) : ResolvedOx(tag, description);
}

}  // namespace emulator
