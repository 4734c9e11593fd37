#pragma once

#include "emulator/vessa/content_sink.h"

namespace emulator::tool {

/// Takes no notice of anything.
class NullSink : public ContentSink {
 public:
  void StartContent(std::string_view) override {}
  void EndContent() override {}
  void StartElement(std::uint32_t, std::string_view, std::uint32_t) override {}
  void EndElement(std::uint32_t) override {}
  void Data(std::uint32_t, std::uint32_t, std::string_view) override {}
  void StartSequence() override {}
  void EndSequence() override {}
  void StartItem(std::uint32_t, std::uint32_t) override {}
  void EndItem(std::uint32_t, std::uint32_t) override {}
};

}  // namespace emulator::tool
