#pragma once

// Nodes of globals as the host's language writes them.

#include <string>

#include "emulator/globals.h"

namespace emulator::tool {

/// "^KevDICOM.Data("1.2.3",0,"c",0,1048592)": numbers as they are, other texts as HostLiteral.
std::string ReferenceText(const GlobalNode& node);

/// A value as an expression: a number as it is; other texts in quotes, with characters that are not printable ASCII as
/// codes: "ab"_$c(0,255)_"cd".
std::string HostLiteral(const Value& value);

}  // namespace emulator::tool
