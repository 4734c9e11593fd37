#include "emulator/collation.h"

#include <algorithm>
#include <cstdint>

#include "emulator/host_error.h"

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
constexpr char kDigitsEnd = 0;
constexpr char kTextEscape = 0;
constexpr char kEscapedZero = '\xFF';
constexpr char kTextEnd = 1;

char Complement(char byte) {
  return static_cast<char>(static_cast<unsigned char>(~static_cast<unsigned char>(byte)));
}

bool AllDigits(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

void AppendText(std::string_view text, std::string& key) {
  key += kText;
  for (std::size_t zero = text.find(kTextEscape); zero != std::string_view::npos;
       zero = text.find(kTextEscape)) {
    key += text.substr(0, zero + 1);
    key += kEscapedZero;
    text.remove_prefix(zero + 1);
  }
  key += text;
  key += kTextEscape;
  key += kTextEnd;
}

/// `text` is a canonical number above zero.
void AppendPositive(std::string_view text, std::string& key) {
  const std::size_t point = text.find('.');
  const std::string_view whole = text.substr(0, point);
  std::string_view fraction = point == std::string_view::npos ? std::string_view() : text.substr(point + 1);
  int exponent = static_cast<int>(whole.size());
  if (whole.empty()) {
    const std::size_t zeros = fraction.find_first_not_of('0');
    exponent = -static_cast<int>(zeros);
    fraction.remove_prefix(zeros);
  }
  const auto biased = static_cast<unsigned int>(exponent + kExponentBias);
  key += kPositive;
  key += static_cast<char>(static_cast<unsigned char>(biased >> 8U));
  key += static_cast<char>(static_cast<unsigned char>(biased & 0xFFU));
  const std::size_t digits = key.size();
  key += whole;
  key += fraction;
  key.erase(std::max(key.find_last_not_of('0') + 1, digits));
  key += kDigitsEnd;
}

void AppendNegative(std::string_view magnitude, std::string& key) {
  const std::size_t start = key.size();
  AppendPositive(magnitude, key);
  key[start] = kNegative;
  std::transform(key.begin() + static_cast<std::ptrdiff_t>(start) + 1, key.end(),
                 key.begin() + static_cast<std::ptrdiff_t>(start) + 1, Complement);
}

std::size_t TextLength(std::string_view key) {
  std::size_t at = 1;
  while (key[at] != kTextEscape || key[at + 1] != kTextEnd) at += key[at] == kTextEscape ? 2U : 1U;
  return at + 2;
}

std::string TextOf(std::string_view bytes) {
  std::string text;
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    text += bytes[at];
    if (bytes[at] == kTextEscape) ++at;
  }
  return text;
}

/// The number above zero whose exponent and digits, without the end byte, these are.
std::string NumberOf(std::string_view bytes) {
  const auto high = static_cast<unsigned char>(bytes[0]);
  const auto low = static_cast<unsigned char>(bytes[1]);
  const int exponent = high * 0x100 + low - kExponentBias;
  std::string text(bytes.substr(kExponentBytes));
  if (exponent <= 0) return "." + std::string(static_cast<std::size_t>(-exponent), '0') + text;
  const auto whole = static_cast<std::size_t>(exponent);
  if (whole >= text.size()) {
    text.append(whole - text.size(), '0');
  } else {
    text.insert(whole, 1, '.');
  }
  return text;
}

}  // namespace

bool IsCanonicalNumber(std::string_view text) {
  if (text.empty() || text.front() > '9' || text.size() > kMaxNumberLength) return false;
  if (text == "0") return true;
  if (text.front() == '-') text.remove_prefix(1);
  if (text.empty() || text.front() == '0') return false;
  const std::size_t point = text.find('.');
  if (point == std::string_view::npos) return AllDigits(text);
  const std::string_view fraction = text.substr(point + 1);
  return AllDigits(text.substr(0, point)) && AllDigits(fraction) && !fraction.empty() &&
         fraction.back() != '0';
}

void AppendSubscript(std::string_view text, std::string& key) {
  if (text.empty()) {
    key += kEmpty;
  } else if (!IsCanonicalNumber(text)) {
    AppendText(text, key);
  } else if (text == "0") {
    key += kZero;
  } else if (text.front() == '-') {
    AppendNegative(text.substr(1), key);
  } else {
    AppendPositive(text, key);
  }
}

void AppendSubscript(const Value& subscript, std::string& key) {
  if (const auto* text = std::get_if<std::string>(&subscript)) {
    AppendSubscript(std::string_view{*text}, key);
  } else {
    const std::string number = AsBytes(subscript);
    AppendSubscript(std::string_view{number}, key);
  }
}

bool IsEmptySubscript(std::string_view key) { return key.front() == kEmpty; }

std::size_t SubscriptLength(std::string_view key) {
  switch (key.front()) {
    case kNegative:
      return key.find(Complement(kDigitsEnd), 1 + kExponentBytes) + 1;
    case kPositive:
      return key.find(kDigitsEnd, 1 + kExponentBytes) + 1;
    case kText:
      return TextLength(key);
    default:
      return 1;
  }
}

std::string SubscriptText(std::string_view key) {
  const std::size_t length = SubscriptLength(key);
  switch (key.front()) {
    case kEmpty:
      return "";
    case kZero:
      return "0";
    case kPositive:
      return NumberOf(key.substr(1, length - 2));
    case kNegative: {
      std::string bytes(key.substr(1, length - 2));
      std::transform(bytes.begin(), bytes.end(), bytes.begin(), Complement);
      return "-" + NumberOf(bytes);
    }
    default:
      return TextOf(key.substr(1, length - 3));
  }
}

void AppendGlobal(std::string_view name, std::string& key) { AppendText(name, key); }

std::string GlobalKey(std::string_view name) {
  std::string key;
  AppendGlobal(name, key);
  return key;
}

}  // namespace emulator
