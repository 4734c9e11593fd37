#include "emulator/vessa/printable_text.h"

#include <fmt/format.h>

#include <cstdint>

namespace emulator::tool {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr std::string_view kEllipsis = "\xE2\x80\xA6";

std::uint8_t ByteAt(std::string_view text, std::size_t index) {
  return static_cast<std::uint8_t>(text[index]);
}

bool IsContinuation(std::uint8_t byte) { return (byte & 0xC0U) == 0x80U; }

/// What the first byte of a sequence asks for; 0 for a byte that cannot be first.
std::size_t WantedLength(std::uint8_t first) {
  if (first < 0x80U) return 1;
  if (first >= 0xC2U && first <= 0xDFU) return 2;
  if ((first & 0xF0U) == 0xE0U) return 3;
  if (first >= 0xF0U && first <= 0xF4U) return 4;
  return 0;
}

/// The character of a sequence whose bytes have the right form.
char32_t Decode(std::string_view sequence) {
  if (sequence.size() == 1) return ByteAt(sequence, 0);
  char32_t character = ByteAt(sequence, 0) & (0x7FU >> sequence.size());
  for (std::size_t index = 1; index < sequence.size(); ++index) {
    character = (character << 6U) | (ByteAt(sequence, index) & 0x3FU);
  }
  return character;
}

bool IsSurrogate(char32_t character) { return character >= 0xD800U && character <= 0xDFFFU; }

/// True for characters that have a shorter sequence, or none at all.
bool IsIllFormed(char32_t character, std::size_t length) {
  return (length == 3 && character < 0x800U) ||
         (length == 4 && (character < 0x10000U || character > 0x10FFFFU)) || IsSurrogate(character);
}

bool IsControl(char32_t character) { return character < 0x20U || (character >= 0x7FU && character <= 0x9FU); }

void AppendUtf8(std::string& text, char32_t character) {
  const auto byte = [&text](char32_t value) { text.push_back(static_cast<char>(value)); };
  if (character < 0x80U) {
    byte(character);
  } else if (character < 0x800U) {
    byte(0xC0U | (character >> 6U));
    byte(0x80U | (character & 0x3FU));
  } else if (character < 0x10000U) {
    byte(0xE0U | (character >> 12U));
    byte(0x80U | ((character >> 6U) & 0x3FU));
    byte(0x80U | (character & 0x3FU));
  } else {
    byte(0xF0U | (character >> 18U));
    byte(0x80U | ((character >> 12U) & 0x3FU));
    byte(0x80U | ((character >> 6U) & 0x3FU));
    byte(0x80U | (character & 0x3FU));
  }
}

void AppendEscaped(std::string& text, std::string_view bytes) {
  for (std::size_t index = 0; index < bytes.size(); ++index)
    text += fmt::format("\\x{:02X}", ByteAt(bytes, index));
}

/// The text, but for what `is_shown` refuses of its characters and for bytes that are part of none.
template <class Predicate>
std::string Printable(std::string_view text, Predicate is_shown) {
  std::string printable;
  while (!text.empty()) {
    const std::size_t length = Utf8SequenceLength(text);
    const std::string_view character = text.substr(0, length == 0 ? 1 : length);
    if (length > 0 && is_shown(Decode(character))) {
      printable += character;
    } else {
      AppendEscaped(printable, character);
    }
    text.remove_prefix(character.size());
  }
  return printable;
}

}  // namespace

std::size_t Utf8SequenceLength(std::string_view text) {
  if (text.empty()) return 0;
  const std::size_t length = WantedLength(ByteAt(text, 0));
  if (length == 0 || length > text.size()) return 0;
  for (std::size_t index = 1; index < length; ++index) {
    if (!IsContinuation(ByteAt(text, index))) return 0;
  }
  return IsIllFormed(Decode(text.substr(0, length)), length) ? 0 : length;
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = Utf8SequenceLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

std::string PrintableUtf8(std::string_view text) {
  return Printable(text, [](char32_t character) { return !IsControl(character); });
}

std::string PrintableAscii(std::string_view bytes) {
  return Printable(bytes, [](char32_t character) { return character < 0x80U && !IsControl(character); });
}

std::string ToUtf8(std::u16string_view text) {
  std::string utf8;
  for (std::size_t index = 0; index < text.size(); ++index) {
    char32_t character = text[index];
    const char32_t next = index + 1 < text.size() ? text[index + 1] : 0;
    if ((character & 0xFC00U) == 0xD800U && (next & 0xFC00U) == 0xDC00U) {
      character = 0x10000U + ((character & 0x3FFU) << 10U) + (next & 0x3FFU);
      ++index;
    }
    AppendUtf8(utf8, IsSurrogate(character) ? kReplacement : character);
  }
  return utf8;
}

std::u16string ToUtf16(std::string_view text) {
  std::u16string utf16;
  while (!text.empty()) {
    const std::size_t length = Utf8SequenceLength(text);
    const char32_t character = length == 0 ? kReplacement : Decode(text.substr(0, length));
    if (character >= 0x10000U) {
      utf16.push_back(static_cast<char16_t>(0xD800U + ((character - 0x10000U) >> 10U)));
      utf16.push_back(static_cast<char16_t>(0xDC00U + ((character - 0x10000U) & 0x3FFU)));
    } else {
      utf16.push_back(static_cast<char16_t>(character));
    }
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return utf16;
}

std::string_view WithoutPadding(std::string_view value) {
  while (!value.empty() && (value.back() == ' ' || value.back() == '\0')) value.remove_suffix(1);
  return value;
}

std::string CutToColumns(const std::string& utf8, std::size_t columns) {
  std::size_t characters = 0;
  std::size_t cut = 0;  // where the last character that an ellipsis leaves room for ends
  for (std::size_t index = 0; index < utf8.size(); ++index) {
    if (IsContinuation(ByteAt(utf8, index))) continue;
    if (++characters == columns) cut = index;
  }
  if (columns == 0 || characters <= columns) return utf8;
  return utf8.substr(0, cut) + std::string(kEllipsis);
}

}  // namespace emulator::tool
