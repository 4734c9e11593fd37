#pragma once

// Bytes of values as text that a terminal, a file or JSON can take.

#include <cstddef>
#include <string>
#include <string_view>

namespace emulator::tool {

/// Bytes of the valid UTF-8 sequence that `text` starts with; 0 when it starts with none.
std::size_t Utf8SequenceLength(std::string_view text);

bool IsUtf8(std::string_view text);

/// UTF-8 in which nothing can move a cursor or break the encoding: control characters, and bytes that are part of no
/// character, appear as \xNN.
std::string PrintableUtf8(std::string_view text);

/// The same for bytes whose character set is not known: whatever is not ASCII appears as \xNN.
std::string PrintableAscii(std::string_view bytes);

/// UTF-16 as UTF-8; a unit that is half of no pair becomes U+FFFD.
std::string ToUtf8(std::u16string_view text);

/// UTF-8 as UTF-16; a byte that is part of no character becomes U+FFFD.
std::u16string ToUtf16(std::string_view text);

/// Without the blanks and zeros that pad a value to an even length.
std::string_view WithoutPadding(std::string_view value);

/// At most `columns` characters, the last of them an ellipsis when some are missing; all for 0 columns.
std::string CutToColumns(const std::string& utf8, std::size_t columns);

}  // namespace emulator::tool
