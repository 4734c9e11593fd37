#pragma once

// How the tool ends. Scripts rely on these numbers.

#include <exception>
#include <stdexcept>
#include <string>

namespace emulator::tool {

enum ExitCode : int {
  kDone = 0,
  kLibraryFailed = 1,     ///< the library answered with a failure
  kWrongUsage = 2,        ///< the command line makes no sense
  kInputUnreadable = 3,   ///< a file or standard input cannot be read
  kOutputUnwritable = 4,  ///< a file or standard output cannot be written
  kFindings = 5,          ///< a check found something to tell
  kToolFailed = 70,       ///< the tool itself failed, out of memory for instance
  kCallTimedOut = 124,    ///< the library neither returned nor called back
  kLibraryCrashed = 125,  ///< the library ended its process
};

/// A failure with a message for standard error and the exit code that goes with it.
class ToolError : public std::runtime_error {
 public:
  ToolError(ExitCode code, const std::string& message) : std::runtime_error(message), code_(code) {}
  ExitCode Code() const { return code_; }

 private:
  ExitCode code_;
};

/// The reader of standard output has gone: nothing is wrong, and nobody is left to be told anything.
class ReaderGone : public std::exception {};

}  // namespace emulator::tool
