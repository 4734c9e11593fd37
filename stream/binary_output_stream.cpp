#include "stream/binary_output_stream.h"

#include <algorithm>

#include "host/callin.h"
#include "stream/callin_failure.h"

namespace vessa {

/// Fills the block at hand, and others behind it.
Status CVessaBinaryOutputStream::WriteBlocks(std::span<const std::uint8_t> bytes) {
  for (std::span<const std::uint8_t> rest = bytes; !rest.empty();) {
    const std::size_t fitting = std::min(rest.size(), kBlockBytes - filled_);
    std::copy_n(rest.begin(), fitting, block_.data() + filled_);
    filled_ += fitting;
    rest = rest.subspan(fitting);
    if (filled_ == kBlockBytes) WithFailureText(kWriteFailed, [this] { SendBlock(); });
  }
  total_ += bytes.size();
  return kSuccess;
}

void CVessaBinaryOutputStream::Flush() {
  if (filled_ == 0) return;
  try {
    SendBlock();
  } catch (const Status) {  // NOLINT(bugprone-empty-catch): kept, hosts do not expect a failure here
  }
}

/// @throws Status  the host failed; the block is kept unless the host has taken it already
void CVessaBinaryOutputStream::SendBlock() {
  CallMethod<"*a">(oref_, "Write", ResultWanted::kYes, static_cast<std::int32_t>(filled_), block_.data());
  filled_ = 0;  // before the result, which may fail: the bytes have arrived and must not go out again
  DropResult();
}

}  // namespace vessa
