#pragma once

#include <zlib.h>

#include <array>
#include <optional>
#include <string>

namespace fuzz {

/// What zlib itself makes of a compressed text, bytes behind its end ignored; nothing when it is damaged, cut or wants
/// a dictionary, or when there is more than `most`.
inline std::optional<std::string> InflatedByZlib(const std::string& packed, std::size_t most) {
  z_stream state{};
  if (inflateInit(&state) != Z_OK) return std::nullopt;
  std::string input = packed;
  state.next_in = reinterpret_cast<Bytef*>(input.data());
  state.avail_in = static_cast<uInt>(input.size());
  std::string plain;
  std::array<Bytef, 4096> block;
  int result = Z_OK;
  while (result == Z_OK && plain.size() <= most) {
    state.next_out = block.data();
    state.avail_out = static_cast<uInt>(block.size());
    result = inflate(&state, Z_NO_FLUSH);
    plain.append(reinterpret_cast<const char*>(block.data()), block.size() - state.avail_out);
  }
  inflateEnd(&state);
  if (result != Z_STREAM_END || plain.size() > most) return std::nullopt;
  return plain;
}

}  // namespace fuzz
