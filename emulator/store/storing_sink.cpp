#include "emulator/store/storing_sink.h"

#include <algorithm>
#include <array>

#include "emulator/host_error.h"
#include "emulator/store/store_error.h"
#include "emulator/tag_text.h"
#include "emulator/transfer_syntax.h"

namespace emulator {
namespace {

constexpr const char* kYes = "1";

bool IsGroupLength(std::uint32_t tag) {
  return ElementOf(tag) == 0 && GroupOf(tag) != 0 && GroupOf(tag) != kMetaGroup;
}

bool IsFragmentTag(std::uint32_t tag) { return tag == kItem || tag == kSequenceDelimitation; }

void AppendShort(std::uint32_t number, std::string& bytes) {
  bytes += static_cast<char>(static_cast<unsigned char>(number & 0xFFU));
  bytes += static_cast<char>(static_cast<unsigned char>(number >> 8U & 0xFFU));
}

/// Tag and length in front of a fragment, little endian as every syntax with fragments is.
std::string ItemHeader(std::uint32_t tag, std::uint32_t length) {
  std::string header;
  AppendShort(GroupOf(tag), header);
  AppendShort(ElementOf(tag), header);
  AppendShort(length & 0xFFFFU, header);
  AppendShort(length >> 16U, header);
  return header;
}

/// The VR, of which the library cuts off the rest anyway.
std::string_view FirstTwo(std::string_view vr) { return vr.substr(0, 2); }

}  // namespace

StoringSink::StoringSink(StoreTransaction& transaction, const std::string& id)
    : transaction_(transaction), nodes_(transaction.Nodes()), keys_(id), open_(1) {
  if (id.empty()) throw StoreError("a data set must have a name to be stored under");
  if (id.size() > kLongestId) throw StoreError("the name of the data set is longer than 255 bytes");
}

void StoringSink::StartContent(std::string_view transfer_syntax) {
  transfer_syntax_ = transfer_syntax;
  is_implicit_ = HasImplicitVr(transfer_syntax);
}

void StoringSink::EndContent() {
  placeholders_.Resolve(
      [this](std::int64_t node, std::string_view vr) { nodes_->SetKey(keys_.Element(node, kVrName), vr); });
  nodes_->SetKey(keys_.Meta(kSyntaxName), transfer_syntax_);
}

void StoringSink::StartElement(std::uint32_t tag, std::string_view vr, std::uint32_t length) {
  const Place place = PlaceOf(tag, vr);
  open_.push_back({0, place, 0, 0, 0, length == kUndefinedLength, false, false});
  if (place == Place::kMeta) {
    open_.back().node = tag;
    nodes_->SetKey(keys_.MetaElement(tag, kVrName), FirstTwo(vr));
  } else if (place != Place::kNowhere) {
    StartStoredElement(tag, FirstTwo(vr), length);
  }
}

StoringSink::Place StoringSink::PlaceOf(std::uint32_t tag, std::string_view vr) const {
  if (open_.back().place == Place::kNowhere) return Place::kNowhere;
  const bool is_top_level = open_.size() == 1;
  if (is_top_level && GroupOf(tag) == kMetaGroup) return Place::kMeta;
  if (IsGroupLength(tag)) return Place::kNowhere;
  return is_top_level && tag == kPixelData && vr != "SQ" ? Place::kPixels : Place::kNodes;
}

void StoringSink::StartStoredElement(std::uint32_t tag, std::string_view vr, std::uint32_t length) {
  const std::int64_t node = ++last_node_;
  LinkToParent(tag, node);
  open_.back().node = node;
  StoreVr(tag, vr, length, node);
  if (length == kUndefinedLength) nodes_->SetKey(keys_.Element(node, kLengthName), kYes);
  if (open_.back().place == Place::kPixels) StartPixels();
}

void StoringSink::LinkToParent(std::uint32_t tag, std::int64_t node) {
  OpenElement& parent = open_[open_.size() - 2];
  const std::string& key = keys_.Child(parent.node, parent.items, tag);
  const bool has_come = tag <= parent.highest_tag && nodes_->GetKey(key);
  if (has_come) throw StoreError(DisplayTag(tag) + " comes twice, and there is a place for one only");
  parent.highest_tag = std::max(parent.highest_tag, tag);
  nodes_->SetKey(key, std::to_string(node));
}

void StoringSink::StoreVr(std::uint32_t tag, std::string_view vr, std::uint32_t length, std::int64_t node) {
  if (is_implicit_ && IsPlaceholder(vr)) {
    placeholders_.Defer(tag, vr, length, node);
  } else {
    const bool is_sequence = vr == "SQ";
    const std::string_view kept = is_implicit_ && !is_sequence ? StoredVr(tag, vr, length) : vr;
    if (!kept.empty()) nodes_->SetKey(keys_.Element(node, kVrName), kept);
  }
}

void StoringSink::StartPixels() {
  const auto [name, stream] = transaction_.CreatePixels();
  pixels_ = stream;
  nodes_->SetKey(keys_.Meta(kPixelsName), name);
  if (open_.back().has_undefined_length) nodes_->SetKey(keys_.Meta(kFramedName), kYes);
}

void StoringSink::EndElement(std::uint32_t /*tag*/) {
  // The library does not tell of the end of the fragments when it is asked for simple frames.
  const OpenElement& element = open_.back();
  if (element.has_fragments && !element.is_delimited) StartFragment(kSequenceDelimitation, 0);
  open_.pop_back();
}

void StoringSink::Data(std::uint32_t tag, std::uint32_t chunk, std::string_view bytes) {
  if (tag == kSequenceDelimitation) return;  // says nothing new
  if (chunk == 1) placeholders_.Observe(tag, bytes);
  Keep(bytes);
}

void StoringSink::StartItem(std::uint32_t tag, std::uint32_t length) {
  OpenElement& element = open_.back();
  if (IsFragmentTag(tag)) {
    StartFragment(tag, length);
    return;
  }
  if (element.place == Place::kMeta) throw StoreError("an item in group 0002, where nothing can be nested");
  ++element.items;
  element.highest_tag = 0;
  placeholders_.EnterItem();
  if (element.place == Place::kNodes) nodes_->SetKey(keys_.Item(element.node, element.items), "");
}

void StoringSink::EndItem(std::uint32_t tag, std::uint32_t /*length*/) {
  if (!IsFragmentTag(tag)) placeholders_.LeaveItem();
}

void StoringSink::StartFragment(std::uint32_t tag, std::uint32_t length) {
  OpenElement& element = open_.back();
  element.has_fragments = true;
  element.is_delimited = tag == kSequenceDelimitation;
  if (element.place == Place::kNodes) nodes_->SetKey(keys_.Meta(kNestedName), kYes);
  Keep(ItemHeader(tag, length));
}

void StoringSink::Keep(std::string_view bytes) {
  switch (open_.back().place) {
    case Place::kNowhere:
      return;
    case Place::kPixels:
      KeepPixels(bytes);
      return;
    case Place::kMeta:
    case Place::kNodes:
      KeepChunk(bytes);
      return;
  }
}

void StoringSink::KeepPixels(std::string_view bytes) {
  if (bytes.empty()) return;
  try {
    pixels_->Call("Write", std::array<Value, 1>{std::string(bytes)});
  } catch (const HostError&) {
    throw StoreError("the pixel data cannot be written into the store");
  }
}

void StoringSink::KeepChunk(std::string_view bytes) {
  OpenElement& element = open_.back();
  const bool is_meta = element.place == Place::kMeta;
  const std::int64_t chunk = element.chunks++;
  const auto tag = static_cast<std::uint32_t>(element.node);
  if (chunk == 0) {
    nodes_->SetKey(is_meta ? keys_.MetaElement(tag, kDataName) : keys_.Element(element.node, kDataName),
                   bytes);
  } else {
    nodes_->SetKey(is_meta ? keys_.MetaChunk(tag, chunk) : keys_.Chunk(element.node, chunk), bytes);
  }
}

}  // namespace emulator
