#include "compose/value_writer.h"

#include <algorithm>

#include "dicom/byte_order.h"
#include "dicom/status.h"

namespace vessa {

void ValueWriter::WriteUnits(std::span<std::uint8_t> piece) {
  const std::span<std::uint8_t> rest = FillCutUnit(piece);
  const std::size_t whole = rest.size() - rest.size() % unit_;
  WriteSwapped(rest.first(whole));
  KeepCutUnit(rest.subspan(whole));
}

void ValueWriter::WriteCutUnit() {
  writer_.WriteValue(std::span(cut_unit_).first(cut_bytes_));
  cut_bytes_ = 0;
}

/// Completes the unit that an earlier piece began; returns what the piece has beyond it.
std::span<std::uint8_t> ValueWriter::FillCutUnit(std::span<std::uint8_t> piece) {
  if (cut_bytes_ == 0) return piece;
  const std::size_t taken = std::min(unit_ - cut_bytes_, piece.size());
  KeepCutUnit(piece.first(taken));
  if (cut_bytes_ == unit_) {
    cut_bytes_ = 0;
    WriteSwapped(std::span(cut_unit_).first(unit_));
  }
  return piece.subspan(taken);
}

void ValueWriter::KeepCutUnit(std::span<const std::uint8_t> bytes) {
  std::copy(bytes.begin(), bytes.end(), cut_unit_.begin() + static_cast<std::ptrdiff_t>(cut_bytes_));
  cut_bytes_ += bytes.size();
}

void ValueWriter::WriteSwapped(std::span<std::uint8_t> units) {
  RaiseIfNegative(
      SwitchByteOrdering(units.data(), units.size(), units.size(), static_cast<std::int32_t>(unit_)));
  writer_.WriteValue(units);
}

}  // namespace vessa
