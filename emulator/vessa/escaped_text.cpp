#include "emulator/vessa/escaped_text.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace emulator::tool {
namespace {

constexpr char kEscape = '\x1B';

enum class Side { kLeft, kRight };

/// One escape sequence, without its first byte. A left set that is none is ASCII.
struct Designation {
  std::string_view sequence;
  Side side;
  std::optional<DesignatedSet> set;
};

constexpr std::array kDesignations = {
    Designation{"(B", Side::kLeft, std::nullopt},
    Designation{"(J", Side::kLeft, std::nullopt},  // JIS X 0201 romaji: DICOM keeps the backslash a backslash
    Designation{"$B", Side::kLeft, DesignatedSet{TextEncoding::kJapanese, 2, ""}},
    Designation{"$(D", Side::kLeft, DesignatedSet{TextEncoding::kJapanese, 2, "\x8F"}},
    Designation{")I", Side::kRight, kKatakana},
    Designation{"$)C", Side::kRight, DesignatedSet{TextEncoding::kKorean, 2, ""}},
    Designation{"$)A", Side::kRight, DesignatedSet{TextEncoding::kChinese, 2, ""}},
    Designation{"-A", Side::kRight, DesignatedSet{TextEncoding::kLatin1, 1, ""}},
    Designation{"-B", Side::kRight, DesignatedSet{TextEncoding::kLatin2, 1, ""}},
    Designation{"-C", Side::kRight, DesignatedSet{TextEncoding::kLatin3, 1, ""}},
    Designation{"-D", Side::kRight, DesignatedSet{TextEncoding::kLatin4, 1, ""}},
    Designation{"-L", Side::kRight, DesignatedSet{TextEncoding::kCyrillic, 1, ""}},
    Designation{"-G", Side::kRight, DesignatedSet{TextEncoding::kArabic, 1, ""}},
    Designation{"-F", Side::kRight, DesignatedSet{TextEncoding::kGreek, 1, ""}},
    Designation{"-H", Side::kRight, DesignatedSet{TextEncoding::kHebrew, 1, ""}},
    Designation{"-M", Side::kRight, DesignatedSet{TextEncoding::kLatin5, 1, ""}},
    Designation{"-T", Side::kRight, DesignatedSet{TextEncoding::kThai, 1, ""}},
};

/// The bytes of one character as the set's encoding has them.
std::string EncodedCharacter(std::string_view character, const DesignatedSet& set) {
  std::string encoded(set.prefix);
  for (const char byte : character)
    encoded.push_back(static_cast<char>(static_cast<std::uint8_t>(byte) | 0x80U));
  return encoded;
}

class EscapedTextReader {
 public:
  EscapedTextReader(std::string_view text, const DesignatedSets& initial, std::string_view delimiters)
      : rest_(text), initial_(initial), sets_(initial), delimiters_(delimiters) {}

  std::optional<std::string> Read() {
    while (!rest_.empty()) {
      if (!(rest_.front() == kEscape ? TakeEscape() : TakeCharacters())) return std::nullopt;
    }
    return text_;
  }

 private:
  bool TakeEscape() {
    const auto stands_here = [this](const Designation& designation) {
      return rest_.substr(1).starts_with(designation.sequence);
    };
    const auto found = std::find_if(kDesignations.begin(), kDesignations.end(), stands_here);
    if (found == kDesignations.end()) return false;
    (found->side == Side::kLeft ? sets_.left : sets_.right) = found->set;
    rest_.remove_prefix(1 + found->sequence.size());
    return true;
  }

  /// Takes ASCII, or as many characters of one designated set as stand together.
  bool TakeCharacters() {
    const bool is_right = IsRight(rest_.front());
    const std::optional<DesignatedSet>& set = is_right ? sets_.right : sets_.left;
    if (set && (is_right || !IsControl(rest_.front()))) return TakeDesignated(*set, is_right);
    if (is_right) return false;
    TakeAscii();
    return true;
  }

  bool TakeDesignated(const DesignatedSet& set, bool is_right) {
    std::string encoded;
    while (!rest_.empty() && IsRight(rest_.front()) == is_right && !IsControl(rest_.front())) {
      if (rest_.size() < set.bytes) return false;
      encoded += EncodedCharacter(rest_.substr(0, set.bytes), set);
      rest_.remove_prefix(set.bytes);
    }
    const std::optional<std::string> decoded = DecodeText(encoded, set.encoding);
    if (decoded) text_ += *decoded;
    return decoded.has_value();
  }

  void TakeAscii() {
    const char letter = rest_.front();
    if (IsControl(letter) || delimiters_.find(letter) != std::string_view::npos) sets_ = initial_;
    text_.push_back(letter);
    rest_.remove_prefix(1);
  }

  static bool IsRight(char byte) { return (static_cast<std::uint8_t>(byte) & 0x80U) != 0; }
  static bool IsControl(char byte) { return static_cast<std::uint8_t>(byte) < 0x20U; }

  std::string_view rest_;
  DesignatedSets initial_;
  DesignatedSets sets_;
  std::string_view delimiters_;
  std::string text_;
};

}  // namespace

std::optional<std::string> DecodeEscapedText(std::string_view text, const DesignatedSets& initial,
                                             std::string_view delimiters) {
  return EscapedTextReader(text, initial, delimiters).Read();
}

}  // namespace emulator::tool
