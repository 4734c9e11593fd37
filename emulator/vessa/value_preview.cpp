#include "emulator/vessa/value_preview.h"

#include <fmt/format.h>

#include "emulator/hex_text.h"
#include "emulator/vessa/numbers.h"
#include "emulator/vessa/printable_text.h"
#include "emulator/vessa/tag_text.h"
#include "emulator/vessa/value_representation.h"

namespace emulator::tool {
namespace {

constexpr std::size_t kShownHexBytes = 32;
constexpr std::size_t kShownNumbers = 64;

std::string UnitText(std::string_view unit, ValueKind kind) {
  return kind == ValueKind::kTag ? DisplayTag(TagValue(unit)) : NumberText(unit, kind);
}

/// Whole units with backslashes between them; a unit that is cut short is left out.
std::string UnitsText(std::string_view bytes, const ValueRepresentation& vr, bool is_whole, bool is_limited) {
  std::string text;
  for (std::size_t count = 0; bytes.size() >= vr.unit_bytes; ++count) {
    if (is_limited && count == kShownNumbers) return text + "\\...";
    if (count > 0) text += '\\';
    text += UnitText(bytes.substr(0, vr.unit_bytes), vr.kind);
    bytes.remove_prefix(vr.unit_bytes);
  }
  return is_whole ? text : text + "\\...";
}

std::string CharactersText(std::string_view bytes, const ValueRepresentation& vr,
                           const CharacterSets& characters) {
  const bool is_person_name = vr.kind == ValueKind::kPersonName;
  if (!is_person_name && vr.kind != ValueKind::kLocalText) return PrintableAscii(bytes);
  const std::optional<std::string> text = characters.Decode(bytes, is_person_name);
  return text ? PrintableUtf8(*text) : PrintableAscii(bytes);
}

std::string BytesText(std::string_view bytes, bool is_whole) {
  const std::string text = HexText(bytes.substr(0, kShownHexBytes));
  return bytes.size() > kShownHexBytes || !is_whole ? text + "..." : text;
}

}  // namespace

std::string PreviewOf(const Preview& preview, std::string_view start, bool is_whole) {
  const ValueRepresentation& vr = FindValueRepresentation(preview.vr);
  if (preview.is_hex) return CutToColumns(HexText(start) + (is_whole ? "" : "..."), preview.columns);
  switch (vr.kind) {
    case ValueKind::kText:
    case ValueKind::kNumberText:
    case ValueKind::kLocalText:
    case ValueKind::kPersonName:
      return CutToColumns(CharactersText(is_whole ? WithoutPadding(start) : start, vr, preview.characters),
                          preview.columns);
    case ValueKind::kUnsigned:
    case ValueKind::kSigned:
    case ValueKind::kFloat:
    case ValueKind::kTag:
      return CutToColumns(UnitsText(start, vr, is_whole, preview.columns > 0), preview.columns);
    case ValueKind::kSequence:
      return {};
    case ValueKind::kBytes:
      break;
  }
  return CutToColumns(BytesText(start, is_whole), preview.columns);
}

}  // namespace emulator::tool
