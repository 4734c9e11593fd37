#include "emulator/vessa/raw_inflate.h"

#include <fmt/format.h>
#include <zlib.h>

#include <array>
#include <new>

namespace emulator::tool {
namespace {

constexpr std::size_t kOutputBytes = 1U << 16U;

class Inflater {
 public:
  Inflater() {
    if (inflateInit2(&state_, -MAX_WBITS) != Z_OK) throw std::bad_alloc();
  }
  ~Inflater() { inflateEnd(&state_); }
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;

  bool IsDone() const { return is_done_; }

  /// Appends to `output` what a block of input gives.
  void Take(std::string& block, std::string& output, std::size_t most_bytes) {
    state_.next_in = reinterpret_cast<Bytef*>(block.data());
    state_.avail_in = static_cast<uInt>(block.size());
    do {
      output.append(reinterpret_cast<const char*>(buffer_.data()), Step());
      if (output.size() > most_bytes) {
        throw InflateError(
            fmt::format("it inflates to more than {} bytes, the limit of --max-output", most_bytes));
      }
    } while (!is_done_ && (state_.avail_in > 0 || state_.avail_out == 0));
  }

 private:
  std::size_t Step() {
    state_.next_out = buffer_.data();
    state_.avail_out = static_cast<uInt>(buffer_.size());
    const int status = inflate(&state_, Z_NO_FLUSH);
    if (status != Z_OK && status != Z_STREAM_END && status != Z_BUF_ERROR)
      throw InflateError("it is corrupt");
    is_done_ = status == Z_STREAM_END;
    return buffer_.size() - state_.avail_out;
  }

  z_stream state_{};
  std::array<Bytef, kOutputBytes> buffer_{};
  bool is_done_ = false;
};

}  // namespace

std::string InflateRaw(const std::function<std::string()>& next_block, std::size_t most_bytes) {
  Inflater inflater;
  std::string output;
  while (!inflater.IsDone()) {
    std::string block = next_block();
    if (block.empty()) throw InflateError("it ends too early");
    inflater.Take(block, output, most_bytes);
  }
  return output;
}

}  // namespace emulator::tool
