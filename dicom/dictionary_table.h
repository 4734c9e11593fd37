#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "dicom/tag.h"
#include "dicom/vr.h"

namespace vessa {

// The data dictionary as constant data: PS3.6 edition 2022a with the command elements of PS3.7. The tables
// are made from registry.tsv by scripts/generate_dictionary.py; change the registry, never the tables.

/// One attribute.
struct DictionaryRow {
  Tag tag;                    ///< of a repeating group: its canonical member, such as 60FF3000
  std::string_view tag_text;  ///< 8 upper-case hexadecimal digits
  std::string_view keyword;
  Vr vr;  ///< XS for US or SS, OX for OB or OW, NA for items and delimiters
  std::string_view vm;
};

inline constexpr std::size_t kDictionaryRows = 4993;
/// The rows that a keyword can find: they come first, sorted by keyword. The others, which are those of the
/// repeating groups and those without a keyword of their own, follow in tag order.
inline constexpr std::size_t kKeywordRows = 4899;

extern const std::array<DictionaryRow, kDictionaryRows> kDictionaryTable;

/// One entry of the tag index. The VR is a copy of the row's, so that a look-up of a VR needs no row; it is
/// never empty, but kept in the shape of the answer, so that it is copied in one piece.
struct TagIndexPair {
  std::uint32_t tag = 0;
  std::uint16_t row = 0;
  std::optional<Vr> vr;
};

inline constexpr std::uint32_t kTagIndexBuckets = 41227;

/// The lists of all buckets, one after the other in bucket order.
extern const std::array<TagIndexPair, kDictionaryRows> kTagIndexPairs;

}  // namespace vessa
