#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/binary_interface.h"

namespace bench {

/// What a host answered to the callbacks of one call, to be answered again, in the same order, by callbacks that do
/// nothing else.
class Answers {
 public:
  /// A table that passes everything on to `host` and keeps what it answers. One object at a time keeps or answers.
  const vessa::HostServices* KeepFrom(const vessa::HostServices* host);

  /// A table that answers so again; the call must be the same.
  const vessa::HostServices* AnswerAgain();
  /// Starts over with the first answer.
  void Rewind() const;

 private:
  /// As small as can be: every call reads all of them, and that is no work of the library's.
  struct Answer {
    int number = 0;             ///< or the length of the text
    std::uint32_t text_at = 0;  ///< where the text is among the others
  };

  /// One copy of each text that came, end to end.
  template <class Text>
  struct Texts {
    std::uint32_t Keep(const Text& text);

    Text all;
    std::unordered_map<Text, std::uint32_t> places;
  };

  void Keep(int number) { answers_.push_back({number, 0}); }
  void KeepText(int length, const unsigned char* text);
  void KeepText(int length, const std::uint16_t* text);

  std::vector<Answer> answers_;
  Texts<std::string> texts_;
  Texts<std::u16string> wide_texts_;
  friend struct KeepingCallbacks;
  friend struct AnsweringCallbacks;
};

}  // namespace bench
