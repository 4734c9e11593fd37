#pragma once

// The three streams that a program starts with, and how the system starts it.

#include <cstddef>
#include <string>
#include <vector>

namespace emulator {

enum class StandardStream { kOutput, kError };

/// Makes the three streams carry bytes as they stand, a console read UTF-8, and a write to a pipe
/// whose reader is gone an error of that write instead of the end of the process.
void PrepareStandardStreams();

bool IsTerminal(StandardStream stream);

/// Columns of the terminal behind a stream; 0 when there is none.
std::size_t TerminalColumns(StandardStream stream);

/// The program's arguments after its name, in UTF-8.
std::vector<std::string> ProgramArguments(int argc, const char* const* argv);

/// The folder of the running program, in UTF-8; empty when the system does not say.
std::string ProgramFolder();

}  // namespace emulator
