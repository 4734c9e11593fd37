#pragma once

// Standard output, buffered in the memory that the watching process shares: when the library ends this process, what
// was printed before is still written.

#include <string_view>

#include "emulator/vessa/call_progress.h"
#include "emulator/vessa/output_turn.h"

namespace emulator::tool {

class Output {
 public:
  explicit Output(CallProgress& progress, OutputTurn turn = {}) : progress_(progress), turn_(turn) {}

  /// Throws ToolError (kOutputUnwritable) or ReaderGone.
  void Write(std::string_view bytes);
  void WriteLine(std::string_view line);
  /// Hands everything to the system. Throws as Write does.
  void Flush();
  /// After Write has thrown a ToolError.
  bool HasFailed() const { return has_failed_; }

 private:
  CallProgress& progress_;
  OutputTurn turn_;
  bool has_failed_ = false;
};

/// Text for a person, whatever becomes of it.
void WriteError(std::string_view line);
/// The same for what went wrong, with the name of the tool.
void WriteFailure(std::string_view message);

}  // namespace emulator::tool
