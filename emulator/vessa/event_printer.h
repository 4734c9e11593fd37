#pragma once

#include "emulator/vessa/content_sink.h"
#include "emulator/vessa/output.h"

namespace emulator::tool {

/// Prints each event as a line of text; of a chunk's bytes only the first ones.
class EventTextPrinter : public ContentSink {
 public:
  EventTextPrinter(Output& output, bool shows_all_bytes)
      : output_(output), shows_all_bytes_(shows_all_bytes) {}

  void StartContent(std::string_view transfer_syntax) override;
  void EndContent() override;
  void StartElement(std::uint32_t tag, std::string_view vr, std::uint32_t length) override;
  void EndElement(std::uint32_t tag) override;
  void Data(std::uint32_t tag, std::uint32_t chunk, std::string_view bytes) override;
  void StartSequence() override;
  void EndSequence() override;
  void StartItem(std::uint32_t tag, std::uint32_t length) override;
  void EndItem(std::uint32_t tag, std::uint32_t length) override;

 private:
  Output& output_;
  bool shows_all_bytes_;
};

/// Prints each event as a JSON object in a line, with all bytes in hexadecimal.
class EventJsonPrinter : public ContentSink {
 public:
  explicit EventJsonPrinter(Output& output) : output_(output) {}

  void StartContent(std::string_view transfer_syntax) override;
  void EndContent() override;
  void StartElement(std::uint32_t tag, std::string_view vr, std::uint32_t length) override;
  void EndElement(std::uint32_t tag) override;
  void Data(std::uint32_t tag, std::uint32_t chunk, std::string_view bytes) override;
  void StartSequence() override;
  void EndSequence() override;
  void StartItem(std::uint32_t tag, std::uint32_t length) override;
  void EndItem(std::uint32_t tag, std::uint32_t length) override;

 private:
  Output& output_;
};

}  // namespace emulator::tool
