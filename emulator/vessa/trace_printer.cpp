#include "emulator/vessa/trace_printer.h"

#include <fmt/format.h>

#include <string>

#include "emulator/library.h"
#include "emulator/list.h"
#include "emulator/vessa/output.h"
#include "emulator/vessa/typed_arguments.h"

namespace emulator::tool {
namespace {

double Seconds(std::chrono::nanoseconds time) { return std::chrono::duration<double>(time).count(); }

/// The list in a buffer, word by word; its bytes where it is none.
std::string BufferWords(const vessa::HostString& buffer) {
  if (buffer.count > vessa::HostString::kCapacity) return fmt::format(" {} bytes", buffer.count);
  std::string words;
  try {
    for (const ListValue& item : ReadList(Contents(buffer))) words += " " + TypedWord(item);
  } catch (const std::invalid_argument&) {
    words = " ";
    AppendQuoted(Contents(buffer), words);
  }
  return words;
}

std::string CallText(const CallOut& call) {
  std::string text(call.buffer == nullptr ? std::string() : BufferWords(*call.buffer));
  for (const std::int32_t number : call.numbers) text += fmt::format(" {}", number);
  return text;
}

}  // namespace

void TracePrinter::OnCall(const CallOut& call) {
  WriteError(fmt::format("{:{}}{}{}", "", 2 * depth_, call.name, CallText(call)));
  ++depth_;
}

void TracePrinter::OnCallback(const Callback& callback) {
  WriteError(fmt::format("{:{}}{} <{:.6f}>", "", 2 * depth_, CallbackLine(callback, TextForm::kShort),
                         Seconds(callback.took)));
}

void TracePrinter::OnReturn(const CallOut& call, std::int32_t returned, std::chrono::nanoseconds took) {
  --depth_;
  const std::string results = call.buffer == nullptr ? std::string() : BufferWords(*call.buffer);
  WriteError(fmt::format("{:{}}= {}{} <{:.6f}>", "", 2 * depth_, returned, results, Seconds(took)));
}

}  // namespace emulator::tool
