#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace emulator::tool {

/// The commands of a command line with their options and examples, in JSON: what manual pages and completions are made
/// from.
std::string DescribeCommands(const CLI::App& app);

}  // namespace emulator::tool
