#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "emulator/call_watcher.h"

namespace emulator {

/// The first line of a recording.
inline constexpr std::string_view kRecordingTitle = "vessa-recording 1";

/// Writes calls and their callbacks as lines of text, each complete in itself, with all bytes that passed:
///
///     vessa-recording 1
///     # a comment
///     call zfDecomposeStream "\x03\x04..."    a call-out: its buffer, where it takes one, and its integers
///     PushMethod 1 "Peek" 1                   a callback and its answer, see CallbackLine
///     ...
///     return 0 "\x02\x04"                     what the call-out returned, and what it left in the buffer
///     end                                     nothing is missing
///
/// A call made by the host inside a callback stands, from "call" to "return", before that callback.
class RecordingWriter : public CallWatcher {
 public:
  /// @param take  is given text to be written; what it throws comes out of Finish, and nothing is written any more
  explicit RecordingWriter(std::function<void(std::string_view text)> take);

  void Comment(std::string_view text);
  void OnCall(const CallOut& call) override;
  void OnCallback(const Callback& callback) override;
  void OnReturn(const CallOut& call, std::int32_t returned, std::chrono::nanoseconds took) override;

  /// Writes the last line. Throws what writing has thrown.
  void Finish();

 private:
  void WriteLine(std::string line);

  std::function<void(std::string_view)> take_;
  std::exception_ptr error_;
};

/// " " and the content of a buffer in quotes, or "N bytes" for a count that no buffer has; nothing for none.
std::string BufferText(const vessa::HostString* buffer);

}  // namespace emulator
