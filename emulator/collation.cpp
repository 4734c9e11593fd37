#include "emulator/collation.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace emulator {
namespace {

// First byte of a subscript, in the order of the kinds:
//
//   empty     nothing behind it
//   negative  as positive, every byte its complement
//   zero      nothing behind it
//   positive  exponent, 16 bits, biased, big endian; the digits of d = 0.dd... (the number is d x 10^exponent, its
//             first and last digit are not 0) as characters; an end byte below every digit
//   text      its bytes, a zero as 00 FF; the end 00 01
constexpr char kEmpty = 1;
constexpr char kNegative = 2;
constexpr char kZero = 3;
constexpr char kPositive = 4;
constexpr char kText = 5;

constexpr int kExponentBias = 0x8000;
constexpr std::size_t kExponentBytes = 2;
constexpr std::size_t kDigitsAt = 1 + kExponentBytes;
constexpr char kDigitsEnd = 0;
constexpr char kTextEscape = 0;
constexpr char kEscapedZero = '\xFF';
constexpr char kTextEnd = 1;

char Complement(char byte) {
  return static_cast<char>(static_cast<unsigned char>(~static_cast<unsigned char>(byte)));
}

/// A canonical number taken apart; zero has no digits.
struct Number {
  bool is_negative = false;
  std::string_view whole;
  std::string_view fraction;
};

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

/// Digits at the start of the text.
std::size_t DigitsIn(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size() && IsDigit(text[at])) ++at;
  return at;
}

/// Nothing for a text that is no canonical number.
std::optional<Number> AsNumber(std::string_view text) {
  if (text.empty() || text.front() > '9' || text.size() > kMaxNumberLength) return std::nullopt;
  if (text == "0") return Number{};
  Number number;
  number.is_negative = text.front() == '-';
  if (number.is_negative) text.remove_prefix(1);
  if (text.empty() || text.front() == '0') return std::nullopt;
  number.whole = text.substr(0, DigitsIn(text));
  if (number.whole.size() == text.size()) return number;
  if (text[number.whole.size()] != '.') return std::nullopt;
  number.fraction = text.substr(number.whole.size() + 1);
  if (number.fraction.empty() || number.fraction.back() == '0') return std::nullopt;
  return DigitsIn(number.fraction) == number.fraction.size() ? std::optional(number) : std::nullopt;
}

/// What stands before the digits.
void WriteExponent(int exponent, char* out) {
  const auto biased = static_cast<unsigned int>(exponent + kExponentBias);
  out[0] = kPositive;
  out[1] = static_cast<char>(static_cast<unsigned char>(biased >> 8U));
  out[2] = static_cast<char>(static_cast<unsigned char>(biased & 0xFFU));
}

/// Of digits of which the first is no zero; the last ones are cut off.
char* EndDigits(char* end) {
  while (end[-1] == '0') --end;
  *end++ = kDigitsEnd;
  return end;
}

/// The sign does not count.
char* WritePositive(const Number& number, char* out) {
  std::string_view fraction = number.fraction;
  int exponent = static_cast<int>(number.whole.size());
  if (number.whole.empty()) {
    const std::size_t zeros = fraction.find_first_not_of('0');
    exponent = -static_cast<int>(zeros);
    fraction.remove_prefix(zeros);
  }
  WriteExponent(exponent, out);
  out = std::copy(number.whole.begin(), number.whole.end(), out + kDigitsAt);
  return EndDigits(std::copy(fraction.begin(), fraction.end(), out));
}

char* WriteNumber(const Number& number, char* out) {
  char* const end = WritePositive(number, out);
  if (!number.is_negative) return end;
  *out = kNegative;
  return std::transform(out + 1, end, out + 1, Complement);
}

/// Appends what `write` writes to the place that it is given, at most `most` bytes.
template <class Write>
void AppendWritten(std::string& key, std::size_t most, const Write& write) {
  const std::size_t size = key.size();
  key.resize(size + most);
  const char* const end = write(key.data() + size);
  key.resize(static_cast<std::size_t>(end - key.data()));
}

std::size_t TextLength(std::string_view key) {
  std::size_t at = 1;
  while (key[at] != kTextEscape || key[at + 1] != kTextEnd) at += key[at] == kTextEscape ? 2U : 1U;
  return at + 2;
}

void AppendUnescaped(std::string_view bytes, std::string& text) {
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    text += bytes[at];
    if (bytes[at] == kTextEscape) ++at;
  }
}

