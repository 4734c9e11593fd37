#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "emulator/content_sink.h"

namespace fuzz {

/// Holds each event against the bytes of the data set (PS3.5 section 7) for which it must stand, and so knows how far
/// the library has come in the stream. Knows nothing of the library's code; a difference is a finding.
class StreamAccount : public emulator::ContentSink {
 public:
  explicit StreamAccount(std::string_view bytes) : bytes_{bytes} {}

  void StartContent(std::string_view transfer_syntax) override;
  void EndContent() override;
  void StartElement(std::uint32_t tag, std::string_view vr, std::uint32_t length) override;
  void EndElement(std::uint32_t tag) override;
  void Data(std::uint32_t tag, std::uint32_t chunk, std::string_view bytes) override;
  void StartSequence() override;
  void EndSequence() override;
  void StartItem(std::uint32_t tag, std::uint32_t length) override;
  void EndItem(std::uint32_t tag, std::uint32_t length) override;

  /// Bytes for which the events so far stand.
  std::size_t Position() const { return position_; }

  /// True when the next thing that the library looks for is an element of an item of defined length that is not over,
  /// and the stream has no byte left: the one case in which a decomposition never returns.
  bool PeeksForEver() const;

  /// True when every element, sequence and item that began has ended, and so has the content.
  bool IsClosed() const { return ended_ && open_.empty(); }

 private:
  enum class Kind { kElement, kSequence, kItem, kFragment };
  struct Open {
    Kind kind;
    std::uint32_t tag;
    std::uint32_t length;
    std::uint64_t end;         ///< position behind it, when its length is defined
    std::uint32_t chunks = 0;  ///< of a value, so far
    std::uint64_t left = 0;    ///< bytes of the value to come
  };

  void Match(std::string_view expected);
  void MatchTag(std::uint32_t tag);
  void MatchNumber(std::uint32_t number, std::size_t bytes);
  void PassItemDelimitation();
  Open& Innermost(Kind kind);
  void Push(Kind kind, std::uint32_t tag, std::uint32_t length);

  std::string_view bytes_;
  std::size_t position_ = 0;
  bool is_explicit_ = false;
  bool started_ = false;
  bool ended_ = false;
  std::vector<Open> open_;
};

}  // namespace fuzz
