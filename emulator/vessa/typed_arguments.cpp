#include "emulator/vessa/typed_arguments.h"

#include <fmt/format.h>

#include <array>
#include <charconv>
#include <optional>
#include <utility>

#include "emulator/vessa/exit_code.h"
#include "emulator/vessa/printable_text.h"

namespace emulator::tool {
namespace {

constexpr std::size_t kDeepestNesting = 64;

[[noreturn]] void ThrowUnreadable(std::string_view word, const char* expected) {
  throw ToolError(kWrongUsage, fmt::format("argument '{}': expected {}", PrintableUtf8(word), expected));
}

/// The whole text as a number; nothing for any other text.
template <class Number, class... Base>
std::optional<Number> ParseNumber(std::string_view text, Base... base) {
  Number value{};
  const char* const end = text.data() + text.size();
  const auto [read_to, error] = std::from_chars(text.data(), end, value, base...);
  if (error != std::errc() || read_to != end) return std::nullopt;
  return value;
}

std::int64_t IntegerIn(std::string_view text, std::string_view word) {
  const bool is_hexadecimal = text.starts_with("0x");
  const auto value =
      is_hexadecimal ? ParseNumber<std::int64_t>(text.substr(2), 16) : ParseNumber<std::int64_t>(text);
  if (!value) ThrowUnreadable(word, "an integer of 64 bits, such as i:-5 or i:0x7FE00010");
  return *value;
}

std::string BytesIn(std::string_view digits, std::string_view word) {
  std::string bytes;
  for (; !digits.empty(); digits.remove_prefix(2)) {
    const auto byte = ParseNumber<std::uint8_t>(digits.substr(0, 2), 16);
    if (!byte || digits.size() < 2) ThrowUnreadable(word, "pairs of hexadecimal digits, such as hex:00FF");
    bytes.push_back(static_cast<char>(*byte));
  }
  return bytes;
}

void AppendDecimal(ListBuilder& list, std::string_view text, std::string_view word) {
  const std::size_t mark = text.find('e');
  const auto mantissa = ParseNumber<std::int64_t>(text.substr(0, mark));
  const auto exponent = mark == std::string_view::npos ? std::optional<std::int8_t>(std::int8_t{0})
                                                       : ParseNumber<std::int8_t>(text.substr(mark + 1));
  if (!mantissa || !exponent)
    ThrowUnreadable(word, "an integer and a power of ten from -128 to 127, such as n:12e-2");
  list.Decimal(*mantissa, *exponent);
}

void AppendDouble(ListBuilder& list, std::string_view text, std::string_view word) {
  const auto value = ParseNumber<double>(text);
  if (!value) ThrowUnreadable(word, "a number, such as d:1.5");
  list.Double(*value);
}

/// Takes the words of a list apart: commas part them, except inside the brackets of a list among them. A backslash
/// takes the next character as it is.
class WordSplitter {
 public:
  void Take(char letter) {
    if (is_escaped_) {
      words_.back() += letter;
      is_escaped_ = false;
    } else if (letter == '\\') {
      is_escaped_ = true;
      if (depth_ > 0) words_.back() += letter;  // for the list inside, which reads it again
    } else if (letter == ',' && depth_ == 0) {
      words_.emplace_back();
    } else {
      CountBracket(letter);
      words_.back() += letter;
    }
  }

  std::vector<std::string> Words() && { return std::move(words_); }

 private:
  void CountBracket(char letter) {
    if (letter == '[') ++depth_;
    if (letter == ']' && depth_ > 0) --depth_;
  }

