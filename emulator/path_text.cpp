#include "emulator/path_text.h"

#include <algorithm>

#include "emulator/tag_text.h"

namespace emulator {
namespace {

std::string StepText(const PathStep& step) {
  std::string text = DisplayTag(step.tag);
  if (step.items == 0) return text;
  if (step.item_is_open == 0) text += " after";
  return text + " item " + std::to_string(step.items);
}

}  // namespace

std::string PathText(std::span<const PathStep> first, std::size_t depth, const PathStep& last) {
  const std::size_t kept = std::min(first.size(), depth);
  std::string text;
  for (std::size_t index = 0; index < kept; ++index)
    text += (index == 0 ? "" : " > ") + StepText(first[index]);
  if (depth > kept)
    text += " > ... " + std::to_string(depth - kept - 1) + " more levels ... > " + StepText(last);
  return text;
}

std::string OffsetText(std::uint64_t offset, bool is_at_end) {
  return "offset " + std::to_string(offset) + (is_at_end ? ", where the data end" : "");
}

std::string PlaceText(std::uint64_t offset, bool is_at_end, const std::string& path) {
  return OffsetText(offset, is_at_end) + (path.empty() ? ", at the top level" : ", in " + path);
}

}  // namespace emulator
