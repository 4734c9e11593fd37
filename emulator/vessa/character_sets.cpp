#include "emulator/vessa/character_sets.h"

#include <array>

#include "emulator/vessa/printable_text.h"

namespace emulator::tool {
namespace {

/// The right set that a defined term begins with; those with "ISO 2022" in place of "ISO_IR" have the same number.
struct Term {
  std::string_view number;
  DesignatedSet right;
};

constexpr std::array kTerms = {
    Term{"13", kKatakana},
    Term{"100", {TextEncoding::kLatin1, 1, ""}},
    Term{"101", {TextEncoding::kLatin2, 1, ""}},
    Term{"109", {TextEncoding::kLatin3, 1, ""}},
    Term{"110", {TextEncoding::kLatin4, 1, ""}},
    Term{"126", {TextEncoding::kGreek, 1, ""}},
    Term{"127", {TextEncoding::kArabic, 1, ""}},
    Term{"138", {TextEncoding::kHebrew, 1, ""}},
    Term{"144", {TextEncoding::kCyrillic, 1, ""}},
    Term{"148", {TextEncoding::kLatin5, 1, ""}},
    Term{"166", {TextEncoding::kThai, 1, ""}},
};

std::optional<DesignatedSet> RightSetOf(std::string_view term) {
  constexpr std::string_view kPlain = "ISO_IR ";
  constexpr std::string_view kWithEscapes = "ISO 2022 IR ";
  for (const std::string_view start : {kPlain, kWithEscapes}) {
    if (!term.starts_with(start)) continue;
    for (const Term& known : kTerms) {
      if (known.number == term.substr(start.size())) return known.right;
    }
  }
  return std::nullopt;
}

}  // namespace

CharacterSets::CharacterSets(std::string_view defined_terms) {
  const std::string_view first = WithoutPadding(defined_terms.substr(0, defined_terms.find('\\')));
  if (first == "ISO_IR 192") {
    scheme_ = Scheme::kUtf8;
  } else if (first == "GB18030" || first == "GBK") {
    scheme_ = Scheme::kEncoding;
    encoding_ = first == "GBK" ? TextEncoding::kGbk : TextEncoding::kGb18030;
  } else {
    initial_.right = RightSetOf(first);
  }
}

std::optional<std::string> CharacterSets::Decode(std::string_view value, bool is_person_name) const {
  switch (scheme_) {
    case Scheme::kUtf8:
      return IsUtf8(value) ? std::optional<std::string>(value) : std::nullopt;
    case Scheme::kEncoding:
      return DecodeText(value, encoding_);
    case Scheme::kEscapes:
      break;
  }
  return DecodeEscapedText(value, initial_, is_person_name ? "\\^=" : "\\");
}

}  // namespace emulator::tool