/// The number above zero whose exponent and digits, without the end byte, these are.
void AppendNumber(std::string_view bytes, std::string& text) {
  const auto high = static_cast<unsigned char>(bytes[0]);
  const auto low = static_cast<unsigned char>(bytes[1]);
  const int exponent = high * 0x100 + low - kExponentBias;
  const std::string_view digits = bytes.substr(kExponentBytes);
  if (exponent <= 0) {
    text += '.';
    text.append(static_cast<std::size_t>(-exponent), '0').append(digits);
    return;
  }
  const auto whole = static_cast<std::size_t>(exponent);
  text.append(digits.substr(0, whole));
  if (whole >= digits.size()) {
    text.append(whole - digits.size(), '0');
  } else {
    text.append(1, '.').append(digits.substr(whole));
  }
}

}  // namespace

bool IsCanonicalNumber(std::string_view text) { return AsNumber(text).has_value(); }

char* WriteText(std::string_view text, char* out) {
  *out++ = kText;
  for (const char byte : text) {
    *out++ = byte;
    if (byte == kTextEscape) *out++ = kEscapedZero;
  }
  *out++ = kTextEscape;
  *out++ = kTextEnd;
  return out;
}

char* WriteWholeNumber(std::string_view text, char* out) {
  if (text.empty() || text.front() == '0' || text.size() > kMaxNumberLength) return nullptr;
  char* end = out + kDigitsAt;
  for (const char digit : text) {
    if (!IsDigit(digit)) return nullptr;
    *end++ = digit;
  }
  WriteExponent(static_cast<int>(text.size()), out);
  return EndDigits(end);
}

char* WriteNumberOrText(std::string_view text, char* out) {
  const std::optional<Number> number = AsNumber(text);
  if (number && text != "0") return WriteNumber(*number, out);
  if (!number && !text.empty()) return WriteText(text, out);
  *out = number ? kZero : kEmpty;
  return out + 1;
}

char* WriteSubscript(std::int64_t number, char* out) {
  if (number <= 0) {
    const std::string text = std::to_string(number);
    return WriteSubscript(text, out);
  }
  char* const digits = out + kDigitsAt;
  char* const end = std::to_chars(digits, out + kMostIntegerKeyBytes, number).ptr;
  WriteExponent(static_cast<int>(end - digits), out);
  return EndDigits(end);
}

void AppendSubscript(std::string_view text, std::string& key) {
  AppendWritten(key, MostKeyBytes(text.size()), [text](char* out) { return WriteSubscript(text, out); });
}

void AppendSubscript(const Value& subscript, std::string& key) {
  if (const auto* text = std::get_if<std::string>(&subscript)) {
    AppendSubscript(std::string_view{*text}, key);
  } else {
    const std::string number = AsBytes(subscript);
    AppendSubscript(std::string_view{number}, key);
  }
}

bool IsTextSubscript(std::string_view key) { return key.front() == kText; }

bool IsEmptySubscript(std::string_view key) { return key.front() == kEmpty; }

std::size_t SubscriptLength(std::string_view key) {
  switch (key.front()) {
    case kNegative:
      return key.find(Complement(kDigitsEnd), kDigitsAt) + 1;
    case kPositive:
      return key.find(kDigitsEnd, kDigitsAt) + 1;
    case kText:
      return TextLength(key);
    default:
      return 1;
  }
}

void AssignSubscriptText(std::string_view subscript, std::string& text) {
  text.clear();
  switch (subscript.front()) {
    case kEmpty:
      return;
    case kZero:
      text = "0";
      return;
    case kPositive:
      AppendNumber(subscript.substr(1, subscript.size() - 2), text);
      return;
    case kNegative: {
      std::string bytes(subscript.substr(1, subscript.size() - 2));
      std::transform(bytes.begin(), bytes.end(), bytes.begin(), Complement);
      text = '-';
      AppendNumber(bytes, text);
      return;
    }
    default:
      AppendUnescaped(subscript.substr(1, subscript.size() - 3), text);
  }
}

std::string SubscriptText(std::string_view key) {
  std::string text;
  AssignSubscriptText(key.substr(0, SubscriptLength(key)), text);
  return text;
}

std::string GlobalKey(std::string_view name) {
  std::string key;
  AppendWritten(key, MostKeyBytes(name.size()), [name](char* out) { return WriteText(name, out); });
  return key;
}

}  // namespace emulator
