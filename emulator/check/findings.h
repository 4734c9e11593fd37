#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace emulator {

/// What makes a call that succeeds hand on something else than the file means, or what a host should know first.
enum class FindingKind {
  kExecutablePreamble,
  kEmptyDataSet,
  kUnpositioned,
  kWrongSyntax,
  kShortLengthVr,
  kUnknownVr,
  kPlaceholderVr,
  kUnorderedTags,
  kStrayTag,
  kZeroElements,
  kDelimiterLength,
  kOverrun,
  kUnendedItem,
};
inline constexpr std::size_t kFindingKinds = 13;

/// "short-length-vr"; a word for scripts.
const char* NameOf(FindingKind kind);
/// What it is and what the library makes of it, in a line.
const char* ExplanationOf(FindingKind kind);
std::optional<FindingKind> FindingNamed(std::string_view name);

struct Finding {
  std::uint64_t count = 0;
  std::uint64_t first_offset = 0;
  std::string first_path;
};

/// Findings by kind: the first place of each and how many there are, so that a file of any size needs no more memory.
class FindingList {
 public:
  /// `path` is asked for the first of a kind only.
  void Note(FindingKind kind, std::uint64_t offset, const std::function<std::string()>& path) {
    Finding& finding = findings_[static_cast<std::size_t>(kind)];
    if (finding.count++ > 0) return;
    finding.first_offset = offset;
    finding.first_path = path();
  }
  void Drop(FindingKind kind) { findings_[static_cast<std::size_t>(kind)] = {}; }

  const Finding& Of(FindingKind kind) const { return findings_[static_cast<std::size_t>(kind)]; }
  bool IsEmpty() const {
    return std::ranges::all_of(findings_, [](const Finding& finding) { return finding.count == 0; });
  }

 private:
  std::array<Finding, kFindingKinds> findings_;
};

}  // namespace emulator
