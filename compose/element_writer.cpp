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

/// A few bytes in the making: what stands between a tag and a value. How many is known while compiling, and until the
/// last one they are a number: one instruction stores it, where single bytes would have to be waited for.
template <std::size_t kSize>
class HeaderBytes {
 public:
  explicit HeaderBytes(ByteOrder order) : order_{order} {}

  void PutVr(Vr vr) {
    Put(static_cast<std::uint8_t>(vr.First()));
    Put(static_cast<std::uint8_t>(vr.Second()));
  }
  void PutReserved() { size_ += 2; }
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

  std::array<std::uint8_t, kSize> Bytes() const {
    std::array<std::uint8_t, kSize> bytes;
    for (std::size_t at = 0; at < kSize; ++at) bytes[at] = static_cast<std::uint8_t>(number_ >> (8 * at));
    return bytes;
  }

 private:
  void Put(std::uint8_t byte) { number_ |= std::uint64_t{byte} << (8 * size_++); }

  static_assert(kSize <= sizeof(std::uint64_t));

  ByteOrder order_;
  std::uint64_t number_ = 0;  // the first byte is the least
  std::size_t size_ = 0;
};

[[noreturn]] void RaiseUnwritableLength() {
  throw CComposeException("ComposeElement writing VR writing value length");
}

}  // namespace

// Element header behind the tag:
//   VR        2 bytes   explicit syntaxes only
//   reserved  2 bytes   only between a VR and a 4-byte length
//   length    2 or 4    bytes of value, or kUndefinedLength

void ElementWriter::WriteVrAndLength(Vr vr, std::uint64_t length) {
  const bool is_short = HasShortLength(vr);
  if (length > (is_short ? kLargestShortLength : kUndefinedLength - 1)) RaiseUnwritableLength();
  if (!is_short) return WriteVrAndLongLength(vr, static_cast<std::uint32_t>(length));
  HeaderBytes<4> header(syntax_.order);
  header.PutVr(vr);
  header.PutUnsigned16(static_cast<std::uint16_t>(length));
  Write(header.Bytes());
}

void ElementWriter::WriteVrAndUndefinedLength(Vr vr) {
  if (HasShortLength(vr)) RaiseUnwritableLength();
  WriteVrAndLongLength(vr, kUndefinedLength);
}

bool ElementWriter::HasShortLength(Vr vr) const { return syntax_.has_explicit_vrs && !HasLongLength(vr); }

void ElementWriter::WriteVrAndLongLength(Vr vr, std::uint32_t length) {
  if (syntax_.has_explicit_vrs) {
    HeaderBytes<4> vr_and_reserved(syntax_.order);
    vr_and_reserved.PutVr(vr);
    vr_and_reserved.PutReserved();
    Write(vr_and_reserved.Bytes());
  }
  HeaderBytes<4> header(syntax_.order);
  header.PutUnsigned32(length);
  Write(header.Bytes());
}

void ElementWriter::Write(std::span<const std::uint8_t> header) {
  if (output_.WriteBytes(header) < 0) RaiseUnwritableLength();
}

void ElementWriter::WriteSequenceStart(Tag tag) {
  WriteTag(tag);
  WriteVrAndUndefinedLength(kVrSQ);
}

void ElementWriter::WriteItemStart() { WriteTagAndLength(kItem, kUndefinedLength); }

void ElementWriter::WriteItemEnd() { WriteTagAndLength(kItemDelimitation, 0); }

void ElementWriter::WriteSequenceEnd() { WriteTagAndLength(kSequenceDelimitation, 0); }

void ElementWriter::WriteTagAndLength(Tag tag, std::uint32_t length) {
  HeaderBytes<8> header(syntax_.order);
  header.PutTag(tag);
  header.PutUnsigned32(length);
  WriteValue(header.Bytes());
}

}  // namespace vessa
