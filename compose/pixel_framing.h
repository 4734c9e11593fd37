#pragma once

#include <cstdint>
#include <span>

#include "dicom/byte_order.h"
#include "stream/input_stream.h"

namespace vessa {

/// True when the bytes begin like encapsulated pixel data (PS3.5 section A.4): a basic offset table item, and
/// behind it a fragment item. At least 16 bytes must follow the offset table's value.
bool BeginsFramed(std::span<const std::uint8_t> bytes, ByteOrder order);

/// Looks ahead in a pixel data stream without moving it.
/// @param remaining  bytes left in the stream; none left counts as not framed
/// @throws CComposeException  the stream ends early or cannot be read
/// @throws CDecomposeException  the host's stream failed
bool PixelDataIsFramed(CVessaInputStream& stream, std::uint64_t remaining, ByteOrder order);

}  // namespace vessa
