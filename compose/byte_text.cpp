#include "compose/byte_text.h"

#include <algorithm>
#include <string>

#include "platform/code_page.h"

namespace vessa {

namespace {

/// What the characters have in common, gathered in as few bits as they have: the more of them fit a register.
class Bits {
 public:
  void Add(char16_t character) { all_ = static_cast<std::uint16_t>(all_ | character); }
  bool AreOfBytes() const { return all_ <= 0xFF; }

 private:
  std::uint16_t all_ = 0;
};

std::span<std::uint8_t> FrontOf(std::vector<std::uint8_t>& storage, std::size_t size) {
  if (storage.size() < size) storage.resize(size);
  return std::span(storage).first(size);
}

/// In one pass without a branch inside, for nearly all values are all bytes.
/// @return  false when a character was above 255; `bytes` are of no use then
bool NarrowAll(std::u16string_view characters, std::uint8_t* bytes) {
  Bits bits;
  for (const char16_t character : characters) {
    bits.Add(character);
    *bytes++ = static_cast<std::uint8_t>(character);
  }
  return bits.AreOfBytes();
}

}  // namespace

std::size_t ByteCount(std::u16string_view characters) {
  Bits bits;
  for (const char16_t character : characters) bits.Add(character);
  return bits.AreOfBytes() ? characters.size() : NarrowToBytes(characters).size();
}

std::span<std::uint8_t> ToBytes(std::u16string_view characters, std::vector<std::uint8_t>& storage) {
  const std::span<std::uint8_t> bytes = FrontOf(storage, characters.size());
  if (NarrowAll(characters, bytes.data())) return bytes;
  const std::string narrow = NarrowToBytes(characters);
  const std::span<std::uint8_t> converted = FrontOf(storage, narrow.size());
  std::copy(narrow.begin(), narrow.end(), converted.begin());
  return converted;
}

std::span<std::uint8_t> CopyBytes(std::span<const std::uint8_t> bytes, std::vector<std::uint8_t>& storage) {
  const std::span<std::uint8_t> copy = FrontOf(storage, bytes.size());
  std::copy(bytes.begin(), bytes.end(), copy.begin());
  return copy;
}

}  // namespace vessa
