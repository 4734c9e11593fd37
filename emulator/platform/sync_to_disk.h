#pragma once

#include <string>

namespace emulator {

/// Returns when what was written to the file, or the names in the folder, are on the disk and survive a failure of
/// power. Offered where a store that lasts is.
/// @param path  in UTF-8
/// @throws std::system_error
void SyncToDisk(const std::string& path);

}  // namespace emulator