  std::vector<std::string> words_{1};
  std::size_t depth_ = 0;
  bool is_escaped_ = false;
};

std::vector<std::string> WordsOfList(std::string_view text, std::string_view word) {
  if (text.size() < 2 || text.front() != '[' || text.back() != ']') {
    ThrowUnreadable(word, "a list, such as l:[i:1,s:a]");
  }
  text = text.substr(1, text.size() - 2);
  if (text.empty()) return {};
  WordSplitter splitter;
  for (const char letter : text) splitter.Take(letter);
  return std::move(splitter).Words();
}

// A list among the words is read by the functions that read the words; kDeepestNesting ends that.
// NOLINTBEGIN(misc-no-recursion)
ListBuilder ParseWords(const std::vector<std::string>& words, std::size_t nesting);

void AppendWord(ListBuilder& list, std::string_view word, std::size_t nesting) {
  const std::size_t colon = word.find(':');
  const std::string_view type = word.substr(0, colon);
  const std::string_view text = colon == std::string_view::npos ? std::string_view() : word.substr(colon + 1);
  if (word == "absent") {
    list.Absent();
  } else if (type == "i") {
    list.Integer(IntegerIn(text, word));
  } else if (type == "s") {
    list.String(text);
  } else if (type == "w") {
    list.WideString(ToUtf16(text));
  } else if (type == "d") {
    AppendDouble(list, text, word);
  } else if (type == "n") {
    AppendDecimal(list, text, word);
  } else if (type == "hex") {
    list.String(BytesIn(text, word));
  } else if (type == "l" && nesting < kDeepestNesting) {
    list.List(ParseWords(WordsOfList(text, word), nesting + 1));
  } else {
    ThrowUnreadable(word, "i: s: w: d: n: hex: l: or absent");
  }
}

ListBuilder ParseWords(const std::vector<std::string>& words, std::size_t nesting) {
  ListBuilder list;
  for (const std::string& word : words) AppendWord(list, word, nesting);
  return list;
}
// NOLINTEND(misc-no-recursion)

std::string Quoted(const std::string& text) { return fmt::format("\"{}\"", text); }

std::string DecimalText(const ListValue& item) { return CanonicalNumber(std::get<double>(item.value)); }

}  // namespace

const char* const kTypedArgumentsHelp =
    "i:5          integer; i:0x7FE00010 in hexadecimal\n"
    "s:text       8-bit text\n"
    "w:text       16-bit text\n"
    "d:1.5        double\n"
    "n:12e-2      decimal: an integer and a power of ten\n"
    "absent       no value\n"
    "hex:00FF     8-bit text, its bytes in hexadecimal\n"
    "l:[i:1,s:a]  a list inside the list; a backslash before a comma or bracket takes it as it is\n";

ListBuilder ParseTypedArguments(const std::vector<std::string>& words) { return ParseWords(words, 0); }

std::string TypedText(const ListValue& item) {
  switch (static_cast<ListType>(item.type)) {
    case ListType::kAbsent:
      return "absent";
    case ListType::kString:
      return "string   " + Quoted(PrintableAscii(item.data));
    case ListType::kWideString:
      return "wide     " + Quoted(PrintableUtf8(ToUtf8(AsWideText(item.value))));
    case ListType::kNonNegativeInteger:
    case ListType::kNegativeInteger:
      return "integer  " + fmt::format("{}", AsInteger(item.value));
    case ListType::kNonNegativeDecimal:
    case ListType::kNegativeDecimal:
      return "decimal  " + DecimalText(item);
    case ListType::kDouble:
      return "double   " + fmt::format("{}", std::get<double>(item.value));
  }
  return fmt::format("type {}", item.type);
}

std::string TypedWord(const ListValue& item) {
  constexpr std::size_t kMostUnits = 64;
  switch (static_cast<ListType>(item.type)) {
    case ListType::kAbsent:
      return "absent";
    case ListType::kString:
      if (item.data.size() > kMostUnits) return fmt::format("s:{} bytes", item.data.size());
      return "s:" + Quoted(PrintableAscii(item.data));
    case ListType::kWideString:
      if (item.data.size() > 2 * kMostUnits) return fmt::format("w:{} units", item.data.size() / 2);
      return "w:" + Quoted(PrintableUtf8(ToUtf8(AsWideText(item.value))));
    case ListType::kNonNegativeInteger:
    case ListType::kNegativeInteger:
      return fmt::format("i:{}", AsInteger(item.value));
    case ListType::kNonNegativeDecimal:
    case ListType::kNegativeDecimal:
      return "n:" + DecimalText(item);
    case ListType::kDouble:
      return fmt::format("d:{}", std::get<double>(item.value));
  }
  return fmt::format("type {}", item.type);
}

}  // namespace emulator::tool
