#pragma once

#include <gtest/gtest.h>
#include <zlib.h>

#include <cstddef>
#include <cstdint>
#include <string>

// What zlib itself makes of bytes, in one go: the other side of every test of packing and unpacking.

namespace packed_bytes {

inline constexpr int kZlibWindow = 15;
inline constexpr int kRawWindow = -15;
inline constexpr int kGzipWindow = 15 + 16;

/// Bytes that hardly pack at all, the same on every run.
inline std::string Noise(std::size_t size) {
  std::string bytes(size, '\0');
  std::uint32_t state = 12345;
  for (char& byte : bytes) {
    state = state * 1664525U + 1013904223U;
    byte = static_cast<char>(state >> 24);
  }
  return bytes;
}

/// Bytes that pack well.
inline std::string Pattern(std::size_t size) {
  std::string bytes(size, '\0');
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i % 251 * (i / 4096));
  return bytes;
}

/// Packed in the format that the window bits choose.
inline std::string Packed(const std::string& data, int level, int window_bits = kZlibWindow,
                          const std::string& dictionary = "") {
  z_stream state{};
  deflateInit2(&state, level, Z_DEFLATED, window_bits, 8, Z_DEFAULT_STRATEGY);
  std::string input = data;
  std::string preset = dictionary;
  if (!preset.empty()) {
    deflateSetDictionary(&state, reinterpret_cast<const Bytef*>(preset.data()),
                         static_cast<uInt>(preset.size()));
  }
  std::string output(data.size() + data.size() / 100 + 1000, '\0');
  state.next_in = reinterpret_cast<Bytef*>(input.data());
  state.avail_in = static_cast<uInt>(input.size());
  state.next_out = reinterpret_cast<Bytef*>(output.data());
  state.avail_out = static_cast<uInt>(output.size());
  EXPECT_EQ(deflate(&state, Z_FINISH), Z_STREAM_END);
  output.resize(output.size() - state.avail_out);
  deflateEnd(&state);
  return output;
}

/// What a whole stream of zlib's format holds. @param size  the most that it may hold
inline std::string Unpacked(const std::string& packed, std::size_t size) {
  std::string bytes(size + 1, '\0');
  uLongf length = static_cast<uLongf>(bytes.size());
  const int result =
      uncompress(reinterpret_cast<Bytef*>(bytes.data()), &length,
                 reinterpret_cast<const Bytef*>(packed.data()), static_cast<uLong>(packed.size()));
  if (result != Z_OK) return "no zlib stream: " + std::to_string(result);
  bytes.resize(length);
  return bytes;
}

/// What comes out of a stream up to where it ends or breaks.
inline std::string InflatedAsFarAsPossible(std::string packed, std::size_t most) {
  z_stream state{};
  inflateInit(&state);
  std::string output(most, '\0');
  state.next_in = reinterpret_cast<Bytef*>(packed.data());
  state.avail_in = static_cast<uInt>(packed.size());
  state.next_out = reinterpret_cast<Bytef*>(output.data());
  state.avail_out = static_cast<uInt>(output.size());
  inflate(&state, Z_SYNC_FLUSH);
  output.resize(output.size() - state.avail_out);
  inflateEnd(&state);
  return output;
}

}  // namespace packed_bytes
