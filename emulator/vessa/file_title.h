#pragma once

#include <string>

#include "emulator/vessa/output.h"

namespace emulator::tool {

/// Says, where a command has many files, which one the following lines are about.
void PrintFileName(Output& output, const std::string& path, bool is_json);

}  // namespace emulator::tool
