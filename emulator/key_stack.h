#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/collation.h"

namespace emulator {

/// Keys of global nodes in the making, end to end. They grow and go at the end alone; the storage is used again.
class KeyStack {
 public:
  KeyStack();

  std::uint32_t Size() const { return static_cast<std::uint32_t>(size_); }
  /// The bytes from there on; valid until the next is appended.
  std::string_view From(std::size_t at) const { return {bytes_.data() + at, size_ - at}; }
  void CutTo(std::size_t size) { size_ = size; }

  /// Key bytes as they are.
  void Append(std::string_view key) {
    std::copy(key.begin(), key.end(), Room(key.size()));
    size_ += key.size();
  }
  void AppendSubscript(std::string_view text) {
    if (text.size() == 1) return AppendCharacter(text.front());
    AppendText(text);
  }
  void AppendSubscript(std::int64_t number) {
    if (number != number_) WriteNumber(number);
    AppendCopy(number_key_, number_key_size_);
  }

 private:
  /// The key bytes of a text of one character, as the names of an element's parts and most numbers of items are.
  struct CharacterKey {
    std::array<char, MostKeyBytes(1)> bytes{};
    std::size_t size = 0;
  };

  void AppendCharacter(char character) {
    const CharacterKey& key = characters_[static_cast<unsigned char>(character)];
    AppendCopy(key.bytes, key.size);
  }
  /// The first `size` of the bytes; all are copied, for compilers know how many they are.
  template <std::size_t kSize>
  void AppendCopy(const std::array<char, kSize>& bytes, std::size_t size) {
    std::memcpy(Room(kSize), bytes.data(), kSize);
    size_ += size;
  }
  char* Room(std::size_t bytes) {
    if (bytes_.size() - size_ < bytes) bytes_.resize(2 * (size_ + bytes));
    return bytes_.data() + size_;
  }
  void AppendText(std::string_view text);
  void Remember(std::string_view identifier, std::string_view key);
  void WriteNumber(std::int64_t number);

  std::vector<char> bytes_;
  std::size_t size_ = 0;

  // What most often comes again, and its bytes: an integer, as the number of an element's node, and a text that is found
  // out late to be no number, as a UID.
  std::int64_t number_ = 0;
  std::array<char, kMostIntegerKeyBytes> number_key_{};
  std::size_t number_key_size_ = 0;
  std::array<CharacterKey, 256> characters_;
  std::string identifier_;
  std::string identifier_key_;
};

}  // namespace emulator
