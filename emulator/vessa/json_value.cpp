#include "emulator/vessa/json_value.h"

#include <fmt/format.h>

#include <array>
#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>

#include "emulator/vessa/numbers.h"
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

/// The text values of one element, turned into JSON one by one.
class TextValues {
 public:
  TextValues(const ValueRepresentation& vr, CharacterSet set) : vr_(vr), set_(set) {}

  JsonValues Convert(std::string_view bytes) {
    std::string_view rest = WithoutPadding(bytes);
    if (rest.empty()) return {};
    std::string array = "[";
    for (bool has_more = true; has_more;) {
      std::string_view part = rest;
      has_more = vr_.has_many_values && TakeUpTo('\\', rest, part);
      array += OneValue(WithoutPadding(part)) + (has_more ? "," : "]");
    }
    return {array, has_unread_text_};
  }

 private:
  std::string OneValue(std::string_view text) {
    if (text.empty()) return "null";
    if (vr_.kind == ValueKind::kPersonName) return PersonName(text);
    if (vr_.kind == ValueKind::kNumberText) {
      const std::string number = JsonNumberFromText(text);
      if (!number.empty()) return number;
    }
    return Text(text);
  }

  std::string PersonName(std::string_view text) {
    std::string json = "{";
    std::string_view rest = text;
    for (const char* const group : kNameGroups) {
      std::string_view part;
      TakeUpTo('=', rest, part);
      if (part.empty()) continue;
      json += fmt::format("{}\"{}\":{}", json.size() > 1 ? "," : "", group, Text(part));
    }
    return json + "}";
  }

  std::string Text(std::string_view text) {
    const bool is_local = vr_.kind == ValueKind::kLocalText || vr_.kind == ValueKind::kPersonName;
    const CharacterSet set = is_local ? set_ : CharacterSet::kDefault;
    if (set == CharacterSet::kOther && text.find('\x1B') != std::string_view::npos) has_unread_text_ = true;
    if (const std::optional<std::string> utf8 = ToUtf8(text, set)) return JsonString(*utf8);
    has_unread_text_ = true;
    return JsonString(Printable(text, set));
  }

  const ValueRepresentation& vr_;
  CharacterSet set_;
  bool has_unread_text_ = false;
};

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
                                       CharacterSet set) {
  switch (vr.kind) {
    case ValueKind::kText:
    case ValueKind::kLocalText:
    case ValueKind::kPersonName:
    case ValueKind::kNumberText:
      return TextValues(vr, set).Convert(bytes);
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
