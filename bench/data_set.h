#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// Data sets of the sizes that hospitals move, explicit VR unless they say otherwise.

namespace bench {

inline constexpr const char* kImplicitLittleEndian = "1.2.840.10008.1.2";
inline constexpr const char* kExplicitLittleEndian = "1.2.840.10008.1.2.1";
inline constexpr const char* kJpegBaseline = "1.2.840.10008.1.2.4.50";

/// A data set and how many elements it holds, sequences included, items not.
struct DataSet {
  std::string bytes;
  std::size_t elements = 0;
};

/// One of those below.
using DataSetSource = const DataSet& (*)();

// Each is made when it is first asked for and kept.

/// About 200,000 small elements in sequences nested six deep, half of them of defined and half of undefined
/// length; the last is BeamSequence (300A,00B0). 13 to 16 MB.
const DataSet& ElementsExplicit();
const DataSet& ElementsImplicit();

/// PatientName and 256 MB of native 16-bit pixel data, then Data Set Trailing Padding, explicit VR.
const DataSet& NativePixels();

/// An image of 512 KB, with as many elements before PatientName as scanners write: 40. Explicit VR.
const DataSet& Image();

/// Encapsulated pixel data, explicit VR: an empty offset table and 2000 fragments of 64 KB.
const DataSet& Fragments();

/// The same data set as a file: preamble, "DICM", group 0002 in explicit VR little endian.
std::string WithFileHeader(const std::string& data_set, const std::string& transfer_syntax);

}  // namespace bench
