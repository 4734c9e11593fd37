#pragma once

#include <string>

#include "emulator/library.h"

namespace fuzz {

/// The library under test, loaded as a host loads it, with clang's instrumentation inside.
const emulator::Library& TheLibrary();

/// The message of a failure, as 8-bit text.
std::string MessageOf(const emulator::ListResult& result);

/// A small data set decomposes as it always does: whatever a call before it met has left nothing behind.
void RequireTheNextCallWorks();

}  // namespace fuzz
