#include "emulator/vessa/raw_deflate.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <limits>
#include <new>
#include <string>

namespace emulator::tool {

struct RawDeflate::State {
  static constexpr int kMemoryLevel = 8;  // zlib's own default

  z_stream stream{};
  std::array<Bytef, 1U << 16U> output{};

  State() {
    const int status = deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, -MAX_WBITS, kMemoryLevel,
                                    Z_DEFAULT_STRATEGY);
    if (status != Z_OK) throw std::bad_alloc();
  }
  ~State() { deflateEnd(&stream); }
  State(const State&) = delete;
  State& operator=(const State&) = delete;
};

RawDeflate::RawDeflate(Take take) : take_(std::move(take)), state_(std::make_unique<State>()) {}

RawDeflate::~RawDeflate() = default;

void RawDeflate::Write(std::string_view bytes) {
  constexpr std::size_t kMost = std::numeric_limits<uInt>::max();
  while (!bytes.empty()) {
    std::string block(bytes.substr(0, kMost));  // zlib asks for bytes that are not constant
    state_->stream.next_in = reinterpret_cast<Bytef*>(block.data());
    state_->stream.avail_in = static_cast<uInt>(block.size());
    Run(Z_NO_FLUSH);
    bytes.remove_prefix(block.size());
  }
}

void RawDeflate::Finish() {
  state_->stream.avail_in = 0;
  Run(Z_FINISH);
}

void RawDeflate::Run(int flush) {
  auto& output = state_->output;
  do {
    state_->stream.next_out = output.data();
    state_->stream.avail_out = static_cast<uInt>(output.size());
    deflate(&state_->stream, flush);
    const std::size_t produced = output.size() - state_->stream.avail_out;
    take_({reinterpret_cast<const char*>(output.data()), produced});
  } while (state_->stream.avail_out == 0);
}

}  // namespace emulator::tool
