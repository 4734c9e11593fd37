#pragma once

#include <string>

#include "emulator/check/file_check.h"

namespace emulator::tool {

/// What is to be said of a file, in a line.
std::string ReportText(const std::string& path, const FileReport& report);

/// The same as a JSON object: "file", "outcome" ("succeeds", "fails", "does-not-return", "unclear"), "preamble" and, as
/// far as they are known, "transferSyntax", "message", "offset", "path" and "findings".
std::string ReportJson(const std::string& path, const FileReport& report);

}  // namespace emulator::tool
