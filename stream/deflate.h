#pragma once

#include <cstdint>

#include "dicom/status.h"

namespace vessa {

/// Compresses all that a host stream still has to read into another host stream, as one stream in the zlib
/// format.
/// @param level  -1 to 9, as zlib takes it
/// @param in   host object with `Read`
/// @param out  host object with `Write`; what was written before a failure stays written
/// @return  0, or a negative status: an unknown level, no memory, a host method that failed. Nothing is
/// thrown.
Status DeflateStream(std::int32_t level, std::uint32_t in, std::uint32_t out) noexcept;

}  // namespace vessa
