#include "dicom/dictionary.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "dicom/dictionary_table.h"
#include "dicom/private_tag.h"
#include "dicom/repeating_group.h"

namespace vessa {
namespace {

/// The list of bucket b is the pairs from g_first_pair[b] up to g_first_pair[b + 1]. All zero, that is all
/// lists empty, until it is filled.
constinit std::array<std::uint16_t, kTagIndexBuckets + 1> g_first_pair{};

/// 32-bit FNV-1a over the four bytes of the tag, the lowest first.
constexpr std::uint32_t BucketOf(Tag tag) {
  constexpr std::uint32_t kOffsetBasis = 0x811C9DC5;
  constexpr std::uint32_t kPrime = 16777619;
  std::uint32_t hash = kOffsetBasis;
  for (unsigned shift = 0; shift < 32; shift += 8) {
    hash ^= tag.Value() >> shift & 0xFF;
    hash *= kPrime;
  }
  return hash % kTagIndexBuckets;
}

bool FillBuckets() {
  std::uint32_t bucket = 0;
  for (std::size_t pair = 0; pair < kTagIndexPairs.size(); ++pair) {
    for (const std::uint32_t own = BucketOf(Tag{kTagIndexPairs[pair].tag}); bucket <= own; ++bucket) {
      g_first_pair[bucket] = static_cast<std::uint16_t>(pair);
    }
  }
  for (; bucket <= kTagIndexBuckets; ++bucket) g_first_pair[bucket] = kTagIndexPairs.size();
  return true;
}

/// Null when the tag has no row. The last pair of a bucket wins.
const TagIndexPair* FindPair(Tag canonical) {
  const std::uint32_t bucket = BucketOf(canonical);
  const std::size_t first = g_first_pair[bucket];
  for (std::size_t next = g_first_pair[bucket + 1]; next > first; --next) {
    if (kTagIndexPairs[next - 1].tag == canonical.Value()) return &kTagIndexPairs[next - 1];
  }
  return nullptr;
}

/// Never empty; the two answers stand ready, so that they are copied in one piece.
const std::optional<Vr>& PrivateVr(Tag tag) {
  static constexpr std::optional<Vr> kCreator = kPrivateCreatorVr;
  static constexpr std::optional<Vr> kElement = kPrivateElementVr;
  return IsPrivateCreator(tag) ? kCreator : kElement;
}

/// Elements whose keyword stands in the standard but is refused to hosts, which have always been answered so.
constexpr bool IsRefusedByKeyword(Tag tag) {
  constexpr Tag kMagnificationType{0x2010, 0x0060};
  constexpr Tag kBeamOrderIndex{0x0074, 0x1324};
  constexpr Tag kDoubleExposureMeterset{0x0074, 0x1338};
  constexpr Tag kDoubleExposureFieldDelta{0x0074, 0x133A};
  return tag == kMagnificationType || tag == kBeamOrderIndex || tag == kDoubleExposureMeterset ||
         tag == kDoubleExposureFieldDelta;
}

}  // namespace

void InitialiseDictionary() { [[maybe_unused]] static const bool filled = FillBuckets(); }

std::optional<TagEntry> LookupTag(Tag tag) {
  if (tag.IsPrivate()) {
    return TagEntry{PrivateTagText(tag), kPrivateNote, *PrivateVr(tag), "1", kPrivateNote};
  }
  const Tag canonical = CanonicalTag(tag);
  const TagIndexPair* const pair = FindPair(canonical);
  if (pair == nullptr) return std::nullopt;
  const DictionaryRow& row = kDictionaryTable[pair->row];
  return TagEntry{
      tag == canonical ? std::string(row.tag_text) : TagText(tag), row.keyword, row.vr, row.vm, {}};
}

std::optional<Vr> LookupVr(Tag tag) {
  if (tag.IsPrivate()) return PrivateVr(tag);
  const TagIndexPair* const pair = FindPair(CanonicalTag(tag));
  return pair != nullptr ? pair->vr : std::nullopt;
}

Tag LookupKeyword(std::string_view keyword) {
  const auto end = kDictionaryTable.begin() + kKeywordRows;
  const auto row = std::lower_bound(
      kDictionaryTable.begin(), end, keyword,
      [](const DictionaryRow& candidate, std::string_view wanted) { return candidate.keyword < wanted; });
  if (row == end || row->keyword != keyword || IsRefusedByKeyword(row->tag)) return kTagNotFound;
  return row->tag;
}

}  // namespace vessa
