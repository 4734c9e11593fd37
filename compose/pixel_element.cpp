#include "compose/pixel_element.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "compose/compose_exception.h"
#include "compose/pixel_block.h"
#include "compose/pixel_framing.h"
#include "compose/swap_unit.h"
#include "compose/value_writer.h"
#include "dicom/status.h"
#include "dicom/tag.h"
#include "stream/binary_input_stream.h"

namespace vessa {

namespace {

/// A host stream's size is a 32-bit property; one that is smaller than the position leaves nothing to read.
std::uint64_t BytesLeft(CVessaInputStream& stream) {
  const std::int64_t left = stream.GetSize() - stream.GetPosition();
  return left > 0 ? static_cast<std::uint64_t>(left) : 0;
}

void ReadPixels(CVessaInputStream& stream, std::span<std::uint8_t> bytes) {
  try {
    RaiseIfNegative(stream.Read(bytes));
  } catch (const Status) {
    throw CComposeException("ComposePixelElement: Read error or unexpected end of file in pixel data");
  }
}

void CopyPixels(CVessaInputStream& stream, std::uint64_t remaining, ElementWriter& writer,
                std::int32_t unit) {
  std::vector<std::uint8_t> storage(
      static_cast<std::size_t>(std::min<std::uint64_t>(remaining, kPixelBlockBytes)));
  ValueWriter value(writer, unit);
  while (remaining > 0) {
    const std::size_t size = static_cast<std::size_t>(std::min<std::uint64_t>(remaining, storage.size()));
    const std::span<std::uint8_t> block = std::span(storage).first(size);
    ReadPixels(stream, block);
    value.Write(block);
    remaining -= size;
  }
  value.Finish();
}

}  // namespace

void ComposePixelElement(ElementWriter& writer, const PixelDataStream& pixel_data, Vr vr,
                         bool marked_undefined) {
  CVessaBinaryInputStream stream(pixel_data.oref, kPixelBlockBytes);
  RaiseIfNegative(stream.Open());
  const std::uint64_t remaining = BytesLeft(stream);
  const TargetSyntax& syntax = writer.Syntax();
  const bool framed = !pixel_data.never_framed && PixelDataIsFramed(stream, remaining, syntax.order);

  writer.WriteTag(kPixelData);
  if (marked_undefined || framed) {
    writer.WriteVrAndUndefinedLength(vr);
  } else {
    writer.WriteVrAndLength(vr, remaining);
  }
  const std::int32_t unit = syntax.SwapsBytes() ? SwapUnitOf(vr) : 1;
  if (remaining == 0 && marked_undefined) writer.WriteSequenceEnd();
  CopyPixels(stream, remaining, writer, unit);
}

}  // namespace vessa
