#include "emulator/vessa/tree_printer.h"

#include <fmt/format.h>

#include <algorithm>

#include "emulator/vessa/printable_text.h"
#include "emulator/vessa/tag_text.h"
#include "emulator/vessa/value_preview.h"

namespace emulator::tool {
namespace {

constexpr std::size_t kLabelColumns = 52;
constexpr std::size_t kLengthColumns = 9;
constexpr std::size_t kFewestValueColumns = 16;
constexpr std::size_t kDeepestIndentation =
    40;  // columns; a data set of 100,000 levels must not print gigabytes

bool IsFragment(std::uint32_t item_tag) { return item_tag == kItem || item_tag == kSequenceDelimitation; }

std::string LengthText(std::uint32_t length) {
  return length == kUndefinedLength ? "undefined" : fmt::format("{}", length);
}

std::size_t ValueColumns(std::size_t line_columns, std::size_t head_columns) {
  if (line_columns == 0) return 0;
  return line_columns > head_columns + kFewestValueColumns ? line_columns - head_columns
                                                           : kFewestValueColumns;
}

}  // namespace

void TreePrinter::StartElement(std::uint32_t tag, std::string_view vr, std::uint32_t length) {
  pending_ = ElementLine(tag, scopes_.Resolve(tag, vr), length);
  item_counts_.push_back(0);
}

void TreePrinter::EndElement(std::uint32_t) {
  PrintPending();
  if (!item_counts_.empty()) item_counts_.pop_back();
}

void TreePrinter::Data(std::uint32_t tag, std::uint32_t chunk, std::string_view bytes) {
  if (chunk != 1 || !pending_) return;
  scopes_.Observe(tag, bytes);
  pending_->value_start = bytes.substr(0, kPreviewBytes);
}

void TreePrinter::StartSequence() { PrintPending(); }

void TreePrinter::EndSequence() {}

void TreePrinter::StartItem(std::uint32_t tag, std::uint32_t length) {
  PrintPending();
  depth_ += 1;
  if (tag == kSequenceDelimitation || item_counts_.empty())
    return;  // the mark behind the fragments is no line
  const std::uint32_t number = ++item_counts_.back();
  if (IsFragment(tag)) {
    pending_ = FragmentLine(number, length);
    return;
  }
  output_.WriteLine(
      fmt::format("{}item {}  {}", Indentation(), number, layout_.style.Faint(LengthText(length))));
  depth_ += 1;
  scopes_.EnterItem();
}

void TreePrinter::EndItem(std::uint32_t tag, std::uint32_t) {
  PrintPending();
  depth_ -= 1;
  if (IsFragment(tag)) return;
  depth_ -= 1;
  scopes_.LeaveItem();
}

TreePrinter::Line TreePrinter::ElementLine(std::uint32_t tag, std::string_view vr,
                                           std::uint32_t length) const {
  const std::string keyword = layout_.keyword(tag);
  const std::string safe_vr = PrintableAscii(vr);
  const std::string tag_text = DisplayTag(tag);
  const Style& style = layout_.style;
  return {fmt::format("{} {:<2} {}", style.Tag(tag_text), style.Vr(safe_vr), style.Keyword(keyword)),
          tag_text.size() + 1 + std::max<std::size_t>(safe_vr.size(), 2) + 1 + keyword.size(),
          std::string(vr),
          length,
          {}};
}

TreePrinter::Line TreePrinter::FragmentLine(std::uint32_t number, std::uint32_t length) const {
  const std::string label = number == 1 ? "offset table" : fmt::format("fragment {}", number - 1);
  return {label, label.size(), "OB", length, {}};
}

void TreePrinter::PrintPending() {
  if (!pending_) return;
  const Line line = *std::move(pending_);
  pending_.reset();
  const std::string indentation = Indentation();
  const std::size_t used = indentation.size() + line.label_columns;
  const std::string gap(used < kLabelColumns ? kLabelColumns - used : 1, ' ');
  const std::string length = fmt::format("{:>{}}", LengthText(line.length), kLengthColumns);
  const std::size_t head_columns = used + gap.size() + kLengthColumns + 2;
  const bool is_whole = line.value_start.size() >= line.length || line.length == kUndefinedLength;
  const std::string value =
      PreviewOf({line.vr, scopes_.Characters(), ValueColumns(layout_.columns, head_columns)},
                line.value_start, is_whole);
  output_.WriteLine(fmt::format("{}{}{}{}{}{}", indentation, line.label, gap, layout_.style.Faint(length),
                                value.empty() ? "" : "  ", value));
}

std::string TreePrinter::Indentation() const {
  return std::string(std::min(2 * depth_, kDeepestIndentation), ' ');
}

}  // namespace emulator::tool
