#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "emulator/vessa/escaped_text.h"

namespace emulator::tool {

/// How the bytes of text values stand for characters, as (0008,0005) Specific Character Set names it (PS3.3 section
/// C.12.1.1.2, PS3.5 section 6.1).
class CharacterSets {
 public:
  /// The default repertoire, ASCII.
  CharacterSets() = default;
  /// From the value of (0008,0005). Names that are not known leave the default repertoire.
  explicit CharacterSets(std::string_view defined_terms);

  /// The whole value in UTF-8, in which each backslash parts values. Nothing when a byte has no meaning in these sets.
  /// In person names, `^` and `=` end what an escape sequence has designated.
  std::optional<std::string> Decode(std::string_view value, bool is_person_name) const;

 private:
  /// Sets that escape sequences switch; UTF-8; or an encoding of the system for the whole value.
  enum class Scheme { kEscapes, kUtf8, kEncoding };

  Scheme scheme_ = Scheme::kEscapes;
  TextEncoding encoding_ = TextEncoding::kGbk;  ///< of the scheme kEncoding
  DesignatedSets initial_;                      ///< of the scheme kEscapes
};

}  // namespace emulator::tool
