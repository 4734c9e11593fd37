#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "dicom/tag.h"
#include "dicom/vr.h"

namespace vessa {

/// What the data dictionary (PS3.6) says of one tag.
struct TagEntry {
  std::string tag_text;  ///< 8 hexadecimal digits; of the tag as asked, also in a repeating group
  std::string_view keyword;
  Vr vr;  ///< placeholders XS, OX and NA where the standard allows several or none
  std::string_view vm;
  std::string_view note;  ///< "(private)" for private tags, else empty
};

/// Fills the tag index on the first call and does nothing on later ones. Call it before any look-up.
void InitialiseDictionary();

/// Private tags are always found; a member of a repeating group is found by its group's row.
std::optional<TagEntry> LookupTag(Tag tag);

/// The VR alone, without a copy: what `LookupTag` would say; empty optional for an unknown tag.
std::optional<Vr> LookupVr(Tag tag);

inline constexpr Tag kTagNotFound{0xFFFFFFFFU};

/// The tag of a keyword, case significant; `kTagNotFound` where there is none, for repeating groups and for
/// four keywords that are refused by design.
Tag LookupKeyword(std::string_view keyword);

}  // namespace vessa
