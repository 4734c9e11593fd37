#pragma once

// The arguments and results of callbacks as those who watch are told them.

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "emulator/callback.h"
#include "host/binary_interface.h"

namespace emulator {

inline CallbackItem Number(std::int64_t value) { return value; }

inline CallbackItem Bytes(std::int64_t count) { return Extent{count, "bytes"}; }

inline CallbackItem Units(std::int64_t count) { return Extent{count, "units"}; }

/// The text given as length and pointer; by its length alone where there is no such text.
inline CallbackItem Text(int length, const unsigned char* text) {
  if (length < 0 || text == nullptr) return Bytes(length);
  return std::string_view(reinterpret_cast<const char*>(text), static_cast<std::size_t>(length));
}

inline CallbackItem Text(int length, const std::uint16_t* text) {
  if (length < 0 || text == nullptr) return Units(length);
  return std::span<const std::uint16_t>(text, static_cast<std::size_t>(length));
}

inline CallbackItem Text(const std::vector<char>& text) { return std::string_view(text.data(), text.size()); }

inline CallbackItem Text(const std::vector<std::uint16_t>& text) {
  return std::span<const std::uint16_t>(text);
}

/// What the library has put into a long string's area.
template <class Unit>
std::vector<Unit> ContentsOf(const vessa::LongStringDescriptor* descriptor) {
  if (descriptor == nullptr || descriptor->area == nullptr) return {};
  const auto* const units = static_cast<const Unit*>(descriptor->area);
  return {units, units + descriptor->length};
}

}  // namespace emulator
