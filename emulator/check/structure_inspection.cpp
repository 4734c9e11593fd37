// What a StructureWalk notes about elements that the library accepts.

#include <algorithm>
#include <array>

#include "emulator/check/structure_walk.h"
#include "emulator/tag_text.h"

namespace emulator {
namespace {

constexpr std::uint64_t kPreambleBytes = 128;
constexpr std::uint32_t kDelimiterGroup = 0xFFFE;

/// PS3.5 section 6.2.
constexpr std::array<std::string_view, 34> kVrs = {
    "AE", "AS", "AT", "CS", "DA", "DS", "DT", "FD", "FL", "IS", "LO", "LT", "OB", "OD", "OF", "OL", "OV",
    "OW", "PN", "SH", "SL", "SQ", "SS", "ST", "SV", "TM", "UC", "UI", "UL", "UN", "UR", "US", "UT", "UV"};

/// PS3.5 section 7.1.2 has a 4-byte length for them, the library has one of 2 bytes.
constexpr std::array<std::string_view, 7> kShortened = {"OD", "OL", "OV", "SV", "UC", "UR", "UV"};

template <std::size_t kSize>
bool Holds(const std::array<std::string_view, kSize>& vrs, std::string_view vr) {
  return std::binary_search(vrs.begin(), vrs.end(), vr);
}

bool BelongsInNoDataSet(std::uint32_t tag) {
  return GroupOf(tag) == 0 || GroupOf(tag) == kMetaGroup || GroupOf(tag) == kDelimiterGroup;
}

/// The two bytes behind the tag, where an explicit syntax has the VR.
std::string VrPlace(std::uint32_t length) {
  return {static_cast<char>(length & 0xFFU), static_cast<char>(length >> 8U & 0xFFU)};
}

}  // namespace

/// Before the element's own events, its header read.
void StructureWalk::Inspect(const Header& header) {
  if (extent_ == Extent::kAll && open_.empty() && !last_tag_) InspectFirst(header);
  InspectVr(header);
  InspectOrder(header);
}

/// A wrong start makes everything that follows doubtful, so it is told alone.
void StructureWalk::InspectFirst(const Header& header) {
  const std::uint64_t taken = cursor_.Offset() - header.offset;
  const bool is_preamble = header.tag == 0 && cursor_.BytesAt(kPreambleBytes - taken, 4) == "DICM";
  if (is_preamble || GroupOf(header.tag) == kMetaGroup) {
    Note(FindingKind::kUnpositioned, header.offset);
    is_misread_ = true;
  } else if (has_implicit_vrs_ ? Holds(kVrs, VrPlace(header.length))
                               : !Holds(kVrs, header.vr) && header.tag != 0) {
    Note(FindingKind::kWrongSyntax, header.offset);
    is_misread_ = true;
  }
}

void StructureWalk::InspectVr(const Header& header) {
  if (has_implicit_vrs_) {
    if (header.vr == "OX" || header.vr == "XS") Note(FindingKind::kPlaceholderVr, header.offset);
  } else if (Holds(kShortened, header.vr)) {
    Note(FindingKind::kShortLengthVr, header.offset);
    is_misread_ = true;
  } else if (!Holds(kVrs, header.vr) && header.tag != 0) {
    Note(FindingKind::kUnknownVr, header.offset);
  }
}

void StructureWalk::InspectOrder(const Header& header) {
  std::optional<std::uint32_t>& last = open_.empty() ? last_tag_ : open_.back().last_tag;
  if (header.tag == 0) {
    Note(FindingKind::kZeroElements, header.offset);
  } else if (extent_ == Extent::kAll && BelongsInNoDataSet(header.tag)) {
    Note(FindingKind::kStrayTag, header.offset);
  } else if (last && header.tag <= *last) {
    Note(FindingKind::kUnorderedTags, header.offset);
  }
  last = header.tag;
}

}  // namespace emulator
