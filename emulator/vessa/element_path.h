#pragma once

#include <cstdint>
#include <vector>

#include "emulator/vessa/call_progress.h"

namespace emulator::tool {

/// The elements that are open while a data set is decomposed. Follows the events and keeps the shared progress up to
/// date, so that the watching process knows the path even when this one ends inside the library.
class ElementPath {
 public:
  explicit ElementPath(CallProgress& progress);
  ~ElementPath();
  ElementPath(const ElementPath&) = delete;
  ElementPath& operator=(const ElementPath&) = delete;

  void StartElement(std::uint32_t tag);
  void EndElement();
  void StartItem(std::uint32_t length);
  void EndItem();
  void Clear();

  bool IsTopLevel() const { return steps_.empty(); }
  const std::vector<PathStep>& Steps() const { return steps_; }

 private:
  void Publish();

  CallProgress& progress_;
  std::vector<PathStep> steps_;
};

}  // namespace emulator::tool
