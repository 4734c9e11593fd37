#include "vdoc/reference_cursor.h"

#include <optional>

#include "dicom/dictionary.h"
#include "dicom/vr.h"
#include "platform/number_text.h"
#include "vdoc/exceptions.h"
#include "vdoc/message_texts.h"

namespace vessa {
namespace {

// ASCII alone, whatever the locale.
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
constexpr bool IsKeywordCharacter(char c) { return IsLetter(c) || IsDigit(c); }

constexpr std::optional<std::uint16_t> HexDigit(char c) {
  if (IsDigit(c)) return static_cast<std::uint16_t>(c - '0');
  if (c >= 'A' && c <= 'F') return static_cast<std::uint16_t>(c - 'A' + 10);
  if (c >= 'a' && c <= 'f') return static_cast<std::uint16_t>(c - 'a' + 10);
  return std::nullopt;
}

}  // namespace

void CReferenceCursor::Fail(std::string_view message) const { throw CVDocException(message, position_); }

void CReferenceCursor::Fail(std::string_view message, std::string_view argument) const {
  throw CVDocException(message, argument, position_);
}

template <class Predicate>
std::string_view CReferenceCursor::TakeWhile(Predicate belongs) {
  const std::size_t start = position_;
  while (!AtEnd() && belongs(text_[position_])) ++position_;
  return text_.substr(start, position_ - start);
}

void CReferenceCursor::Expect(char character) {
  if (!IsAt(character)) Fail(vdoc_text::kExpectedCharacter, std::string_view(&character, 1));
  ++position_;
}

std::int32_t CReferenceCursor::ReadInteger() {
  const std::string_view digits = TakeWhile(IsDigit);
  if (digits.empty()) Fail(vdoc_text::kExpectedInteger);
  return ParseInteger32(digits);
}

std::uint16_t CReferenceCursor::ReadHexGroup() {
  constexpr int kDigits = 4;
  std::uint32_t value = 0;
  for (int i = 0; i < kDigits; ++i) {
    const std::optional<std::uint16_t> digit = AtEnd() ? std::nullopt : HexDigit(text_[position_]);
    if (!digit) Fail(vdoc_text::kExpectedHexDigit);
    value = value << 4 | *digit;
    ++position_;
  }
  return static_cast<std::uint16_t>(value);
}

Tag CReferenceCursor::ReadTag() {
  if (IsAt('(')) {
    Expect('(');
    const std::uint16_t group = ReadHexGroup();
    Expect(',');
    const std::uint16_t element = ReadHexGroup();
    Expect(')');
    return Tag(group, element);
  }
  const std::string_view keyword = TakeWhile(IsKeywordCharacter);
  if (keyword.empty()) Fail(vdoc_text::kExpectedTagName);
  const Tag tag = LookupKeyword(keyword);
  if (tag == kTagNotFound) Fail(vdoc_text::kTagNameNotFound, keyword);
  return tag;
}

void CReferenceCursor::CheckSequence(Tag tag) const {
  const std::optional<Vr> vr = tag.IsPrivate() ? std::nullopt : LookupVr(tag);
  if (!vr) Fail(vdoc_text::kUnrecognizedTag, TagText(tag));
  if (*vr != kVrSQ) Fail(vdoc_text::kNotASequence, TagText(tag));
}

}  // namespace vessa
