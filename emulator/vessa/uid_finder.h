#pragma once

#include <string>

#include "emulator/vessa/dicom_file.h"
#include "emulator/vessa/session.h"

namespace emulator::tool {

/// The SOP instance UID of a file: of its data set (0008,0018), else of its meta information (0002,0003). Reads no
/// further than the former, wherever it stands.
/// @throws ToolError  kWrongUsage when there is none; else as DicomFile does
std::string FindSopInstanceUid(Session& session, const std::string& name, const DicomFile& file);

}  // namespace emulator::tool
