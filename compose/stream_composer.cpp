#include "compose/stream_composer.h"

#include <algorithm>
#include <optional>

#include "compose/compose_exception.h"
#include "compose/swap_unit.h"
#include "compose/value_writer.h"
#include "dicom/byte_order.h"
#include "dicom/dictionary.h"
#include "dicom/transfer_syntax.h"
#include "platform/number_text.h"
#include "stream/binary_output_stream.h"

namespace vessa {

namespace {

/// Sends the writer's last, partial block to the host on every way out.
class FlushAtExit {
 public:
  explicit FlushAtExit(CVessaBinaryOutputStream& output) : output_{output} {}
  ~FlushAtExit() { output_.Flush(); }
  FlushAtExit(const FlushAtExit&) = delete;
  FlushAtExit& operator=(const FlushAtExit&) = delete;

 private:
  CVessaBinaryOutputStream& output_;
};

/// Keys are tags in decimal; all 32 bits count.
Tag TagOf(const std::string& key) { return Tag(static_cast<std::uint32_t>(ParseInteger64(key))); }

/// Fills in the dictionary's VR, placeholders included, where the content holds none.
void ResolveVr(Tag tag, Vr& vr) {
  if (!vr.IsEmpty()) return;
  const std::optional<Vr> known = LookupVr(tag);
  if (!known) throw CComposeException("ComposeStream: Unrecognized tag: %1", TagText(tag));
  vr = *known;
}

std::int32_t ValueSwapUnit(const TargetSyntax& syntax, Vr vr) {
  return syntax.SwapsBytes() && IsSwappedVr(vr) ? SwapUnitOf(vr) : 1;
}

}  // namespace

StreamComposer::StreamComposer(CContentSource& source, CVessaBinaryOutputStream& output,
                               std::string_view original_transfer_syntax, std::uint32_t pixel_data_oref,
                               bool simple_pixel_data_frames)
    : source_{source},
      output_{output},
      original_transfer_syntax_{original_transfer_syntax},
      pixel_data_{pixel_data_oref, simple_pixel_data_frames} {}

void StreamComposer::ComposeStream(std::string_view identifier, std::string_view transfer_syntax) {
  const FlushAtExit flush(output_);
  if (IsUnsupportedTransferSyntax(transfer_syntax)) {
    throw CComposeException("ComposeStream: Expected a supported transfer syntax, got: %1", transfer_syntax);
  }
  identifier_ = identifier;
  ElementWriter writer(output_, TargetSyntax(transfer_syntax, original_transfer_syntax_));
  std::string key;
  ContentElement element;
  while (source_.NextTagKey(key, element)) {
    const Tag tag = TagOf(key);
    ResolveVr(tag, element.vr);
    ComposeTopLevel(writer, tag, element);
  }
}

void StreamComposer::ComposeTopLevel(ElementWriter& writer, Tag tag, const ContentElement& element) {
  if (element.vr == kVrSQ) {
    ComposeSequence(writer, tag, element.node);
  } else if (tag == kPixelData) {
    ComposePixelData(writer, element);
  } else {
    ComposeElement(writer, tag, element);
  }
}

void StreamComposer::ComposePixelData(ElementWriter& writer, const ContentElement& element) {
  if (pixel_data_.oref == 0) {
    throw CComposeException("ComposePixelElement: No pixel data stream was passed to Compose");
  }
  const bool marked_undefined = source_.HasUndefinedLength(element.node);
  ComposePixelElement(writer, pixel_data_, element.vr, marked_undefined);
}

/// Writes a sequence with all that is nested in it.
void StreamComposer::ComposeSequence(ElementWriter& writer, Tag tag, std::int32_t node) {
  OpenSequenceElement(writer, tag, node);
  while (!open_.IsEmpty()) {
    if (open_.Innermost().in_item) {
      ContinueItem(writer);
    } else {
      ContinueSequence(writer);
    }
  }
}

void StreamComposer::OpenSequenceElement(ElementWriter& writer, Tag tag, std::int32_t node) {
  if (!open_.Open(node)) {
    throw CComposeException(
        "ComposeSequence: Element %1 is its own ancestor at reference " + Reference(node, "c"), TagText(tag));
  }
  writer.WriteSequenceStart(tag);
}

/// Starts the sequence's next item, or ends the sequence.
void StreamComposer::ContinueSequence(ElementWriter& writer) {
  OpenSequence& sequence = open_.Innermost();
  if (!source_.NextSequenceItemKey(sequence.node, sequence.item_key)) {
    writer.WriteSequenceEnd();
    open_.Close();
    return;
  }
  writer.WriteItemStart();
  sequence.in_item = true;
  sequence.tag_key.clear();
}

/// Writes the item's next element, or ends the item. Pixel Data is an element like any other here.
void StreamComposer::ContinueItem(ElementWriter& writer) {
  OpenSequence& sequence = open_.Innermost();
  ContentElement element;
  if (!source_.NextSequenceTagKey(sequence.item_key, sequence.tag_key, sequence.node, element)) {
    writer.WriteItemEnd();
    sequence.in_item = false;
    return;
  }
  const Tag tag = TagOf(sequence.tag_key);
  ResolveVr(tag, element.vr);
  if (element.vr == kVrSQ) {
    OpenSequenceElement(writer, tag, element.node);
  } else {
    ComposeElement(writer, tag, element);
  }
}

void StreamComposer::ComposeElement(ElementWriter& writer, Tag tag, const ContentElement& element) {
  writer.WriteTag(tag);
  const std::uint64_t length = source_.GetDataLength(element.node);
  writer.WriteVrAndLength(element.vr, length);
  if (CopyValue(writer, element, length) != length) {
    throw CComposeException(
        "ComposeElement: Data of element %1 do not have the length that was written at reference " +
            Reference(element.node, "d"),
        TagText(tag));
  }
  CollectSpecialTagInfo(tag, element.vr, length);
}

/// Copies the chunks of a value; never more than `length` bytes and the rest of a chunk.
/// @return  bytes that the chunks held
std::uint64_t StreamComposer::CopyValue(ElementWriter& writer, const ContentElement& element,
                                        std::uint64_t length) {
  ValueWriter value(writer, ValueSwapUnit(writer.Syntax(), element.vr));
  std::uint64_t copied = 0;
  std::span<std::uint8_t> chunk;
  std::string key;
  while (source_.GetNextDataChunk(element.node, key, chunk)) {
    if (copied < first_bytes_.size()) KeepFirstBytes(copied, chunk);
    copied += chunk.size();
    if (copied > length) break;
    value.Write(chunk);
  }
  value.Finish();
  return copied;
}

/// Keeps what belongs to the first two bytes of a value, of which the chunk starts at `offset`.
void StreamComposer::KeepFirstBytes(std::uint64_t offset, std::span<const std::uint8_t> chunk) {
  for (std::size_t at = 0; at < chunk.size() && offset + at < first_bytes_.size(); ++at) {
    first_bytes_[static_cast<std::size_t>(offset) + at] = chunk[at];
  }
}

void StreamComposer::CollectSpecialTagInfo(Tag tag, Vr vr, std::uint64_t length) {
  if (tag != kBitsAllocated) return;
  if (vr != kVrUS) {
    throw CComposeException(
        "CollectSpecialTagInfo: BitsAllocated (0028,0100) should have a VR of US, got: %1", vr.Text());
  }
  if (length != first_bytes_.size()) {
    throw CComposeException(
        "CollectSpecialTagInfo: BitsAllocated (0028,0100) data should have a length of 2");
  }
  const ByteOrder order = ByteOrderOf(original_transfer_syntax_);
  bits_allocated_ = static_cast<std::uint16_t>(ReadUnsigned(order, first_bytes_.size(), first_bytes_.data()));
}

std::string StreamComposer::Reference(std::int32_t node, std::string_view name) const {
  return "^KevDICOM.Data(" + identifier_ + "," + std::to_string(node) + ",\"" + std::string(name) + "\")";
}

}  // namespace vessa
