#include "emulator/key_stack.h"

namespace emulator {
namespace {

/// Writes the key bytes of a subscript to `out`. @return  how many they are
template <class Subscript>
std::size_t WriteKey(const Subscript& subscript, char* out) {
  return static_cast<std::size_t>(WriteSubscript(subscript, out) - out);
}

}  // namespace

KeyStack::KeyStack() {
  WriteNumber(0);
  for (std::size_t byte = 0; byte < characters_.size(); ++byte) {
    const char character = static_cast<char>(static_cast<unsigned char>(byte));
    characters_[byte].size = WriteKey(std::string_view(&character, 1), characters_[byte].bytes.data());
  }
}

void KeyStack::AppendText(std::string_view text) {
  const bool may_be_number = !text.empty() && text.front() <= '9';
  if (may_be_number && text == identifier_) return Append(identifier_key_);
  const std::size_t at = size_;
  size_ += WriteKey(text, Room(MostKeyBytes(text.size())));
  if (may_be_number && IsTextSubscript(From(at))) Remember(text, From(at));
}

void KeyStack::Remember(std::string_view identifier, std::string_view key) {
  identifier_ = identifier;
  identifier_key_ = key;
}

void KeyStack::WriteNumber(std::int64_t number) {
  number_key_size_ = WriteKey(number, number_key_.data());
  number_ = number;
}

}  // namespace emulator
