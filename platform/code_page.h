#pragma once

// Text between the system's active 8-bit code page and UTF-16.
//
// On Windows the active code page of the process decides, with all that its conversions do (best fit
// included). Elsewhere it is windows-1252, whose five undefined bytes 81, 8D, 8F, 90 and 9D stand for the
// characters of the same number; a 16-bit unit without a byte becomes '?', each half of a surrogate pair by
// itself.

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace vessa {

/// 8-bit text as 16-bit text.
/// @throws std::bad_alloc  no memory, or the system cannot convert the text
std::u16string Widen(std::string_view text);

/// 16-bit text as 8-bit text.
/// @throws std::bad_alloc  no memory, or the system cannot convert the text
std::string Narrow(std::u16string_view text);

/// Widen into storage of the caller's, without the heap: as much of the text as has room.
/// @return  units written to the front of `out`
std::size_t WidenInto(std::string_view text, std::span<char16_t> out) noexcept;

/// Narrow for a text whose characters stand for bytes: the characters 0 to 255 become the byte of that number
/// on every system; only characters above go through the code page.
/// @throws std::bad_alloc  as Narrow
std::string NarrowToBytes(std::u16string_view text);

}  // namespace vessa
