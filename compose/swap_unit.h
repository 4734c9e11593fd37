#pragma once

#include <cstdint>

#include "dicom/vr.h"

namespace vessa {

/// True for the VRs whose values are looked at when byte orders differ: SS, US, SL, UL, AT, FL, FD, OX, OB,
/// OW, OF and UN.
bool IsSwappedVr(Vr vr);

/// Bytes to be reversed as one unit. SS and AT have the unit 1 and so are never swapped; hosts rely on it.
/// @throws Status  kUnexpected  a VR that is not swapped
std::int32_t SwapUnitOf(Vr vr);

}  // namespace vessa
