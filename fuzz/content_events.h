#pragma once

#include <cstdint>
#include <deque>
#include <string>

#include "emulator/content_sink.h"

namespace fuzz {

enum class EventKind {
  kStartContent,
  kEndContent,
  kStartElement,
  kEndElement,
  kData,
  kStartSequence,
  kEndSequence,
  kStartItem,
  kEndItem,
};

/// One event of a decomposition, as the host got it.
struct Event {
  EventKind kind = EventKind::kStartContent;
  std::uint32_t tag = 0;
  std::uint32_t number = 0;  ///< length; of kData the number of the chunk
  std::string text;          ///< VR, bytes or transfer syntax
  friend bool operator==(const Event&, const Event&) = default;
};

/// Keeps every event, in pieces: no memory of more than some hundred bytes is asked for at once.
class EventRecord : public emulator::ContentSink {
 public:
  void StartContent(std::string_view transfer_syntax) override {
    events_.push_back({EventKind::kStartContent, 0, 0, std::string(transfer_syntax)});
  }
  void EndContent() override { events_.push_back({EventKind::kEndContent, 0, 0, {}}); }
  void StartElement(std::uint32_t tag, std::string_view vr, std::uint32_t length) override {
    events_.push_back({EventKind::kStartElement, tag, length, std::string(vr)});
  }
  void EndElement(std::uint32_t tag) override { events_.push_back({EventKind::kEndElement, tag, 0, {}}); }
  void Data(std::uint32_t tag, std::uint32_t chunk, std::string_view bytes) override {
    events_.push_back({EventKind::kData, tag, chunk, std::string(bytes)});
  }
  void StartSequence() override { events_.push_back({EventKind::kStartSequence, 0, 0, {}}); }
  void EndSequence() override { events_.push_back({EventKind::kEndSequence, 0, 0, {}}); }
  void StartItem(std::uint32_t tag, std::uint32_t length) override {
    events_.push_back({EventKind::kStartItem, tag, length, {}});
  }
  void EndItem(std::uint32_t tag, std::uint32_t length) override {
    events_.push_back({EventKind::kEndItem, tag, length, {}});
  }

  const std::deque<Event>& Events() const { return events_; }

 private:
  std::deque<Event> events_;
};

}  // namespace fuzz
