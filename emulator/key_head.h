#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace emulator {

/// The first bytes of a text, and its length as far as that counts, as numbers that compare like the texts.
class KeyHead {
 public:
  static constexpr std::size_t kBytes = 23;

  /// Of the text from there on.
  KeyHead(std::string_view text, std::size_t from)
      : words_{WordAt(text, from), WordAt(text, from + kWordBytes), WordAt(text, from + 2 * kWordBytes)} {
    SetLength(std::min(text.size() - from, kBytes + 1));
  }

  /// Whether these are all bytes: heads that do not have all of them can be equal though the texts differ.
  bool IsWhole() const { return Length() <= kBytes; }

  /// Of the text with a byte behind it.
  KeyHead With(char byte) const {
    KeyHead head = *this;
    if (!IsWhole()) return head;
    const std::size_t length = Length();
    if (length < kBytes) head.words_[length / kWordBytes] |= Byte(byte) << (8 * (7 - length % kWordBytes));
    head.SetLength(length + 1);
    return head;
  }

  friend bool operator==(const KeyHead& left, const KeyHead& right) {
    return left.words_[0] == right.words_[0] && left.words_[1] == right.words_[1] &&
           left.words_[2] == right.words_[2];
  }
  friend bool operator<(const KeyHead& left, const KeyHead& right) {
    if (left.words_[0] != right.words_[0]) return left.words_[0] < right.words_[0];
    if (left.words_[1] != right.words_[1]) return left.words_[1] < right.words_[1];
    return left.words_[2] < right.words_[2];
  }

 private:
  using Word = std::uint64_t;
  static constexpr std::size_t kWordBytes = sizeof(Word);
  static constexpr Word kLengthMask = 0xFF;  // the length takes the place of the last word's last byte

  std::size_t Length() const { return static_cast<std::size_t>(words_.back() & kLengthMask); }
  void SetLength(std::size_t length) { words_.back() = (words_.back() & ~kLengthMask) | length; }

  static Word Byte(char byte) { return static_cast<unsigned char>(byte); }
  /// Written out, as compilers then see that it is one instruction or two.
  static Word BigEndian(const char* bytes) {
    return Byte(bytes[0]) << 56U | Byte(bytes[1]) << 48U | Byte(bytes[2]) << 40U | Byte(bytes[3]) << 32U |
           Byte(bytes[4]) << 24U | Byte(bytes[5]) << 16U | Byte(bytes[6]) << 8U | Byte(bytes[7]);
  }
  /// The bytes from there on, the first the highest; zeros behind the text.
  static Word WordAt(std::string_view text, std::size_t from) {
    if (from >= text.size()) return 0;
    const std::size_t bytes = text.size() - from;
    if (bytes >= kWordBytes) return BigEndian(text.data() + from);
    const std::size_t missing = kWordBytes - bytes;
    if (from >= missing) return BigEndian(text.data() + from - missing) << (8 * missing);
    Word word = 0;
    for (const char byte : text.substr(from)) word = word << 8U | Byte(byte);
    return word << (8 * missing);
  }

  std::array<Word, 3> words_;
};

}  // namespace emulator
