#pragma once

#include <cstdint>

#include "dicom/status.h"

namespace vessa {

/// Decompresses one stream in the zlib format from a host stream into another. Bytes that follow the end of
/// the compressed data in the block read last are dropped.
/// @param in   host object with `Read`
/// @param out  host object with `Write`; what was written before a failure stays written
/// @return  0, or a negative status: damaged data or data of another format, an input that ends before the
///          compressed data do, no memory, a host method that failed. Nothing is thrown.
Status InflateStream(std::uint32_t in, std::uint32_t out) noexcept;

}  // namespace vessa
