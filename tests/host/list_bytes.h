#pragma once

// Value lists written by hand, byte by byte, for the tests of the codec.

#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <vector>

#include "host/vessa_ro_list.h"

namespace vessa {

using Bytes = std::vector<std::uint8_t>;

inline Bytes Join(std::initializer_list<Bytes> parts) {
  Bytes all;
  for (const Bytes& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

inline Bytes BytesOf(std::string_view text) { return {text.begin(), text.end()}; }

/// 16-bit text, little endian.
inline Bytes WideBytesOf(std::u16string_view text) {
  Bytes bytes;
  for (const char16_t unit : text) {
    bytes.push_back(static_cast<std::uint8_t>(unit & 0xFF));
    bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
  }
  return bytes;
}

/// An item with the header form that has one length byte; at most 253 bytes of data.
inline Bytes ShortItem(int type, const Bytes& data) {
  return Join({{static_cast<std::uint8_t>(data.size() + 2), static_cast<std::uint8_t>(type)}, data});
}

/// An item with the header form that has a 16-bit length.
inline Bytes MediumItem(int type, const Bytes& data) {
  const std::size_t n = data.size() + 1;
  return Join({{0, static_cast<std::uint8_t>(n & 0xFF), static_cast<std::uint8_t>(n >> 8 & 0xFF)},
               {static_cast<std::uint8_t>(type)},
               data});
}

/// An item with the header form that has a 32-bit length.
inline Bytes LongItem(int type, const Bytes& data) {
  const std::size_t n = data.size() + 1;
  return Join({{0, 0, 0, static_cast<std::uint8_t>(n & 0xFF), static_cast<std::uint8_t>(n >> 8 & 0xFF),
                static_cast<std::uint8_t>(n >> 16 & 0xFF), static_cast<std::uint8_t>(n >> 24 & 0xFF)},
               {static_cast<std::uint8_t>(type)},
               data});
}

// Values of one item, read out of a list of its own that ends where the item ends.

inline std::string TextOf(const Bytes& item) { return VessaROList(item).GetString(); }
inline std::int32_t IntOf(const Bytes& item) { return VessaROList(item).GetInt(); }
inline std::int64_t Int64Of(const Bytes& item) { return VessaROList(item).GetInt64(); }

inline Bytes TextItem(std::string_view text) {
  const Bytes data = BytesOf(text);
  return data.size() <= 253 ? ShortItem(1, data) : LongItem(1, data);
}
inline Bytes WideTextItem(std::u16string_view text) {
  const Bytes data = WideBytesOf(text);
  return data.size() <= 253 ? ShortItem(2, data) : LongItem(2, data);
}

}  // namespace vessa
