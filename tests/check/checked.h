#pragma once

#include <memory>
#include <string>

#include "emulator/check/file_check.h"
#include "tests/support/dicom_bytes.h"

// A check of bytes in memory.

inline const dicom_bytes::DataSetBytes kExplicit(dicom_bytes::VrForm::kExplicit);
inline const dicom_bytes::DataSetBytes kImplicit(dicom_bytes::VrForm::kImplicit);

/// Of the few tags that the tests use.
inline std::string SmallDictionary(std::uint32_t tag) {
  switch (tag) {
    case 0x00081140:
      return "SQ";
    case 0x00100010:
      return "PN";
    case 0x00280106:
      return "XS";
    case dicom_bytes::kPixelData:
      return "OX";
    default:
      return "";
  }
}

inline emulator::FileReport Checked(const std::string& bytes, const std::string& syntax = "",
                                    bool is_whole = false) {
  emulator::MemoryStream stream(bytes);
  return emulator::CheckFile(stream, {syntax, is_whole, SmallDictionary, nullptr});
}

/// A data set in explicit VR little endian.
inline emulator::FileReport CheckedExplicit(const std::string& bytes) {
  return Checked(bytes, dicom_bytes::kExplicitLittleEndian);
}

/// Preamble, "DICM", group 0002 that names the syntax, the data set.
inline std::string FileOf(std::string preamble, std::string syntax, const std::string& data_set) {
  preamble.resize(128, '\0');
  if (syntax.size() % 2 != 0) syntax.push_back('\0');
  return preamble + "DICM" + kExplicit.Element(0x00020010, "UI", syntax) + data_set;
}
