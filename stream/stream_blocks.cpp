#include "stream/stream_blocks.h"

#include <algorithm>

#include "dicom/status.h"
#include "host/callin.h"

namespace vessa {

std::size_t ReadBlock(std::uint32_t oref, PackBlock& block) {
  CallMethod<"i">(oref, "Read", ResultWanted::kYes, static_cast<std::int32_t>(kPackBlockBytes));
  const std::span<const std::uint8_t> bytes = PopString();
  if (bytes.size() > block.size()) throw E_FAIL;  // the surplus would be lost without a word
  const auto rest = std::copy(bytes.begin(), bytes.end(), block.begin());
  std::fill(rest, block.end(), std::uint8_t{0});
  return bytes.size();
}

void WriteBlock(std::uint32_t oref, std::span<const std::uint8_t> bytes) {
  CallMethod<"*a">(oref, "Write", ResultWanted::kNo, static_cast<std::int32_t>(bytes.size()), bytes.data());
}

}  // namespace vessa
