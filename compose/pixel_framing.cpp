#include "compose/pixel_framing.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "compose/compose_exception.h"
#include "compose/pixel_block.h"
#include "dicom/status.h"
#include "dicom/tag.h"

namespace vessa {

namespace {

constexpr std::size_t kTagBytes = 4;
constexpr std::size_t kItemHeaderBytes = kTagBytes + 4;
constexpr std::size_t kTwoItemHeadersBytes = 2 * kItemHeaderBytes;

bool IsItemAt(std::span<const std::uint8_t> bytes, std::size_t offset, ByteOrder order) {
  return ReadTag(order, bytes.subspan(offset).first<kTagBytes>()) == kItem;
}

/// Peeks without letting the stream's bare status out: its cause has a text here.
bool CanPeek(CVessaInputStream& stream, std::span<std::uint8_t> bytes) {
  try {
    bool at_end = false;
    return stream.Peek(bytes, at_end) >= 0 && !at_end;
  } catch (const Status) {
    return false;
  }
}

}  // namespace

bool BeginsFramed(std::span<const std::uint8_t> bytes, ByteOrder order) {
  if (bytes.size() < kTwoItemHeadersBytes || !IsItemAt(bytes, 0, order)) return false;
  const std::uint64_t table_bytes = ReadUnsigned(order, kTagBytes, bytes.data() + kTagBytes);
  const std::uint64_t fragment_at = table_bytes + kItemHeaderBytes;  // in 64 bits: no length can wrap it
  if (fragment_at > bytes.size() - kTwoItemHeadersBytes) return false;
  return IsItemAt(bytes, static_cast<std::size_t>(fragment_at), order);
}

bool PixelDataIsFramed(CVessaInputStream& stream, std::uint64_t remaining, ByteOrder order) {
  if (remaining == 0) return false;
  std::vector<std::uint8_t> ahead(
      static_cast<std::size_t>(std::min<std::uint64_t>(remaining, kPixelBlockBytes)));
  if (!CanPeek(stream, ahead)) {
    throw CComposeException("PixelDataIsFramed: Read error or unexpected end of file in pixel data");
  }
  return BeginsFramed(ahead, order);
}

}  // namespace vessa
