#pragma once

#include <string>

#include "tests/support/dicom_bytes.h"

// Small data sets and files for the tool.

inline const dicom_bytes::DataSetBytes kExplicit(dicom_bytes::VrForm::kExplicit);
inline const dicom_bytes::DataSetBytes kImplicit(dicom_bytes::VrForm::kImplicit);

/// A file: preamble, "DICM", group 0002 that names the syntax (padded to even length), the data set.
inline std::string DicomFile(std::string transfer_syntax, const std::string& data_set) {
  if (transfer_syntax.size() % 2 != 0) transfer_syntax.push_back('\0');
  return std::string(128, '\0') + "DICM" + kExplicit.Element(0x00020010, "UI", transfer_syntax) + data_set;
}

/// (0010,0010) Doe^John and a sequence of two items, each with an 8-byte UID.
inline std::string SmallDataSet() {
  const std::string uid = kExplicit.Element(0x00081150, "UI", std::string("1.2.3.4\0", 8));
  return kExplicit.Sequence(0x00081140, dicom_bytes::Item(uid) + dicom_bytes::Item(uid)) +
         kExplicit.Element(0x00100010, "PN", "Doe^John");
}

/// Ends behind its only element, which an item of 100 bytes holds.
inline std::string EndlessDataSet() {
  const std::string uid = kExplicit.Element(0x00081150, "UI", std::string("1.2.3.4\0", 8));
  return kExplicit.Header(0x00081140, "SQ", 108) + dicom_bytes::TagAndLength(dicom_bytes::kItem, 100) + uid;
}
