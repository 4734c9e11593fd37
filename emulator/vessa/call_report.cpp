#include "emulator/vessa/call_report.h"

#include <fmt/format.h>

#include "emulator/vessa/tag_text.h"

namespace emulator::tool {
namespace {

std::string InputText(const CallProgress& progress) {
  return progress.input_name[0] == '\0' ? std::string() : fmt::format("{}: ", progress.input_name.data());
}

/// The one endless loop that is known: the library waits for the rest of an item of which no more will come.
bool EndsInsideDefinedItem(const CallProgress& progress) {
  const PathStep& step = progress.last_step;
  return progress.at_end != 0 && progress.path_depth > 0 && step.item_is_open != 0 &&
         step.item_length != kUndefinedLength;
}

}  // namespace

std::string PlaceText(const CallProgress& progress) {
  if (progress.path_is_followed == 0) return OffsetText(progress.stream_offset, progress.at_end != 0);
  return emulator::PlaceText(progress.stream_offset, progress.at_end != 0,
                             PathText(progress.path, progress.path_depth, progress.last_step));
}

std::string TimeoutText(const CallProgress& progress, double seconds) {
  std::string text =
      fmt::format("{}{} did not return within {} s", InputText(progress), progress.call_name.data(), seconds);
  if (EndsInsideDefinedItem(progress)) {
    text += fmt::format(
        ": the data set ends inside an item of defined length ({} bytes), and the library waits for the rest",
        progress.last_step.item_length);
  }
  return text + fmt::format("\n  at {}", PlaceText(progress));
}

std::string CrashText(const CallProgress& progress, const std::string& reason) {
  if (progress.call_name[0] == '\0') return fmt::format("crashed outside any call: {}", reason);
  return fmt::format("{}{} crashed: {}\n  at {}", InputText(progress), progress.call_name.data(), reason,
                     PlaceText(progress));
}

}  // namespace emulator::tool
