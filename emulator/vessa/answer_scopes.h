#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "emulator/vessa/data_set_scopes.h"
#include "emulator/vessa/dicom_file.h"
#include "emulator/vessa/session.h"

namespace emulator::tool {

/// What a data set says about reading an answer with this VR, in the items around it too: its character sets, or what a
/// placeholder stands for. Where the library fails to find that, it counts as not said.
/// @param properties  where the answer lies; see PropertiesIn
DataSetScopes ScopesOfAnswer(Session& session, const DicomFile& file, const std::string& vr,
                             const std::vector<std::uint32_t>& properties);

}  // namespace emulator::tool
