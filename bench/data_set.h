#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// Data sets of the sizes that hospitals move, made on the spot.

namespace bench {

enum class VrForm { kImplicit, kExplicit };

inline constexpr const char* kImplicitLittleEndian = "1.2.840.10008.1.2";
inline constexpr const char* kExplicitLittleEndian = "1.2.840.10008.1.2.1";
inline constexpr const char* kJpegBaseline = "1.2.840.10008.1.2.4.50";

inline constexpr const char* SyntaxOf(VrForm form) {
  return form == VrForm::kExplicit ? kExplicitLittleEndian : kImplicitLittleEndian;
}

/// A data set and how many elements it holds, sequences included, items not.
struct DataSet {
  std::string bytes;
  std::size_t elements = 0;
};

/// About 200,000 small elements in sequences nested six deep, half of them of defined and half of undefined
/// length; the last is BeamSequence (300A,00B0). 13 to 16 MB.
DataSet ManySmallElements(VrForm form);

/// PatientName and native 16-bit pixel data of so many bytes.
DataSet NativePixelData(VrForm form, std::uint32_t pixel_bytes);

/// Encapsulated pixel data, explicit VR: an empty offset table and so many fragments.
DataSet Fragments(std::size_t count, std::uint32_t fragment_bytes);

/// The same data set as a file: preamble, "DICM", group 0002 in explicit VR little endian.
std::string WithFileHeader(const std::string& data_set, const std::string& transfer_syntax);

}  // namespace bench
