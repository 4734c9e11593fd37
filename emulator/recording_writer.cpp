#include "emulator/recording_writer.h"

#include <exception>
#include <utility>

#include "emulator/library.h"

namespace emulator {

RecordingWriter::RecordingWriter(std::function<void(std::string_view)> take) : take_(std::move(take)) {
  WriteLine(std::string(kRecordingTitle));
}

void RecordingWriter::Comment(std::string_view text) { WriteLine("# " + std::string(text)); }

void RecordingWriter::OnCall(const CallOut& call) {
  std::string line = "call " + std::string(call.name) + BufferText(call.buffer);
  for (const std::int32_t number : call.numbers) line += " " + std::to_string(number);
  WriteLine(std::move(line));
}

void RecordingWriter::OnCallback(const Callback& callback) {
  WriteLine(CallbackLine(callback, TextForm::kWhole));
}

void RecordingWriter::OnReturn(const CallOut& call, std::int32_t returned,
                               std::chrono::nanoseconds /*took*/) {
  WriteLine("return " + std::to_string(returned) + BufferText(call.buffer));
}

void RecordingWriter::Finish() {
  WriteLine("end");
  if (error_) std::rethrow_exception(error_);
}

void RecordingWriter::WriteLine(std::string line) {
  if (error_) return;
  try {
    take_(line += '\n');
  } catch (...) {
    error_ = std::current_exception();  // the library is at work, and must not meet it
  }
}

std::string BufferText(const vessa::HostString* buffer) {
  if (buffer == nullptr) return {};
  if (buffer->count > vessa::HostString::kCapacity) return " " + std::to_string(buffer->count) + " bytes";
  std::string text = " ";
  AppendQuoted(Contents(*buffer), text);
  return text;
}

}  // namespace emulator
