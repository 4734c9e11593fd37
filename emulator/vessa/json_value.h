#pragma once

// Values of the DICOM JSON model (PS3.18 annex F).

#include <optional>
#include <string>
#include <string_view>

#include "emulator/vessa/character_sets.h"
#include "emulator/vessa/value_representation.h"

namespace emulator::tool {

/// The content of a "Value" member.
struct JsonValues {
  std::string array;             ///< such as ["A",null,"B"]; empty for an element without a value
  bool has_unread_text = false;  ///< U+FFFD stands for some bytes that have no meaning in the character set
};

/// For every kind but kSequence and kBytes. Nothing when the bytes are no values of that VR, such as an unsigned
/// short of three bytes.
std::optional<JsonValues> JsonValuesOf(const ValueRepresentation& vr, std::string_view bytes,
                                       const CharacterSets& characters);

/// A JSON string with its quotes. `utf8` must be valid.
std::string JsonString(const std::string& utf8);

}  // namespace emulator::tool
