#pragma once

// References to an element or an item of a data set, turned into property lists by the library.

#include <cstdint>
#include <string>
#include <vector>

#include "emulator/vessa/session.h"

namespace emulator::tool {

enum class ReferenceKind {
  kElement,  ///< BeamSequence[2].BeamName
  kItem,     ///< BeamSequence[2], BeamSequence[]
};

/// Asks the library. A reference that it refuses is shown with a caret under the character that its message names.
/// Throws LibraryFailure.
std::string PropertyListOf(Session& session, ReferenceKind kind, const std::string& reference);

/// The tags and item numbers of a property list, alternately; tags come first.
std::vector<std::uint32_t> PropertiesIn(const std::string& property_list);
std::string PropertyListFrom(const std::vector<std::uint32_t>& properties);

}  // namespace emulator::tool
