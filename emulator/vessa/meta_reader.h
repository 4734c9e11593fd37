#pragma once

#include <string>

#include "emulator/vessa/content_sink.h"

namespace emulator::tool {

/// Passes the events of a file's meta information on and keeps the transfer syntax that it names (PS3.10 section 7.1).
class MetaReader : public ContentSink {
 public:
  explicit MetaReader(ContentSink& next) : next_(next) {}

  /// Without the padding; empty when there was none.
  std::string TransferSyntax() const;

  void StartContent(std::string_view transfer_syntax) override { next_.StartContent(transfer_syntax); }
  void EndContent() override { next_.EndContent(); }
  void StartElement(std::uint32_t tag, std::string_view vr, std::uint32_t length) override {
    next_.StartElement(tag, vr, length);
  }
  void EndElement(std::uint32_t tag) override { next_.EndElement(tag); }
  void Data(std::uint32_t tag, std::uint32_t chunk, std::string_view bytes) override;
  void StartSequence() override { next_.StartSequence(); }
  void EndSequence() override { next_.EndSequence(); }
  void StartItem(std::uint32_t tag, std::uint32_t length) override { next_.StartItem(tag, length); }
  void EndItem(std::uint32_t tag, std::uint32_t length) override { next_.EndItem(tag, length); }

 private:
  ContentSink& next_;
  std::string value_;
};

}  // namespace emulator::tool
