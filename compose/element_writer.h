#pragma once

#include <cstdint>
#include <span>

#include "compose/target_syntax.h"
#include "dicom/status.h"
#include "dicom/tag.h"
#include "dicom/vr.h"
#include "stream/binary_output_stream.h"

namespace vessa {

/// Writes the parts of data elements (PS3.5 sections 7.1 and 7.5) in one transfer syntax. Raises a negative
/// status of the output.
class ElementWriter {
 public:
  ElementWriter(CVessaBinaryOutputStream& output, const TargetSyntax& syntax)
      : output_{output}, syntax_{syntax} {}

  const TargetSyntax& Syntax() const { return syntax_; }

  void WriteTag(Tag tag) { RaiseIfNegative(vessa::WriteTag(output_, syntax_.order, tag)); }
  /// The VR, where the syntax writes one, and the length, in 2 or 4 bytes as the VR and the syntax have it.
  /// @throws CComposeException  the length does not fit in its field, or means undefined there
  void WriteVrAndLength(Vr vr, std::uint64_t length);
  /// The same with the undefined length, which a field of 2 bytes does not fit.
  void WriteVrAndUndefinedLength(Vr vr);
  void WriteValue(std::span<const std::uint8_t> bytes) { RaiseIfNegative(output_.WriteBytes(bytes)); }

  /// Tag, VR and undefined length of a sequence.
  void WriteSequenceStart(Tag tag);
  void WriteItemStart();
  void WriteItemEnd();
  void WriteSequenceEnd();

 private:
  bool HasShortLength(Vr vr) const;
  void WriteVrAndLongLength(Vr vr, std::uint32_t length);
  void Write(std::span<const std::uint8_t> header);
  void WriteTagAndLength(Tag tag, std::uint32_t length);

  CVessaBinaryOutputStream& output_;
  TargetSyntax syntax_;
};

}  // namespace vessa
