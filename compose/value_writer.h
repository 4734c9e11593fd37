#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "compose/element_writer.h"

namespace vessa {

/// Writes one value that comes in pieces, reversing the bytes of each unit. The value is one run of bytes: a
/// unit may lie across the ends of pieces, and a last, incomplete one is written as it stands.
class ValueWriter {
 public:
  /// @param unit  1, 2, 4 or 8 bytes
  ValueWriter(ElementWriter& writer, std::int32_t unit)
      : writer_{writer}, unit_{static_cast<std::size_t>(unit)} {}

  /// Writes the next piece. Its bytes are changed in place.
  void Write(std::span<std::uint8_t> piece) {
    if (unit_ == 1) return writer_.WriteValue(piece);
    WriteUnits(piece);
  }
  /// Writes what is left of an incomplete unit.
  void Finish() {
    if (cut_bytes_ != 0) WriteCutUnit();
  }

 private:
  static constexpr std::size_t kLargestUnit = 8;

  void WriteUnits(std::span<std::uint8_t> piece);
  std::span<std::uint8_t> FillCutUnit(std::span<std::uint8_t> piece);
  void KeepCutUnit(std::span<const std::uint8_t> bytes);
  void WriteCutUnit();
  void WriteSwapped(std::span<std::uint8_t> units);

  ElementWriter& writer_;
  std::size_t unit_;
  std::array<std::uint8_t, kLargestUnit> cut_unit_{};
  std::size_t cut_bytes_ = 0;  ///< bytes of the unit that the last piece began
};

}  // namespace vessa
