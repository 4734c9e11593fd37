#pragma once

#include <string>

#include "emulator/check/file_check.h"
#include "emulator/vessa/file_options.h"
#include "emulator/vessa/session.h"

namespace emulator::tool {

/// What the library will do with a file, with the VRs of its own dictionary.
/// @param from_first_byte  see CheckRequest
/// @throws ToolError  kInputUnreadable
FileReport PredictFile(Session& session, const FileOptions& options, const std::string& path,
                       bool from_first_byte);

}  // namespace emulator::tool
