#include "dicom/byte_order.h"

#include <algorithm>

#include "dicom/exception.h"
#include "dicom/transfer_syntax.h"

namespace vessa {
namespace {

/// Unit i is reversed as a whole while the storage holds it.
template <std::size_t kUnit>
void ReverseWholeUnits(std::uint8_t* bytes, std::size_t units) {
  for (std::size_t unit = 0; unit < units; ++unit, bytes += kUnit) std::reverse(bytes, bytes + kUnit);
}

/// The one unit that the end of the storage cuts: what is missing of it counts as zero.
void ReverseCutUnit(std::uint8_t* bytes, std::size_t stored, std::size_t unit_size) {
  std::reverse(bytes, bytes + stored);
  const std::size_t missing = unit_size - stored;
  std::copy_backward(bytes, bytes + stored - std::min(missing, stored), bytes + stored);
  std::fill(bytes, bytes + std::min(missing, stored), std::uint8_t{0});
}

template <std::size_t kUnit>
void ReverseUnits(std::uint8_t* bytes, std::size_t length, std::size_t capacity) {
  const std::size_t units = length / kUnit + (length % kUnit != 0 ? 1 : 0);
  const std::size_t whole_units = std::min(units, capacity / kUnit);
  ReverseWholeUnits<kUnit>(bytes, whole_units);
  if (whole_units < units) ReverseCutUnit(bytes + whole_units * kUnit, capacity % kUnit, kUnit);
}

}  // namespace

ByteOrder ByteOrderOf(std::string_view transfer_syntax) {
  return IsBigEndianTransferSyntax(transfer_syntax) ? ByteOrder::kBigEndian : ByteOrder::kLittleEndian;
}

void RaiseIllegalByteOrder() { throw CDecomposeException("Internal error: illegal byte-ordering code"); }

Status SwitchByteOrdering(std::uint8_t* bytes, std::size_t length, std::size_t capacity,
                          std::int32_t unit_size) {
  length = std::min(length, capacity);
  switch (unit_size) {
    case 1:
      return kSuccess;
    case 2:
      ReverseUnits<2>(bytes, length, capacity);
      return kSuccess;
    case 4:
      ReverseUnits<4>(bytes, length, capacity);
      return kSuccess;
    case 8:
      ReverseUnits<8>(bytes, length, capacity);
      return kSuccess;
    default:
      return E_INVALIDARG;
  }
}

}  // namespace vessa
