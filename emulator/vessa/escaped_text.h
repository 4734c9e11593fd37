#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "emulator/platform/text_encoding.h"

namespace emulator::tool {

/// A set of characters that an escape sequence designates (PS3.3 section C.12.1.1.2): how its bytes, with the high bit
/// set, stand in an encoding of the system.
struct DesignatedSet {
  TextEncoding encoding = TextEncoding::kLatin1;
  std::size_t bytes = 1;    ///< of a character
  std::string_view prefix;  ///< stands before each character in the encoding
};

/// Text with escape sequences. Bytes below 80 belong to the left set, others to the right one; no left set stands for
/// ASCII.
struct DesignatedSets {
  std::optional<DesignatedSet> left;
  std::optional<DesignatedSet> right;
};

/// The text in UTF-8, beginning with the sets `initial`, which delimiters and control characters restore as well.
/// Nothing when an escape sequence or a byte has no meaning.
std::optional<std::string> DecodeEscapedText(std::string_view text, const DesignatedSets& initial,
                                             std::string_view delimiters);

/// JIS X 0201 katakana, a right set.
inline constexpr DesignatedSet kKatakana{TextEncoding::kJapanese, 1, "\x8E"};

}  // namespace emulator::tool
