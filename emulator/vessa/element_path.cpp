#include "emulator/vessa/element_path.h"

namespace emulator::tool {

ElementPath::ElementPath(CallProgress& progress) : progress_(progress) {
  progress_.path_is_followed = 1;
  Clear();
}

ElementPath::~ElementPath() {
  Clear();
  progress_.path_is_followed = 0;
}

void ElementPath::StartElement(std::uint32_t tag) {
  steps_.push_back({tag, 0, 0, 0});
  Publish();
}

void ElementPath::EndElement() {
  if (!steps_.empty()) steps_.pop_back();
  Publish();
}

void ElementPath::StartItem(std::uint32_t length) {
  if (steps_.empty()) return;
  PathStep& step = steps_.back();
  step.items += 1;
  step.item_is_open = 1;
  step.item_length = length;
  Publish();
}

void ElementPath::EndItem() {
  if (!steps_.empty()) steps_.back().item_is_open = 0;
  Publish();
}

void ElementPath::Clear() {
  steps_.clear();
  Publish();
}

void ElementPath::Publish() {
  progress_.path_depth = static_cast<std::uint32_t>(steps_.size());
  if (steps_.empty()) return;
  progress_.last_step = steps_.back();
  if (steps_.size() <= CallProgress::kPathSteps) progress_.path[steps_.size() - 1] = steps_.back();
}

}  // namespace emulator::tool
