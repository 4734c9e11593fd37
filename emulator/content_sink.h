#pragma once

#include <cstdint>
#include <string_view>

namespace emulator {

/// Receives the events of a decomposition in document order. A fragment of encapsulated pixel data comes as an item
/// with the tag of an item itself, the end of the fragments as one with the tag of the sequence delimitation; the
/// items of a sequence come with the sequence's tag. What a function throws ends the decomposition.
class ContentSink {
 public:
  virtual ~ContentSink() = default;

  virtual void StartContent(std::string_view transfer_syntax) = 0;
  virtual void EndContent() = 0;
  virtual void StartElement(std::uint32_t tag, std::string_view vr, std::uint32_t length) = 0;
  virtual void EndElement(std::uint32_t tag) = 0;
  /// Chunks of a value are numbered from 1.
  virtual void Data(std::uint32_t tag, std::uint32_t chunk, std::string_view bytes) = 0;
  virtual void StartSequence() = 0;
  virtual void EndSequence() = 0;
  virtual void StartItem(std::uint32_t tag, std::uint32_t length) = 0;
  virtual void EndItem(std::uint32_t tag, std::uint32_t length) = 0;

 protected:
  ContentSink() = default;
  ContentSink(const ContentSink&) = default;
  ContentSink& operator=(const ContentSink&) = default;
};

}  // namespace emulator
