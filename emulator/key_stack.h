#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "emulator/collation.h"

namespace emulator {

/// Keys of global nodes in the making, end to end. They grow and go at the end alone; the storage is used again.
class KeyStack {
 public:
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
    GrowTo(WriteSubscript(text, Room(MostKeyBytes(text.size()))));
  }
  void AppendSubscript(std::int64_t number) {
    GrowTo(WriteSubscript(number, Room(MostKeyBytes(kMostIntegerDigits))));
  }

 private:
  char* Room(std::size_t bytes) {
    if (bytes_.size() - size_ < bytes) bytes_.resize(2 * (size_ + bytes));
    return bytes_.data() + size_;
  }
  void GrowTo(const char* end) { size_ = static_cast<std::size_t>(end - bytes_.data()); }

  std::vector<char> bytes_;
  std::size_t size_ = 0;
};

}  // namespace emulator
