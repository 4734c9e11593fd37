#include "decompose/stream_decomposer.h"

#include <algorithm>
#include <array>
#include <string>

#include "decompose/four_bytes.h"
#include "decompose/refusal.h"
#include "decompose/stop_question.h"
#include "dicom/dictionary.h"
#include "dicom/transfer_syntax.h"

namespace vessa {
namespace {

constexpr std::uint32_t kNoClient = 0;

bool AllowsUndefinedLength(Vr vr) {
  return vr == kVrSQ || vr == kVrUN || vr == kVrOB || vr == kVrOW || vr == kVrNA;
}

void RequireSoundLength(Vr vr, std::uint32_t length) {
  if (length == kUndefinedLength) {
    if (AllowsUndefinedLength(vr)) return;
    Refuse(
        "DecomposeElement reading VR and data length: Element specifies undefined length but VR '%1' does "
        "not allow it",
        vr.Text());
  }
  if (length % 2 != 0) {
    Refuse("DecomposeElement reading VR and data length: Datalength is an odd number");
  }
}

}  // namespace

StreamDecomposer::StreamDecomposer(CVessaInputStream& stream, CContentHandlerInterface& handler,
                                   const std::uint32_t& client_oref, bool simple_pixel_data_frames)
    : stream_{stream},
      handler_{handler},
      client_oref_{client_oref},
      simple_pixel_data_frames_{simple_pixel_data_frames} {}

Status StreamDecomposer::DecomposeStream(std::string_view transfer_syntax) {
  if (IsUnsupportedTransferSyntax(transfer_syntax)) {
    Refuse("DecomposeStream: Expected a supported transfer syntax, got: %1", transfer_syntax);
  }
  transfer_syntax_ = transfer_syntax;
  byte_order_ = ByteOrderOf(transfer_syntax);
  if (!IsExplicitVRTransferSyntax(transfer_syntax)) {
    InitialiseDictionary();
    implicit_vrs_.emplace();
  }

  try {
    handler_.Reset();
    RaiseIfNegative(handler_.StartContent(transfer_syntax));
    DecomposeDataSet();
    RaiseIfNegative(handler_.EndContent());
  } catch (const CSuccessException&) {  // NOLINT(bugprone-empty-catch): the handler has its answer
    // Caught this far in, because every function that an exception passes has its cost.
  }
  return kSuccess;
}

/// The elements of the top level, and of every sequence that is opened on the way.
void StreamDecomposer::DecomposeDataSet() {
  while (DecomposeElements(ElementLoop::kUntilEnd) == Progress::kOpened) {
    while (!open_.empty()) {
      if (open_.back().in_item) {
        DecomposeElementsOfItem();
      } else {
        DecomposeSequence();
      }
    }
  }
}

StreamDecomposer::Progress StreamDecomposer::DecomposeElements(ElementLoop mode) {
  for (;;) {
    const Progress progress = DecomposeElement(mode);
    if (progress != Progress::kWhole) return progress;
  }
}

StreamDecomposer::Progress StreamDecomposer::DecomposeElementsUpTo(std::int64_t end) {
  while (stream_.GetPosition() < end) {
    const Progress progress = DecomposeElement(ElementLoop::kUntilEnd);
    // Kept on purpose: the end of the stream ends nothing here. A stream that ends inside a defined length,
    // between two elements, is peeked at for ever.
    if (progress == Progress::kOpened || progress == Progress::kDone) return progress;
  }
  return Progress::kDone;
}

// VR and length, in stream order:
//   VR        2 bytes   two letters; absent in implicit syntaxes
//   reserved  2 bytes   only between a VR and a 4-byte length
//   length    2 or 4    bytes of value, or kUndefinedLength
inline StreamDecomposer::VRAndLength StreamDecomposer::ReadVRAndLength(Tag tag) {
  VRAndLength header;
  if (implicit_vrs_) {
    header.vr = implicit_vrs_->Find(tag);
    header.length = ReadLength();
  } else {
    const FourBytes start = ReadFourBytes(stream_);  // the VR, and the reserved bytes or a 2-byte length
    header.vr = Vr(static_cast<char>(start[0]), static_cast<char>(start[1]));
    header.length = HasLongLength(header.vr) ? ReadLength() : ReadUnsigned(byte_order_, 2, start.data() + 2);
  }
  RequireSoundLength(header.vr, header.length);
  return header;
}

/// A short value is handed on where it lies.
inline void StreamDecomposer::DeliverData(Tag tag, std::uint32_t length) {
  if (length > kValueChunkBytes || !stream_.CanTake(length)) return DeliverChunks(tag, length);
  const std::span<const std::uint8_t> value = stream_.AtHand().first(length);
  stream_.Take(length);
  RaiseIfNegative(handler_.Data(tag, 1, value));
}

void StreamDecomposer::DeliverChunks(Tag tag, std::uint32_t length) {
  static std::array<std::uint8_t, kValueChunkBytes> chunk;
  if (length == 0) {
    RaiseIfNegative(handler_.Data(tag, 1, {}));
    return;
  }
  if (!handler_.WantsValue(tag) && stream_.PassOver(length)) return;
  std::uint32_t chunk_number = 1;
  for (std::size_t remaining = length; remaining > 0; ++chunk_number) {
    const std::span<std::uint8_t> bytes = std::span(chunk).first(std::min(remaining, chunk.size()));
    RaiseIfNegative(stream_.Read(bytes));
    RaiseIfNegative(handler_.Data(tag, chunk_number, bytes));
    remaining -= bytes.size();
  }
}

// Element, in stream order:
//   tag      4 bytes   group, element
//   VR and length      see ReadVRAndLength; also behind delimitation tags
//   value    length bytes, or items up to a delimitation
StreamDecomposer::Progress StreamDecomposer::DecomposeElement(ElementLoop mode) {
  FourBytes tag_bytes;
  if (!PeekFourBytes(stream_, tag_bytes)) return Progress::kAtEnd;
  const Tag tag = ReadTag(byte_order_, tag_bytes);
  if (client_oref_ != kNoClient && ShouldStopDecomposition(client_oref_, tag)) return Progress::kDone;

  SkipFourBytes(stream_);
  const auto [vr, length] = ReadVRAndLength(tag);
  if (tag == kItem) Refuse("Expected [Item Delimitation] or element, got [Item]");
  if (tag == kItemDelimitation) {
    if (mode == ElementLoop::kUntilItemDelimitation) return Progress::kDone;
    Refuse("DecomposeElement: caller did not expect [Item Delimitation]");
  }
  if (tag == kSequenceDelimitation) {
    Refuse("Expected [Item Delimitation] or element, got [Sequence Delimitation Item]");
  }

  RaiseIfNegative(handler_.StartElement(tag, vr, length));
  if (vr == kVrSQ) {
    if (StartSequence(tag, length) == Progress::kOpened) return Progress::kOpened;
  } else if (length != kUndefinedLength) {
    DeliverData(tag, length);
  } else {
    DecomposeData_UndefLength(tag, vr);
  }
  RaiseIfNegative(handler_.EndElement(tag));
  return Progress::kWhole;
}

/// @return  kOpened, or kWhole for a sequence of length 0 that the handler does not want to hear of
StreamDecomposer::Progress StreamDecomposer::StartSequence(Tag tag, std::uint32_t length) {
  if (length == 0 && !handler_.WantsEmptySequences()) return Progress::kWhole;
  RaiseIfNegative(handler_.StartSequence(tag));
  open_.push_back({tag, length, stream_.GetPosition() + length, 0, false, 0});
  return Progress::kOpened;
}

/// Goes on with the innermost sequence: opens its next item, or ends the sequence and its element.
StreamDecomposer::Progress StreamDecomposer::DecomposeSequence() {
  OpenSequence& sequence = open_.back();
  if (sequence.length == kUndefinedLength) {
    if (DecomposeItem(sequence, ItemLoop::kUntilSequenceDelimitation) != Progress::kDone) {
      return Progress::kOpened;
    }
  } else if (stream_.GetPosition() < sequence.end) {
    if (DecomposeItem(sequence, ItemLoop::kUntilPosition) != Progress::kDone) return Progress::kOpened;
    Refuse(  // a second guard: DecomposeItem does not let it come to this
        "DecomposeSequence: [Sequence Delimitation Item] encountered while decomposing a length-encoded "
        "sequence");
  }
  RaiseIfNegative(handler_.EndSequence());
  RaiseIfNegative(handler_.EndElement(sequence.tag));
  open_.pop_back();
  return Progress::kWhole;
}

/// Opens the next item of a sequence.
/// @return  kOpened, or kDone at the delimitation that ends the sequence; its length is not looked at
StreamDecomposer::Progress StreamDecomposer::DecomposeItem(OpenSequence& sequence, ItemLoop mode) {
  const auto [tag, length] = ReadTagAndLength();
  if (tag == kSequenceDelimitation) {
    if (mode == ItemLoop::kUntilSequenceDelimitation) return Progress::kDone;
    Refuse("DecomposeItem: caller did not expect [Sequence Delimitation Item]");
  }
  if (tag != kItem) {
    Refuse("DecomposeItem: Expected [Item] or [Sequence Delimitation Item], got: %1", TagText(tag));
  }
  RaiseIfNegative(handler_.StartItem(sequence.tag, length));
  sequence.in_item = true;
  sequence.item_length = length;
  sequence.item_end = stream_.GetPosition() + length;
  return Progress::kOpened;
}

/// Goes on with the innermost item: reads its elements up to one that opens a sequence, or ends the item.
void StreamDecomposer::DecomposeElementsOfItem() {
  const OpenSequence item = open_.back();
  const Progress progress = item.item_length == kUndefinedLength
                                ? DecomposeElements(ElementLoop::kUntilItemDelimitation)
                                : DecomposeElementsUpTo(item.item_end);
  if (progress == Progress::kOpened) return;
  open_.back().in_item = false;
  RaiseIfNegative(handler_.EndItem(item.tag, item.item_length));
}

/// Encapsulated pixel data (PS3.5 annex A.4).
void StreamDecomposer::DecomposeData_UndefLength(Tag tag, Vr vr) {
  if (!IsEncapsulatedTransferSyntax(transfer_syntax_)) {
    Refuse("DecomposeData_UndefLength: Expected an encapsulated transfer syntax, got: %1", transfer_syntax_);
  }
  if (tag != kPixelData) {
    Refuse("DecomposeData_UndefLength: Expected an encapsulated transfer syntax tag, got: %1", TagText(tag));
  }
  if (vr != kVrOB && vr != kVrOW) {
    Refuse("DecomposeData_UndefLength: Expected a VR or 'OB' or 'OW', got: %1", vr.Text());
  }
  if (const std::uint32_t length = DeliverFragments(tag); length != 0) {
    Refuse("DecomposeData_UndefLength:  [Sequence Delimitation Item] should have zero length, got: %1",
           std::to_string(static_cast<std::int32_t>(length)));
  }
  if (simple_pixel_data_frames_) return;
  RaiseIfNegative(handler_.StartItem(kSequenceDelimitation, 0));
  RaiseIfNegative(handler_.Data(kSequenceDelimitation, 1, {}));
  RaiseIfNegative(handler_.EndItem(kSequenceDelimitation, 0));
}

/// Fragments, the offset table among them, up to the delimitation behind them.
/// @return  the delimitation's length
std::uint32_t StreamDecomposer::DeliverFragments(Tag tag) {
  for (;;) {
    const TagAndLength item = ReadTagAndLength();
    if (item.tag == kSequenceDelimitation) return item.length;
    if (item.tag != kItem) {  // kept: the text names the element, not the tag that stands here
      Refuse("DecomposeData_UndefLength: Expected [Item] or [Sequence Delimitation Item], got: %1",
             TagText(tag));
    }
    if (item.length == kUndefinedLength) {
      Refuse("DecomposeData_UndefLength: [Item] has undefined length");
    }
    RaiseIfNegative(handler_.StartItem(kItem, item.length));
    DeliverData(tag, item.length);
    RaiseIfNegative(handler_.EndItem(kItem, item.length));
  }
}

StreamDecomposer::TagAndLength StreamDecomposer::ReadTagAndLength() {
  const Tag tag = ReadTag(byte_order_, ReadFourBytes(stream_));
  return {tag, ReadLength()};
}

std::uint32_t StreamDecomposer::ReadLength() {
  return ReadUnsigned(byte_order_, 4, ReadFourBytes(stream_).data());
}

}  // namespace vessa
