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
  KeyStack() { WriteNumber(0); }

  std::size_t Size() const { return size_; }
  /// The bytes from there on; valid until the next is appended.
  std::string_view From(std::size_t at) const { return {bytes_.data() + at, size_ - at}; }
  void CutTo(std::size_t size) { size_ = size; }

  /// Key bytes as they are.
  void Append(std::string_view key) {
    std::copy(key.begin(), key.end(), Room(key.size()));
    size_ += key.size();
  }
  void AppendSubscript(std::string_view text) {
    const bool may_be_number = !text.empty() && text.front() <= '9';
    if (may_be_number && text == identifier_) return Append(identifier_key_);
    const std::size_t at = size_;
    GrowTo(WriteSubscript(text, Room(MostKeyBytes(text.size()))));
    if (may_be_number && IsTextSubscript(From(at))) Remember(text, From(at));
  }
  void AppendSubscript(std::int64_t number) {
    if (number != number_) WriteNumber(number);
    std::memcpy(Room(number_key_.size()), number_key_.data(),
                number_key_.size());  // of a size that compilers know
    size_ += number_key_size_;
  }

 private:
  char* Room(std::size_t bytes) {
    if (bytes_.size() - size_ < bytes) bytes_.resize(2 * (size_ + bytes));
    return bytes_.data() + size_;
  }
  void Remember(std::string_view identifier, std::string_view key) {
    identifier_ = identifier;
    identifier_key_ = key;
  }
  void WriteNumber(std::int64_t number) {
    number_key_size_ =
        static_cast<std::size_t>(WriteSubscript(number, number_key_.data()) - number_key_.data());
    number_ = number;
  }
  void GrowTo(const char* end) { size_ = static_cast<std::size_t>(end - bytes_.data()); }

  std::vector<char> bytes_;
  std::size_t size_ = 0;

  // What most often comes again, and its bytes: an integer, as the number of an element's node, and a text that is found
  // out late to be no number, as a UID.
  std::int64_t number_ = 0;
  std::array<char, kMostIntegerKeyBytes> number_key_{};
  std::size_t number_key_size_ = 0;
  std::string identifier_;
  std::string identifier_key_;
};

}  // namespace emulator
