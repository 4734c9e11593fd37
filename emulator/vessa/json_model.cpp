#include "emulator/vessa/json_model.h"

#include <fmt/format.h>

#include <algorithm>

#include "emulator/vessa/json_value.h"
#include "emulator/vessa/tag_text.h"

namespace emulator::tool {
namespace {

constexpr std::size_t kDeepestIndentation =
    40;  // columns; a data set of 100,000 levels must not print gigabytes

bool IsGroupLength(std::uint32_t tag) { return (tag & 0xFFFFU) == 0; }

std::string LittleEndian(std::uint32_t value, unsigned bytes) {
  std::string text;
  for (unsigned index = 0; index < bytes; ++index)
    text.push_back(static_cast<char>((value >> (8U * index)) & 0xFFU));
  return text;
}

/// An item's tag and length as they stand in the stream.
std::string ItemHeader(std::uint32_t length) {
  return LittleEndian(kItem >> 16U, 2) + LittleEndian(kItem & 0xFFFFU, 2) + LittleEndian(length, 4);
}

}  // namespace

void JsonModel::Begin() { output_.Write("{"); }

void JsonModel::Finish() { output_.Write(members_.front() > 0 ? "\n}\n" : "}\n"); }

bool JsonModel::IsLeftOut(std::uint32_t tag) const {
  return left_out_ > 0 || IsGroupLength(tag) || (members_.size() == 1 && GroupOf(tag) == kMetaGroup);
}

void JsonModel::StartElement(std::uint32_t tag, std::string_view vr, std::uint32_t) {
  if (IsLeftOut(tag)) {
    ++left_out_;
    return;
  }
  element_ = {FindValueRepresentation(scopes_.Resolve(tag, vr)), {}, false, false, tag, {}};
  output_.Write(
      fmt::format("{}\n{}\"{}\": {{", members_.back() > 0 ? "," : "", Indentation(), PlainTag(tag)));
  ++members_.back();
  items_.push_back(0);
}

void JsonModel::Data(std::uint32_t tag, std::uint32_t chunk, std::string_view bytes) {
  if (left_out_ > 0) return;
  if (chunk == 1) scopes_.Observe(tag, bytes);
  if (tag == kSequenceDelimitation) return;  // marks the end of the fragments
  if (element_.vr.kind == ValueKind::kBytes) {
    AppendBytes(bytes);
  } else {
    element_.value += bytes;
  }
}

void JsonModel::BeginBytes() {
  if (element_.has_open_value) return;
  element_.has_open_value = true;
  element_.is_bulk = bulk_ != nullptr;
  output_.Write(fmt::format(R"("vr": "{}", )", element_.vr.name));
  output_.Write(element_.is_bulk ? fmt::format(R"("BulkDataURI": "{})", bulk_->Begin(element_.tag))
                                 : std::string(R"("InlineBinary": ")"));
}

void JsonModel::AppendBytes(std::string_view bytes) {
  if (bytes.empty()) return;
  BeginBytes();
  if (element_.is_bulk) return bulk_->Write(bytes);
  std::string text;
  element_.encoder.Append(bytes, text);
  output_.Write(text);
}

void JsonModel::EndElement(std::uint32_t) {
  if (left_out_ > 0) {
    --left_out_;
    return;
  }
  if (items_.back() > 0) {
    output_.Write("]}");
  } else {
    CloseValue();
    output_.Write("}");
  }
  items_.pop_back();
}

void JsonModel::CloseValue() {
  if (!element_.has_open_value) PrintValues();
  if (!element_.has_open_value) return;
  std::string text;
  if (element_.is_bulk) {
    bulk_->Finish();
  } else {
    element_.encoder.Finish(text);
  }
  output_.Write(text + "\"");
}

void JsonModel::PrintValues() {
  const auto values = JsonValuesOf(element_.vr, element_.value, scopes_.Characters());
  if (!values && !element_.value.empty()) {  // no values of this VR, but the bytes must not get lost
    element_.vr = FindValueRepresentation("UN");
    AppendBytes(element_.value);
    return;
  }
  output_.Write(fmt::format(R"("vr": "{}")", element_.vr.name));
  if (values && !values->array.empty()) output_.Write(fmt::format(R"(, "Value": {})", values->array));
  if (values && values->has_unread_text) ++unread_texts_;
}

void JsonModel::StartItem(std::uint32_t tag, std::uint32_t length) {
  if (left_out_ > 0) return;
  if (tag == kItem) AppendBytes(ItemHeader(length));
  if (tag == kItem || tag == kSequenceDelimitation) return;
  output_.Write(items_.back() == 0 ? R"("vr": "SQ", "Value": [{)" : ", {");
  ++items_.back();
  members_.push_back(0);
  scopes_.EnterItem();
}

void JsonModel::EndItem(std::uint32_t tag, std::uint32_t) {
  if (left_out_ > 0 || tag == kItem || tag == kSequenceDelimitation) return;
  const bool is_empty = members_.back() == 0;
  members_.pop_back();
  output_.Write(is_empty ? "}" : "\n" + Indentation() + "}");
  scopes_.LeaveItem();
}

/// A data set is open inside each open item, and an element around each of those but the outermost.
void JsonModel::CloseAll() {
  left_out_ = 0;
  for (;;) {
    if (items_.size() == members_.size()) {
      EndElement(0);
    } else if (members_.size() > 1) {
      EndItem(0, 0);
    } else {
      return;
    }
  }
}

std::string JsonModel::Indentation() const {
  return std::string(std::min(2 * members_.size(), kDeepestIndentation), ' ');
}

}  // namespace emulator::tool
