#pragma once

#include <string>

namespace emulator::tool {

/// The library that is used unless another is named: beside this program, or where packages install it. In UTF-8.
std::string DefaultLibraryPath();

/// What a library file says of itself, such as "VessaDCM 0.1.0 commit 0123456789ab", without loading it; empty when it
/// says nothing or cannot be read.
std::string LibraryIdentification(const std::string& path);

}  // namespace emulator::tool
