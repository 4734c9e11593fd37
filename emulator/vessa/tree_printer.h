#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "emulator/vessa/content_sink.h"
#include "emulator/vessa/data_set_scopes.h"
#include "emulator/vessa/dictionary.h"
#include "emulator/vessa/offset_follower.h"
#include "emulator/vessa/output.h"
#include "emulator/vessa/style.h"

namespace emulator::tool {

struct TreeLayout {
  Style style;
  std::size_t columns;  ///< of a line; 0 for lines as long as they come
  /// What the dictionary says of a tag; empty texts for one that it does not hold.
  std::function<DictionaryEntry(std::uint32_t tag)> dictionary;
  bool has_offsets = false;        ///< lines begin with the offset of the element or item
  bool is_hex = false;             ///< values in hexadecimal
  std::uint64_t first_offset = 0;  ///< of the first element in the file
};

/// Prints a data set as a tree: a line an element (tag, VR, keyword, length, start of the value), the elements of an
/// item under it. Needs memory for the start of one value only.
class TreePrinter : public ContentSink {
 public:
  TreePrinter(Output& output, TreeLayout layout)
      : output_(output), layout_(std::move(layout)), offsets_(layout_.first_offset) {}

  /// Prints what is known of an element whose value does not come to its end.
  void Finish() { PrintPending(); }

  void StartContent(std::string_view transfer_syntax) override { offsets_.StartContent(transfer_syntax); }
  void EndContent() override {}
  void StartElement(std::uint32_t tag, std::string_view vr, std::uint32_t length) override;
  void EndElement(std::uint32_t tag) override;
  void Data(std::uint32_t tag, std::uint32_t chunk, std::string_view bytes) override;
  void StartSequence() override;
  void EndSequence() override;
  void StartItem(std::uint32_t tag, std::uint32_t length) override;
  void EndItem(std::uint32_t tag, std::uint32_t length) override;

 private:
  /// A line that waits for the value that belongs on it: an element's or a fragment's.
  struct Line {
    std::string label;          ///< coloured
    std::size_t label_columns;  ///< of it, as a terminal counts
    std::string vr;
    std::uint32_t length;
    std::string value_start;
    std::uint64_t offset;
  };

  void PrintPending();
  Line ElementLine(std::uint32_t tag, std::string_view vr, std::uint32_t length) const;
  static Line FragmentLine(std::uint32_t number, std::uint32_t length);
  std::string KeywordOf(std::uint32_t tag, const DictionaryEntry& entry) const;
  /// What a line of an element or item begins with.
  std::string Margin(std::uint64_t offset) const;

  Output& output_;
  TreeLayout layout_;
  OffsetFollower offsets_;
  DataSetScopes scopes_;
  std::optional<Line> pending_;
  std::size_t depth_ = 0;
  std::vector<std::uint32_t> item_counts_;  ///< of the open elements, outermost first
};

}  // namespace emulator::tool
