#include "emulator/store/data_set_comparison.h"

#include <algorithm>
#include <vector>

#include "emulator/store/stored_vr.h"
#include "emulator/tag_text.h"
#include "emulator/transfer_syntax.h"

namespace emulator {
namespace {

using Entry = DataSetOutline::Entry;
using Kind = DataSetOutline::Kind;
using Entries = std::vector<Entry>;

/// The entries of one level: elements by tag, items and fragments as they come.
std::vector<std::size_t> Level(const Entries& entries, std::size_t first, std::size_t end) {
  std::vector<std::size_t> level;
  for (std::size_t at = first; at < end; at = entries[at].end) level.push_back(at);
  std::stable_sort(level.begin(), level.end(), [&entries](std::size_t left, std::size_t right) {
    return entries[left].tag < entries[right].tag;
  });
  return level;
}

class Comparison {
 public:
  Comparison(const DataSetOutline& source, const DataSetOutline& written)
      : source_(source.Entries()),
        written_(written.Entries()),
        source_is_implicit_(HasImplicitVr(source.TransferSyntax())),
        written_is_implicit_(HasImplicitVr(written.TransferSyntax())) {}

  std::optional<std::string> Run() {
    Enter(0, source_.size(), 0, written_.size());
    while (!levels_.empty()) {
      const std::string difference = CompareNext(levels_.back());
      if (!difference.empty()) return Path() + ": " + difference;
    }
    return std::nullopt;
  }

 private:
  struct LevelPair {
    std::vector<std::size_t> source;
    std::vector<std::size_t> written;
    std::size_t source_at = 0;  // behind the entry that is compared, whose levels lie above
    std::size_t written_at = 0;
    std::uint32_t tag = 0;  // of that entry
    Kind kind = Kind::kElement;
  };

  void Enter(std::size_t source, std::size_t source_end, std::size_t written, std::size_t written_end) {
    LevelPair pair;
    pair.source = Level(source_, source, source_end);
    pair.written = Level(written_, written, written_end);
    levels_.push_back(std::move(pair));
  }

  /// Has the pair of levels stand behind the entry at this place of one of them.
  static void Stand(LevelPair& pair, const Entry& entry, std::size_t& at) {
    pair.tag = entry.tag;
    pair.kind = entry.kind;
    ++at;
  }

  /// The entry at this place of a level; null behind the last one.
  static const Entry* EntryAt(const Entries& entries, const std::vector<std::size_t>& level, std::size_t at) {
    return at < level.size() ? &entries[level[at]] : nullptr;
  }

  /// Compares one pair of entries, and goes down into them, or up at the end of both levels; empty when there is no
  /// difference.
  std::string CompareNext(LevelPair& pair) {
    const Entry* const source = EntryAt(source_, pair.source, pair.source_at);
    const Entry* const written = EntryAt(written_, pair.written, pair.written_at);
    if (source != nullptr && (written == nullptr || source->tag < written->tag)) {
      Stand(pair, *source, pair.source_at);
      return "is missing in what was written";
    }
    if (written != nullptr && (source == nullptr || written->tag < source->tag)) {
      Stand(pair, *written, pair.written_at);
      return "was written, and is not in the source";
    }
    if (source == nullptr) {
      levels_.pop_back();
      return {};
    }
    Stand(pair, *source, pair.source_at);
    const std::size_t source_index = pair.source[pair.source_at - 1];
    const std::size_t written_index = pair.written[pair.written_at++];
    std::string difference = Difference(*source, *written);
    if (difference.empty()) Enter(source_index + 1, source->end, written_index + 1, written->end);
    return difference;
  }

  std::string Difference(const Entry& source, const Entry& written) const {
    if (source.kind != written.kind) return "holds fragments on one side and items on the other";
    if (source.kind == Kind::kElement && !VrsAgree(source, written)) {
      return "VR " + source.vr + ", but " + written.vr + " in what was written";
    }
    if (source.value.bytes != written.value.bytes) {
      return std::to_string(source.value.bytes) + " bytes, but " + std::to_string(written.value.bytes) +
             " in what was written";
    }
    return source.value == written.value ? "" : "another value in what was written";
  }

  bool VrsAgree(const Entry& source, const Entry& written) const {
    // A VR that is no text comes as an empty one; the dictionary's is written then.
    if (source.vr == written.vr || written_is_implicit_ || source.vr.empty()) return true;
    if (!source_is_implicit_) return false;
    if (source.vr == "XS") return written.vr == "US" || written.vr == "SS" || written.vr == "OW";
    if (source.vr == "OX") return written.vr == "OB" || written.vr == "OW";
    return written.vr == "UN" || (IsPrivate(source.tag) && written.vr == "LO");
  }

  /// Of the entry that was compared last. Levels of elements and of items take turns.
  std::string Path() const {
    std::string path;
    for (const LevelPair& pair : levels_) {
      const std::size_t number = std::max(pair.source_at, pair.written_at);
      if (pair.kind == Kind::kElement) {
        path += (path.empty() ? "" : " > ") + DisplayTag(pair.tag);
      } else {
        path += (pair.kind == Kind::kItem ? " item " : " fragment ") + std::to_string(number);
      }
    }
    return path;
  }

  const Entries& source_;
  const Entries& written_;
  bool source_is_implicit_;
  bool written_is_implicit_;
  std::vector<LevelPair> levels_;
};

}  // namespace

std::optional<std::string> FirstDifference(const DataSetOutline& source, const DataSetOutline& written) {
  return Comparison(source, written).Run();
}

}  // namespace emulator
