#pragma once

#include <string>

namespace emulator::tool {

/// The UID behind a name of a transfer syntax that is easier to type: "implicit" or "explicit", both little endian.
/// Other texts are UIDs already.
std::string SyntaxNamed(const std::string& name);

}  // namespace emulator::tool
