#include "emulator/store/data_set_outline.h"

#include "emulator/tag_text.h"

namespace emulator {

void ValueDigest::Add(std::string_view part) {
  constexpr std::uint64_t kFirstFactor = 0x100000001B3;
  constexpr std::uint64_t kSecondFactor = 0xFF51AFD7ED558CCD;
  bytes += part.size();
  for (const char byte : part) {
    const auto code = static_cast<unsigned char>(byte);
    first = (first ^ code) * kFirstFactor;
    second = (second + code + 1) * kSecondFactor;
    second ^= second >> 29U;
  }
}

void DataSetOutline::StartContent(std::string_view transfer_syntax) {
  transfer_syntax_ = transfer_syntax;
  entries_.clear();
  open_.clear();
  left_out_ = 0;
}

void DataSetOutline::StartElement(std::uint32_t tag, std::string_view vr, std::uint32_t /*length*/) {
  const bool is_meta = open_.empty() && GroupOf(tag) == kMetaGroup;
  const bool is_group_length = ElementOf(tag) == 0 && GroupOf(tag) != 0;
  if (left_out_ > 0 || is_meta || is_group_length) {
    ++left_out_;
  } else {
    Open({Kind::kElement, tag, std::string(vr), {}, 0});
  }
}

void DataSetOutline::EndElement(std::uint32_t /*tag*/) {
  if (left_out_ > 0) {
    --left_out_;
  } else {
    Close();
  }
}

void DataSetOutline::Data(std::uint32_t tag, std::uint32_t /*chunk*/, std::string_view bytes) {
  if (left_out_ == 0 && tag != kSequenceDelimitation) entries_[open_.back()].value.Add(bytes);
}

void DataSetOutline::StartItem(std::uint32_t tag, std::uint32_t /*length*/) {
  if (left_out_ > 0 || tag == kSequenceDelimitation) return;
  Open({tag == kItem ? Kind::kFragment : Kind::kItem, 0, {}, {}, 0});
}

void DataSetOutline::EndItem(std::uint32_t tag, std::uint32_t /*length*/) {
  if (left_out_ == 0 && tag != kSequenceDelimitation) Close();
}

void DataSetOutline::Open(Entry entry) {
  open_.push_back(entries_.size());
  entries_.push_back(std::move(entry));
}

void DataSetOutline::Close() {
  entries_[open_.back()].end = entries_.size();
  open_.pop_back();
}

}  // namespace emulator
