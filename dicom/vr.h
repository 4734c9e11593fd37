#pragma once

#include <string_view>

namespace vessa {

/// A value representation (PS3.5 section 6.2): two letters. Streams may hold any two bytes in their place, so
/// any are allowed here; a zero terminator always follows them.
class Vr {
 public:
  constexpr Vr() = default;
  constexpr Vr(char first, char second) : letters_{first, second, '\0'} {}
  /// The first two characters of `text`; missing ones are zero.
  constexpr explicit Vr(std::string_view text)
      : letters_{!text.empty() ? text[0] : '\0', text.size() > 1 ? text[1] : '\0', '\0'} {}

  /// Up to the first zero byte: what a reader of a terminated text sees.
  constexpr const char* CString() const { return letters_; }
  constexpr std::string_view Text() const { return std::string_view(letters_); }
  constexpr bool IsEmpty() const { return letters_[0] == '\0'; }

  constexpr bool operator==(const Vr& other) const {
    return letters_[0] == other.letters_[0] && letters_[1] == other.letters_[1];
  }

 private:
  char letters_[3] = {};
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
