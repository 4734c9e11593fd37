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

/// The longest start of the text that is one character in the set; 0 when its first byte is none.
std::size_t CharacterLength(std::string_view text, CharacterSet set) {
  if (set == CharacterSet::kUtf8) return Utf8SequenceLength(text);
  return ByteAt(text, 0) < 0x80U ? 1 : 0;
}

}  // namespace

CharacterSet CharacterSetNamed(std::string_view defined_term) {
  const std::string_view term = WithoutPadding(defined_term);
  if (term.empty() || term == "ISO_IR 6") return CharacterSet::kDefault;
  if (term == "ISO_IR 100") return CharacterSet::kLatin1;
  if (term == "ISO_IR 192") return CharacterSet::kUtf8;
  return CharacterSet::kOther;
}

std::size_t Utf8SequenceLength(std::string_view text) {
  if (text.empty()) return 0;
  const std::size_t length = WantedLength(ByteAt(text, 0));
  if (length == 0 || length > text.size()) return 0;
  for (std::size_t index = 1; index < length; ++index) {
    if (!IsContinuation(ByteAt(text, index))) return 0;
  }
  return IsIllFormed(Decode(text.substr(0, length)), length) ? 0 : length;
}

std::string Printable(std::string_view bytes, CharacterSet set) {
  std::string text;
  while (!bytes.empty()) {
    const std::size_t length = CharacterLength(bytes, set);
    const std::string_view character = bytes.substr(0, length == 0 ? 1 : length);
    if (length == 0 || IsControl(Decode(character))) {
      AppendEscaped(text, character);
    } else {
      text += character;
    }
    bytes.remove_prefix(character.size());
  }
  return text;
}

std::optional<std::string> ToUtf8(std::string_view bytes, CharacterSet set) {
  std::string text;
  while (!bytes.empty()) {
    std::size_t length = CharacterLength(bytes, set);
    if (length > 0) {
      text += bytes.substr(0, length);
    } else if (set == CharacterSet::kLatin1) {
      AppendUtf8(text, ByteAt(bytes, 0));
      length = 1;
    } else {
      return std::nullopt;
    }
    bytes.remove_prefix(length);
  }
  return text;
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
