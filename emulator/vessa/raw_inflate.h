#pragma once

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>

namespace emulator::tool {

/// Why compressed data could not be inflated.
class InflateError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Inflates data compressed as RFC 1951 has it, without the header and checksum of zlib: the form of deflated data sets
/// (PS3.5 section A.5). `next_block` hands out the data piece by piece, nothing at the end. Bytes behind the end of
/// the compressed data are left alone.
/// @throws InflateError  corrupt or cut data, or more than `most_bytes` of output
std::string InflateRaw(const std::function<std::string()>& next_block, std::size_t most_bytes);

}  // namespace emulator::tool
