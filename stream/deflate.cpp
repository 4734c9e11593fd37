#include "stream/deflate.h"

#include <zlib.h>

#include "stream/stream_blocks.h"

namespace vessa {

namespace {

/// A zlib state that is ended on every path.
class DeflateState {
 public:
  explicit DeflateState(std::int32_t level) {
    if (deflateInit_(&state_, level, kZlibVersion, sizeof state_) != Z_OK) throw E_FAIL;
  }
  ~DeflateState() { deflateEnd(&state_); }
  DeflateState(const DeflateState&) = delete;
  DeflateState& operator=(const DeflateState&) = delete;

  /// Takes the input that the next calls of `Produce` work on.
  void Feed(std::span<std::uint8_t> input) {
    state_.next_in = input.data();
    state_.avail_in = static_cast<uInt>(input.size());
  }

  /// @return  bytes put into the block; a full block means that there may be more
  std::size_t Produce(int flush, PackBlock& block) {
    state_.next_out = block.data();
    state_.avail_out = static_cast<uInt>(block.size());
    deflate(&state_, flush);  // cannot fail between a good initialisation and the finishing pass
    return block.size() - state_.avail_out;
  }

 private:
  z_stream state_{};
};

void DeflateAll(std::int32_t level, std::uint32_t in, std::uint32_t out) {
  DeflateState state(level);
  PackBlock input;
  PackBlock output;
  int flush = Z_NO_FLUSH;
  while (flush != Z_FINISH) {
    const std::size_t read = ReadBlock(in, input);
    state.Feed(std::span(input).first(read));
    flush = read < 1 ? Z_FINISH : Z_NO_FLUSH;
    std::size_t produced = 0;
    do {
      produced = state.Produce(flush, output);
      WriteBlock(out, std::span(output).first(produced));
    } while (produced == output.size());
  }
}

}  // namespace

Status DeflateStream(std::int32_t level, std::uint32_t in, std::uint32_t out) noexcept {
  try {
    DeflateAll(level, in, out);
    return kSuccess;
  } catch (...) {
    return E_FAIL;  // a host's own code may be positive; no message leaves here
  }
}

}  // namespace vessa
