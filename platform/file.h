#pragma once

// Local files beyond what <cstdio> promises everywhere: 64-bit offsets.

#include <cstdint>
#include <cstdio>

namespace vessa {

/// Byte offset from the start of the file, -1 on failure.
std::int64_t TellFile(std::FILE* file);

/// Moves to `offset` bytes from `whence` (SEEK_SET, SEEK_CUR, SEEK_END).
/// @return  true when the position was moved; on false it is where it was
bool SeekFile(std::FILE* file, std::int64_t offset, int whence);

}  // namespace vessa
