#include "emulator/vessa/json_value.h"

#include <fmt/format.h>

#include <array>
#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>

#include "emulator/vessa/numbers.h"
#include "emulator/vessa/printable_text.h"
#include "emulator/vessa/tag_text.h"

namespace emulator::tool {
namespace {

constexpr std::array<const char*, 3> kNameGroups = {"Alphabetic", "Ideographic", "Phonetic"};

/// Takes the text up to the next separator out of `rest`; false when there was none.
bool TakeUpTo(char separator, std::string_view& rest, std::string_view& part) {
  const std::size_t end = rest.find(separator);
  part = rest.substr(0, end);
  rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
  return end != std::string_view::npos;
}

std::string_view WithoutLeadingBlanks(std::string_view text) {
  const std::size_t start = text.find_first_not_of(' ');
  return start == std::string_view::npos ? std::string_view() : text.substr(start);
}

/// IEEE 754 has values that JSON's numbers have not.
std::string JsonNumber(double value) {
  if (std::isnan(value)) return R"("NaN")";
  if (std::isinf(value)) return value > 0 ? R"("inf")" : R"("-inf")";
  return fmt::format("{}", value);
}

/// A number in characters as a JSON number, as it is written when JSON allows that; else the text.
std::string JsonNumberFromText(std::string_view text) {
  std::string_view number = WithoutLeadingBlanks(text);
  if (nlohmann::json::accept(number.begin(), number.end())) return std::string(number);
  if (number.size() > 1 && number.front() == '+' && number[1] != '-') number.remove_prefix(1);
  double value = 0;
  const char* const end = number.data() + number.size();
  const auto [read_to, error] = std::from_chars(number.data(), end, value);
  if (error != std::errc() || read_to != end) return {};
  return JsonNumber(value);
}

/// The bytes as UTF-8 at any price: what is not ASCII becomes U+FFFD.
std::string AsciiOf(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    if ((static_cast<unsigned char>(byte) & 0x80U) == 0) {
      text += byte;
    } else {
      text += "\xEF\xBF\xBD";
    }
  }
  return text;
}

std::string JsonPersonName(std::string_view text) {
  std::string json = "{";
  std::string_view rest = text;
  for (const char* const group : kNameGroups) {
    std::string_view part;
    TakeUpTo('=', rest, part);
    if (part.empty()) continue;
    json += fmt::format("{}\"{}\":{}", json.size() > 1 ? "," : "", group, JsonString(std::string(part)));
  }
  return json + "}";
}

std::string JsonText(std::string_view text, ValueKind kind) {
  if (text.empty()) return "null";
  if (kind == ValueKind::kPersonName) return JsonPersonName(text);
  std::string number = kind == ValueKind::kNumberText ? JsonNumberFromText(text) : std::string();
  return number.empty() ? JsonString(std::string(text)) : number;
}

JsonValues TextValues(const ValueRepresentation& vr, std::string_view bytes,
                      const CharacterSets& characters) {
  if (WithoutPadding(bytes).empty()) return {};
  const bool is_local = vr.kind == ValueKind::kLocalText || vr.kind == ValueKind::kPersonName;
  const CharacterSets own = is_local ? characters : CharacterSets();
  const std::optional<std::string> decoded = own.Decode(bytes, vr.kind == ValueKind::kPersonName);
  const std::string text = decoded ? *decoded : AsciiOf(bytes);
  std::string_view rest = WithoutPadding(text);
  std::string array = "[";
  for (bool has_more = true; has_more;) {
    std::string_view part = rest;
    has_more = vr.has_many_values && TakeUpTo('\\', rest, part);
    array += JsonText(WithoutPadding(part), vr.kind) + (has_more ? "," : "]");
  }
  return {array, !decoded};
}

std::string JsonUnit(std::string_view unit, ValueKind kind) {
  if (kind == ValueKind::kTag) return fmt::format("\"{}\"", PlainTag(TagValue(unit)));
  if (kind == ValueKind::kFloat) return JsonNumber(FloatValue(unit));
  return NumberText(unit, kind);
}

std::optional<JsonValues> UnitValues(const ValueRepresentation& vr, std::string_view bytes) {
  if (bytes.size() % vr.unit_bytes != 0) return std::nullopt;
  if (bytes.empty()) return JsonValues{};
  std::string array;
  for (; !bytes.empty(); bytes.remove_prefix(vr.unit_bytes)) {
    array += (array.empty() ? '[' : ',') + JsonUnit(bytes.substr(0, vr.unit_bytes), vr.kind);
  }
  return JsonValues{array + "]"};
}

}  // namespace

std::optional<JsonValues> JsonValuesOf(const ValueRepresentation& vr, std::string_view bytes,
                                       const CharacterSets& characters) {
  switch (vr.kind) {
    case ValueKind::kText:
    case ValueKind::kLocalText:
    case ValueKind::kPersonName:
    case ValueKind::kNumberText:
      return TextValues(vr, bytes, characters);
    case ValueKind::kUnsigned:
    case ValueKind::kSigned:
    case ValueKind::kFloat:
    case ValueKind::kTag:
      return UnitValues(vr, bytes);
    case ValueKind::kSequence:
    case ValueKind::kBytes:
      break;
  }
  return std::nullopt;
}

std::string JsonString(const std::string& utf8) { return nlohmann::json(utf8).dump(); }

}  // namespace emulator::tool
