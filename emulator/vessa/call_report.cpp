#include "emulator/vessa/call_report.h"

#include <fmt/format.h>

#include <algorithm>

#include "emulator/vessa/tag_text.h"

namespace emulator::tool {
namespace {

std::string StepText(const PathStep& step) {
  std::string tag = DisplayTag(step.tag);
  if (step.items == 0) return tag;
  return fmt::format("{} {}item {}", tag, step.item_is_open != 0 ? "" : "after ", step.items);
}

std::string PathText(const CallProgress& progress) {
  const std::size_t kept = std::min<std::size_t>(progress.path_depth, CallProgress::kPathSteps);
  std::string text;
  for (std::size_t index = 0; index < kept; ++index) {
    text += (index == 0 ? "" : " > ") + StepText(progress.path[index]);
  }
  if (progress.path_depth > kept) {
    text += fmt::format(" > ... {} more levels ... > {}", progress.path_depth - kept - 1,
                        StepText(progress.last_step));
  }
  return text;
}

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
  const std::string offset =
      fmt::format("offset {}{}", progress.stream_offset, progress.at_end != 0 ? ", where the data end" : "");
  return progress.path_depth == 0 ? offset + ", at the top level" : offset + ", in " + PathText(progress);
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
