#pragma once

#include <cstdint>

#include "dicom/tag.h"

namespace vessa {

/// Asks the client object, through its method ShouldStopDecomposition, whether to stop in front of an
/// element.
/// @throws Status  the host failed
bool ShouldStopDecomposition(std::uint32_t client_oref, Tag tag);

}  // namespace vessa
