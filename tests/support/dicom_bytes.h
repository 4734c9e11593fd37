#pragma once

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

// Encoded data sets (PS3.5 section 7) for tests, put together from the inside out:
//
//     const DataSetBytes explicit_vrs(VrForm::kExplicit);
//     explicit_vrs.Element(0x00100010, "PN", "Doe^John") +
//         explicit_vrs.Sequence(0x00081140, explicit_vrs.Item(explicit_vrs.Element(...)));
//
// Nothing is checked or padded: a test that needs wrong bytes gets them.

namespace dicom_bytes {

inline constexpr std::uint32_t kUndefined = 0xFFFFFFFF;
inline constexpr std::uint32_t kItem = 0xFFFEE000;
inline constexpr std::uint32_t kItemDelimitation = 0xFFFEE00D;
inline constexpr std::uint32_t kSequenceDelimitation = 0xFFFEE0DD;
inline constexpr std::uint32_t kPixelData = 0x7FE00010;

inline constexpr const char* kImplicitLittleEndian = "1.2.840.10008.1.2";
inline constexpr const char* kExplicitLittleEndian = "1.2.840.10008.1.2.1";
inline constexpr const char* kJpegBaseline = "1.2.840.10008.1.2.4.50";

/// Bytes as a hexadecimal dump shows them; blanks between them are free: "FE FF 00 E0  00000000".
inline std::string Hex(std::string_view dump) {
  std::string digits;
  for (const char c : dump) {
    if (std::isxdigit(static_cast<unsigned char>(c)) != 0) digits += c;
  }
  std::string bytes;
  for (std::size_t at = 0; at + 1 < digits.size(); at += 2) {
    bytes += static_cast<char>(std::strtoul(digits.substr(at, 2).c_str(), nullptr, 16));
  }
  return bytes;
}

/// Little endian.
inline std::string Number16(std::uint32_t value) {
  return {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8 & 0xFF)};
}
inline std::string Number32(std::uint32_t value) { return Number16(value & 0xFFFF) + Number16(value >> 16); }
inline std::string TagBytes(std::uint32_t tag) { return Number16(tag >> 16) + Number16(tag & 0xFFFF); }

inline std::uint32_t LengthOf(std::string_view bytes) { return static_cast<std::uint32_t>(bytes.size()); }

/// Items, fragments and delimitations: tag and 4-byte length, the same in all syntaxes.
inline std::string TagAndLength(std::uint32_t tag, std::uint32_t length) {
  return TagBytes(tag) + Number32(length);
}
inline std::string ItemEnd() { return TagAndLength(kItemDelimitation, 0); }
inline std::string SequenceEnd() { return TagAndLength(kSequenceDelimitation, 0); }

/// Also a fragment of encapsulated pixel data.
inline std::string Item(std::string_view content) {
  return TagAndLength(kItem, LengthOf(content)).append(content);
}
inline std::string UndefinedItem(std::string_view content) {
  return TagAndLength(kItem, kUndefined).append(content) + ItemEnd();
}

enum class VrForm { kImplicit, kExplicit };

class DataSetBytes {
 public:
  explicit DataSetBytes(VrForm form) : form_{form} {}

  const char* TransferSyntax() const {
    return form_ == VrForm::kExplicit ? kExplicitLittleEndian : kImplicitLittleEndian;
  }

  /// Tag, VR and length, the length in as many bytes as PS3.5 gives the VR.
  std::string Header(std::uint32_t tag, std::string_view vr, std::uint32_t length) const {
    if (form_ == VrForm::kImplicit) return TagAndLength(tag, length);
    const std::string start = TagBytes(tag).append(vr);
    return HasLongLength(vr) ? start + Number16(0) + Number32(length) : start + Number16(length);
  }
  std::string Element(std::uint32_t tag, std::string_view vr, std::string_view value) const {
    return Header(tag, vr, LengthOf(value)).append(value);
  }
  std::string Sequence(std::uint32_t tag, std::string_view items) const { return Element(tag, "SQ", items); }
  std::string UndefinedSequence(std::uint32_t tag, std::string_view items) const {
    return Header(tag, "SQ", kUndefined).append(items) + SequenceEnd();
  }
  /// Encapsulated pixel data of the given fragments, the offset table first.
  std::string Fragments(std::string_view vr, std::string_view fragments) const {
    return Header(kPixelData, vr, kUndefined).append(fragments) + SequenceEnd();
  }

 private:
  static bool HasLongLength(std::string_view vr) {
    constexpr std::array<std::string_view, 13> kLong = {"OB", "OD", "OF", "OL", "OV", "OW", "SQ",
                                                        "SV", "UC", "UN", "UR", "UT", "UV"};
    return std::find(kLong.begin(), kLong.end(), vr) != kLong.end();
  }

  VrForm form_;
};

}  // namespace dicom_bytes
