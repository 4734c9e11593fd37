#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vessa {

/// A value representation (PS3.5 section 6.2): two letters. Streams may hold any two bytes in their place, so
/// any are allowed here. They are kept as one number, for numbers stay in registers on their way to the handlers.
class Vr {
 public:
  constexpr Vr() = default;
  constexpr Vr(char first, char second)
      : letters_{static_cast<std::uint16_t>(static_cast<std::uint8_t>(first) |
                                            static_cast<std::uint8_t>(second) << 8)} {}
  /// The first two characters of `text`; missing ones are zero.
  constexpr explicit Vr(std::string_view text)
      : Vr(!text.empty() ? text[0] : '\0', text.size() > 1 ? text[1] : '\0') {}

  /// Up to the first zero byte: what a reader of a terminated text sees. The view is into this object.
  std::string_view Text() const {
    static_assert(std::endian::native == std::endian::little);
    return {reinterpret_cast<const char*>(&letters_), TextLength()};
  }
  constexpr char First() const { return static_cast<char>(letters_ & 0xFF); }
  constexpr char Second() const { return static_cast<char>(letters_ >> 8); }
  constexpr bool IsEmpty() const { return First() == '\0'; }

  constexpr bool operator==(const Vr& other) const = default;

 private:
  constexpr std::size_t TextLength() const {
    if (IsEmpty()) return 0;
    return Second() == '\0' ? 1 : 2;
  }

  std::uint16_t letters_ = 0;  // the first one in the low byte
};

inline constexpr Vr kVrLO{'L', 'O'};
inline constexpr Vr kVrNA{'N', 'A'};  ///< the dictionary's own: item and delimitation tags
inline constexpr Vr kVrOB{'O', 'B'};
inline constexpr Vr kVrOF{'O', 'F'};
inline constexpr Vr kVrOW{'O', 'W'};
inline constexpr Vr kVrOX{'O', 'X'};  ///< the dictionary's own: OB or OW
inline constexpr Vr kVrSQ{'S', 'Q'};
inline constexpr Vr kVrUN{'U', 'N'};
inline constexpr Vr kVrUS{'U', 'S'};
inline constexpr Vr kVrUT{'U', 'T'};
inline constexpr Vr kVrXS{'X', 'S'};  ///< the dictionary's own: US or SS

/// True for OX, OB, OW, OF, SQ, UT and UN: in explicit syntaxes two reserved bytes and a 4-byte length follow
/// these; a 2-byte length follows every other. The list is kept as hosts have always met it: the later VRs
/// that PS3.5 gives a 4-byte length (OD, OL, OV, UC, UR, SV, UV) are not in it.
constexpr bool HasLongLength(Vr vr) {
  return vr == kVrOX || vr == kVrOB || vr == kVrOW || vr == kVrOF || vr == kVrSQ || vr == kVrUT ||
         vr == kVrUN;
}

}  // namespace vessa
