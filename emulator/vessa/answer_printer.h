#pragma once

#include <string>

#include "emulator/vessa/character_sets.h"
#include "emulator/vessa/element_query.h"

namespace emulator::tool {

/// An answer for a person: text and numbers by the VR, other bytes in hexadecimal behind their number.
std::string AnswerText(const ElementAnswer& answer, const CharacterSets& characters);

/// The answer as a JSON object in one line: "file" (where it has a name), "reference", "vr" and, as in the DICOM JSON model (PS3.18 annex F), "Value"
/// or "InlineBinary".
std::string AnswerJson(const std::string& file_name, const std::string& reference,
                       const ElementAnswer& answer, const CharacterSets& characters);

/// True for VRs whose text depends on (0008,0005).
bool IsLocalText(const std::string& vr);

}  // namespace emulator::tool
