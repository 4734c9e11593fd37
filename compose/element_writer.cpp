#include "compose/element_writer.h"

#include <array>
#include <cstddef>
#include <limits>

#include "compose/compose_exception.h"
#include "dicom/status.h"
#include "stream/binary_output_stream.h"

namespace vessa {

namespace {

constexpr std::uint64_t kLargestShortLength = std::numeric_limits<std::uint16_t>::max();

/// A few bytes in the making: what stands between a tag and a value.
class HeaderBytes {
 public:
  explicit HeaderBytes(ByteOrder order) : order_{order} {}

  void Put(std::uint8_t byte) { bytes_[size_++] = byte; }
  void PutVr(Vr vr) {
    Put(static_cast<std::uint8_t>(vr.CString()[0]));
    Put(static_cast<std::uint8_t>(vr.CString()[1]));
  }
  void PutReserved() {
    Put(0);
    Put(0);
  }
  void PutTag(Tag tag) {
    PutUnsigned16(tag.Group());
    PutUnsigned16(tag.Element());
  }
  void PutUnsigned16(std::uint16_t value) {
    const auto high = static_cast<std::uint8_t>(value >> 8);
    const auto low = static_cast<std::uint8_t>(value);
    Put(order_ == ByteOrder::kBigEndian ? high : low);
    Put(order_ == ByteOrder::kBigEndian ? low : high);
  }
  void PutUnsigned32(std::uint32_t value) {
    const auto high = static_cast<std::uint16_t>(value >> 16);
    const auto low = static_cast<std::uint16_t>(value);
    PutUnsigned16(order_ == ByteOrder::kBigEndian ? high : low);
    PutUnsigned16(order_ == ByteOrder::kBigEndian ? low : high);
  }

  std::span<const std::uint8_t> Bytes() const { return std::span(bytes_).first(size_); }

 private:
  static constexpr std::size_t kLongest =
      8;  // VR, reserved bytes and 4-byte length; or tag and 4-byte length

  ByteOrder order_;
  std::array<std::uint8_t, kLongest> bytes_{};
  std::size_t size_ = 0;
};

}  // namespace

void ElementWriter::WriteTag(Tag tag) { RaiseIfNegative(vessa::WriteTag(output_, syntax_.order, tag)); }

void ElementWriter::WriteVrAndLength(Vr vr, std::uint64_t length) {
  const std::uint64_t largest = HasShortLength(vr) ? kLargestShortLength : kUndefinedLength - 1;
  WriteVrAndLengthField(vr, static_cast<std::uint32_t>(length), length <= largest);
}

void ElementWriter::WriteVrAndUndefinedLength(Vr vr) {
  WriteVrAndLengthField(vr, kUndefinedLength, !HasShortLength(vr));
}

bool ElementWriter::HasShortLength(Vr vr) const { return syntax_.has_explicit_vrs && !HasLongLength(vr); }

// Element header behind the tag:
//   VR        2 bytes   explicit syntaxes only
//   reserved  2 bytes   only between a VR and a 4-byte length
//   length    2 or 4    bytes of value, or kUndefinedLength
void ElementWriter::WriteVrAndLengthField(Vr vr, std::uint32_t length, bool fits) {
  HeaderBytes header(syntax_.order);
  if (syntax_.has_explicit_vrs) header.PutVr(vr);
  if (HasShortLength(vr)) {
    header.PutUnsigned16(static_cast<std::uint16_t>(length));
  } else {
    if (syntax_.has_explicit_vrs) header.PutReserved();
    header.PutUnsigned32(length);
  }
  const Status status = fits ? output_.WriteBytes(header.Bytes()) : E_INVALIDARG;
  if (status < 0) throw CComposeException("ComposeElement writing VR writing value length");
}

void ElementWriter::WriteValue(std::span<const std::uint8_t> bytes) {
  RaiseIfNegative(output_.WriteBytes(bytes));
}

void ElementWriter::WriteSequenceStart(Tag tag) {
  WriteTag(tag);
  WriteVrAndUndefinedLength(kVrSQ);
}

void ElementWriter::WriteItemStart() { WriteTagAndLength(kItem, kUndefinedLength); }

void ElementWriter::WriteItemEnd() { WriteTagAndLength(kItemDelimitation, 0); }

void ElementWriter::WriteSequenceEnd() { WriteTagAndLength(kSequenceDelimitation, 0); }

void ElementWriter::WriteTagAndLength(Tag tag, std::uint32_t length) {
  HeaderBytes header(syntax_.order);
  header.PutTag(tag);
  header.PutUnsigned32(length);
  WriteValue(header.Bytes());
}

}  // namespace vessa
