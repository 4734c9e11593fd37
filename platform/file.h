#pragma once

// Local files beyond what <cstdio> promises everywhere: 64-bit offsets, and no directories.

#include <cstdint>
#include <cstdio>
#include <string>

namespace vessa {

/// Opens a file for reading bytes. A directory is refused on every system.
/// @param name  in the system's code page; it ends at its first zero byte
/// @return      the open file, to be closed with std::fclose by the caller; null when it cannot be opened
std::FILE* OpenForReading(const std::string& name);

/// Byte offset from the start of the file, -1 on failure.
std::int64_t TellFile(std::FILE* file);

/// Moves to `offset` bytes from `whence` (SEEK_SET, SEEK_CUR, SEEK_END).
/// @return  true when the position was moved; on false it is where it was
bool SeekFile(std::FILE* file, std::int64_t offset, int whence);

}  // namespace vessa
