#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_set>
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
  struct Answer {
    int number = 0;        ///< or the length of the text
    void* text = nullptr;  ///< one copy of each that came
  };

  void Keep(int number) { answers_.push_back({number, nullptr}); }
  void KeepText(int length, const unsigned char* text);
  void KeepText(int length, const std::uint16_t* text);

  std::vector<Answer> answers_;
  std::unordered_set<std::string> texts_;
  std::unordered_set<std::u16string> wide_texts_;
  friend struct KeepingCallbacks;
  friend struct AnsweringCallbacks;
};

}  // namespace bench
