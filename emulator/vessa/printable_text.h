#pragma once

// Bytes of values as text that a terminal, a file or JSON can take.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace emulator::tool {

/// How the bytes of a text stand for characters (PS3.3 section C.12.1.1.2).
enum class CharacterSet { kDefault, kLatin1, kUtf8, kOther };

/// From the value of (0008,0005). Several values, and sets with escape sequences, are kOther.
CharacterSet CharacterSetNamed(std::string_view defined_term);

/// Bytes of the valid UTF-8 sequence that `text` starts with; 0 when it starts with none.
std::size_t Utf8SequenceLength(std::string_view text);

/// Text in which nothing can move a cursor or break an encoding: control characters and bytes that the character
/// set does not explain appear as \xNN. UTF-8 passes only where the set is kUtf8.
std::string Printable(std::string_view bytes, CharacterSet set);

/// The text in UTF-8, control characters included; nothing when the character set does not explain a byte.
std::optional<std::string> ToUtf8(std::string_view bytes, CharacterSet set);

/// UTF-16 as UTF-8; a unit that is half of no pair becomes U+FFFD.
std::string ToUtf8(std::u16string_view text);

/// UTF-8 as UTF-16; a byte that is part of no character becomes U+FFFD.
std::u16string ToUtf16(std::string_view text);

/// Without the blanks and zeros that pad a value to an even length.
std::string_view WithoutPadding(std::string_view value);

/// At most `columns` characters, the last of them an ellipsis when some are missing; all for 0 columns.
std::string CutToColumns(const std::string& utf8, std::size_t columns);

}  // namespace emulator::tool
