#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "emulator/vessa/content_sink.h"
#include "emulator/vessa/data_set_scopes.h"
#include "emulator/vessa/output.h"
#include "emulator/vessa/style.h"

namespace emulator::tool {

struct TreeLayout {
  Style style;
  std::size_t columns;  ///< of a line; 0 for lines as long as they come
  /// The keyword of a tag, empty for one that has none.
  std::function<std::string(std::uint32_t tag)> keyword;
};

/// Prints a data set as a tree: a line an element (tag, VR, keyword, length, start of the value), the elements of an
/// item under it. Needs memory for the start of one value only.
class TreePrinter : public ContentSink {
 public:
  TreePrinter(Output& output, TreeLayout layout) : output_(output), layout_(std::move(layout)) {}

  /// Prints what is known of an element whose value does not come to its end.
  void Finish() { PrintPending(); }

  void StartContent(std::string_view) override {}
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
  };

  void PrintPending();
  Line ElementLine(std::uint32_t tag, std::string_view vr, std::uint32_t length) const;
  Line FragmentLine(std::uint32_t number, std::uint32_t length) const;
  std::string Indentation() const;

  Output& output_;
  TreeLayout layout_;
  DataSetScopes scopes_;
  std::optional<Line> pending_;
  std::size_t depth_ = 0;
  std::vector<std::uint32_t> item_counts_;  ///< of the open elements, outermost first
};

}  // namespace emulator::tool
