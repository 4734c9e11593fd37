#pragma once

// Standard output, buffered in the memory that the watching process shares: when the library ends this process, what
// was printed before is still written.

#include <string_view>

#include "emulator/vessa/call_progress.h"

namespace emulator::tool {

class Output {
 public:
  explicit Output(CallProgress& progress) : progress_(progress) {}

  /// Throws ToolError (kOutputUnwritable) or ReaderGone.
  void Write(std::string_view bytes);
  void WriteLine(std::string_view line);
  /// Hands everything to the system. Throws as Write does.
  void Flush();

 private:
  CallProgress& progress_;
};

/// Text for a person, whatever becomes of it.
void WriteError(std::string_view line);

}  // namespace emulator::tool
