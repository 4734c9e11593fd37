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
constexpr std::size_t kOffsetColumns = 12;  // with the gap behind
constexpr std::size_t kFewestValueColumns = 16;
constexpr std::size_t kDeepestIndentation =
    40;  // columns; a data set of 100,000 levels must not print gigabytes

bool IsFragment(std::uint32_t item_tag) { return item_tag == kItem || item_tag == kSequenceDelimitation; }

/// Whether a value of the dictionary's VR may be encoded with this one: XS and OX stand for several. So does no VR, of
/// a tag that the dictionary does not hold.
bool IsEncodingOf(std::string_view dictionary_vr, std::string_view vr) {
  if (dictionary_vr == "XS") return vr == "XS" || vr == "US" || vr == "SS" || vr == "OW";
  if (dictionary_vr == "OX") return vr == "OX" || vr == "OB" || vr == "OW";
  return dictionary_vr.empty() || vr == dictionary_vr;
}

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
  pending_ = ElementLine(tag, vr, length);
  pending_->offset = offsets_.StartElement(vr, length);
  item_counts_.push_back(0);
}

void TreePrinter::EndElement(std::uint32_t) {
  PrintPending();
  offsets_.EndElement();
  if (!item_counts_.empty()) item_counts_.pop_back();
}

void TreePrinter::Data(std::uint32_t tag, std::uint32_t chunk, std::string_view bytes) {
  offsets_.Data(bytes.size());
  if (chunk != 1 || !pending_) return;
  scopes_.Observe(tag, bytes);
  pending_->value_start = bytes.substr(0, layout_.columns == 0 ? kUnlimitedPreviewBytes : kPreviewBytes);
}

void TreePrinter::StartSequence() { PrintPending(); }

void TreePrinter::EndSequence() { offsets_.EndSequence(); }

void TreePrinter::StartItem(std::uint32_t tag, std::uint32_t length) {
  PrintPending();
  const std::uint64_t offset = offsets_.StartItem();
  depth_ += 1;
  if (tag == kSequenceDelimitation || item_counts_.empty())
    return;  // the mark behind the fragments is no line
  const std::uint32_t number = ++item_counts_.back();
  if (IsFragment(tag)) {
    pending_ = FragmentLine(number, length);
    pending_->offset = offset;
    return;
  }
  output_.WriteLine(
      fmt::format("{}item {}  {}", Margin(offset), number, layout_.style.Faint(LengthText(length))));
  depth_ += 1;
  scopes_.EnterItem();
}

void TreePrinter::EndItem(std::uint32_t tag, std::uint32_t length) {
  PrintPending();
  offsets_.EndItem(IsFragment(tag), length);
  depth_ -= 1;
  if (IsFragment(tag)) return;
  depth_ -= 1;
  scopes_.LeaveItem();
}

TreePrinter::Line TreePrinter::ElementLine(std::uint32_t tag, std::string_view vr,
                                           std::uint32_t length) const {
  const DictionaryEntry entry = layout_.dictionary(tag);
  const std::string keyword = KeywordOf(tag, entry);
  const std::string_view resolved = scopes_.Resolve(tag, vr);
  std::string vr_text = PrintableAscii(resolved);
  if (!IsPrivate(tag) && !IsEncodingOf(entry.vr, vr)) vr_text += "/" + entry.vr;
  const std::string tag_text = DisplayTag(tag);
  const Style& style = layout_.style;
  return {fmt::format("{} {:<2} {}", style.Tag(tag_text), style.Vr(vr_text), style.Keyword(keyword)),
          tag_text.size() + 1 + std::max<std::size_t>(vr_text.size(), 2) + 1 + keyword.size(),
          std::string(resolved),
          length,
          {},
          0};
}

/// Private elements by the one who reserved their block.
std::string TreePrinter::KeywordOf(std::uint32_t tag, const DictionaryEntry& entry) const {
  if (!IsPrivate(tag)) return entry.keyword;
  if (IsPrivateCreator(tag)) return "(private creator)";
  const std::string creator = scopes_.PrivateCreatorOf(tag);
  return creator.empty() ? entry.keyword : fmt::format("({})", creator);
}

TreePrinter::Line TreePrinter::FragmentLine(std::uint32_t number, std::uint32_t length) {
  const std::string label = number == 1 ? "offset table" : fmt::format("fragment {}", number - 1);
  return {label, label.size(), "OB", length, {}, 0};
}

void TreePrinter::PrintPending() {
  if (!pending_) return;
  const Line line = *std::move(pending_);
  pending_.reset();
  const std::string margin = Margin(line.offset);
  const std::size_t used = margin.size() + line.label_columns;
  const std::size_t label_columns = kLabelColumns + (layout_.has_offsets ? kOffsetColumns : 0);
  const std::string gap(used < label_columns ? label_columns - used : 1, ' ');
  const std::string length = fmt::format("{:>{}}", LengthText(line.length), kLengthColumns);
  const std::size_t head_columns = used + gap.size() + kLengthColumns + 2;
  const bool is_whole = line.value_start.size() >= line.length || line.length == kUndefinedLength;
  const std::string value =
      PreviewOf({line.vr, scopes_.Characters(), ValueColumns(layout_.columns, head_columns), layout_.is_hex},
                line.value_start, is_whole);
  output_.WriteLine(fmt::format("{}{}{}{}{}{}", margin, line.label, gap, layout_.style.Faint(length),
                                value.empty() ? "" : "  ", value));
}

std::string TreePrinter::Margin(std::uint64_t offset) const {
  std::string indentation(std::min(2 * depth_, kDeepestIndentation), ' ');
  if (!layout_.has_offsets) return indentation;
  return fmt::format("{:>{}}  {}", offset, kOffsetColumns - 2, indentation);
}

}  // namespace emulator::tool
