#include "stream/inflate.h"

#include <zlib.h>

#include "stream/stream_blocks.h"

namespace vessa {

namespace {

/// A zlib state that is ended on every path.
class InflateState {
 public:
  InflateState() {
    if (inflateInit_(&state_, kZlibVersion, sizeof state_) != Z_OK) throw E_FAIL;
  }
  ~InflateState() { inflateEnd(&state_); }
  InflateState(const InflateState&) = delete;
  InflateState& operator=(const InflateState&) = delete;

  /// Takes the input that the next calls of `Produce` work on.
  void Feed(std::span<std::uint8_t> input) {
    state_.next_in = input.data();
    state_.avail_in = static_cast<uInt>(input.size());
  }

  /// @return  bytes put into the block; a full block means that there may be more
  /// @throws Status  the data cannot be inflated
  std::size_t Produce(PackBlock& block) {
    state_.next_out = block.data();
    state_.avail_out = static_cast<uInt>(block.size());
    const int result = inflate(&state_, Z_NO_FLUSH);
    if (result == Z_NEED_DICT || result == Z_DATA_ERROR || result == Z_MEM_ERROR) throw E_FAIL;
    ended_ = result == Z_STREAM_END;  // Z_BUF_ERROR only says that more input is needed
    return block.size() - state_.avail_out;
  }

  /// True once the end of the compressed data was reached.
  bool Ended() const { return ended_; }

 private:
  z_stream state_{};
  bool ended_ = false;
};

void InflateAll(std::uint32_t in, std::uint32_t out) {
  InflateState state;
  PackBlock input;
  PackBlock output;
  while (!state.Ended()) {
    const std::size_t read = ReadBlock(in, input);
    if (read == 0) throw E_FAIL;  // the input ran out before the compressed data did
    state.Feed(std::span(input).first(read));
    std::size_t produced = 0;
    do {
      produced = state.Produce(output);
      WriteBlock(out, std::span(output).first(produced));
    } while (produced == output.size());
  }
}

}  // namespace

Status InflateStream(std::uint32_t in, std::uint32_t out) noexcept {
  try {
    InflateAll(in, out);
    return kSuccess;
  } catch (...) {
    return E_FAIL;  // a host's own code may be positive; no message leaves here
  }
}

}  // namespace vessa
