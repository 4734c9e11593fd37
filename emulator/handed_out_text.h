#pragma once

#include <string>

namespace emulator {

/// Ends the life of a text that was handed out: overwritten, and its memory given back.
/// @tparam Text  a string or vector of the units handed out
template <class Text>
void ScribbleText(Text& text) {
  constexpr int kScribble = 0x5A;
  if (text.empty()) return;
  text.assign(text.size(), static_cast<typename Text::value_type>(kScribble));
  Text().swap(text);
}

/// The text that a pop has handed out, which the library may read until the next callback.
template <class Text>
class HandedOutText {
 public:
  /// Where the text to be handed out goes.
  Text& Place() { return text_; }

  /// With the next callback the text is gone.
  void Scribble() { ScribbleText(text_); }

 private:
  Text text_;
};

}  // namespace emulator
