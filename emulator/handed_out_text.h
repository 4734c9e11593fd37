#pragma once

#include <string>

namespace emulator {

/// The text that a pop has handed out, which the library may read until the next callback.
/// @tparam Text  a string or vector of the units handed out
template <class Text>
class HandedOutText {
 public:
  /// Where the text to be handed out goes.
  Text& Place() { return text_; }

  /// With the next callback the text is gone: overwritten, and its memory given back.
  void Scribble() {
    if (text_.empty()) return;
    text_.assign(text_.size(), static_cast<typename Text::value_type>(kScribble));
    Text().swap(text_);
  }

 private:
  static constexpr int kScribble = 0x5A;
  Text text_;
};

}  // namespace emulator
