#include <benchmark/benchmark.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <string>

#include "bench/data_set.h"
#include "bench/idle_host.h"
#include "bench/library_under_test.h"
#include "bench/registration.h"

// Deflating and inflating a data set of small elements against callbacks that do nothing, beside zlib over the same
// blocks.

namespace bench {
namespace {

constexpr std::size_t kBlockBytes = 32767;
constexpr std::int32_t kLevel = 6;
constexpr std::int32_t kSomeOref = 1;

using Block = std::array<unsigned char, kBlockBytes>;

/// Feeds the bytes block by block and drops what comes out.
template <class Pass>
void InBlocks(z_stream& stream, const std::string& bytes, Pass pass) {
  Block output;
  std::size_t at = 0;
  for (bool is_last = false; !is_last;) {
    const std::size_t count = std::min(kBlockBytes, bytes.size() - at);
    is_last = count == 0;
    // zlib's interface; it only reads.
    stream.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(bytes.data() + at));
    stream.avail_in = static_cast<uInt>(count);
    at += count;
    do {
      stream.next_out = output.data();
      stream.avail_out = static_cast<uInt>(output.size());
      pass(is_last);
    } while (stream.avail_out == 0);
  }
}

void DeflateWithZlib(const std::string& bytes) {
  z_stream stream{};
  deflateInit(&stream, kLevel);
  InBlocks(stream, bytes, [&](bool is_last) { deflate(&stream, is_last ? Z_FINISH : Z_NO_FLUSH); });
  deflateEnd(&stream);
}

void InflateWithZlib(const std::string& bytes) {
  z_stream stream{};
  inflateInit(&stream);
  InBlocks(stream, bytes, [&](bool) { inflate(&stream, Z_NO_FLUSH); });
  inflateEnd(&stream);
}

const std::string& Plain() { return ElementsExplicit().bytes; }

const std::string& Packed() {
  static const std::string packed = [] {
    uLongf size = compressBound(static_cast<uLong>(Plain().size()));
    std::string bytes(size, '\0');
    compress2(reinterpret_cast<Bytef*>(bytes.data()), &size, reinterpret_cast<const Bytef*>(Plain().data()),
              static_cast<uLong>(Plain().size()), kLevel);
    bytes.resize(size);
    return bytes;
  }();
  return packed;
}

void Library(benchmark::State& state, const char* name, const std::string& (*source)(), std::int32_t first) {
  LibraryUnderTest library(IdleHost());
  for (auto _ : state) {
    ServeStream(source());
    library.Call(name, first, kSomeOref, kSomeOref);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(Plain().size()));
}

void Zlib(benchmark::State& state, void (*work)(const std::string&), const std::string& (*source)()) {
  for (auto _ : state) work(source());
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(Plain().size()));
}

}  // namespace

void RegisterDeflateBenchmarks() {
  benchmark::RegisterBenchmark("deflate/15 MB at level 6/library", Library, "zfDeflateStream", Plain, kLevel);
  benchmark::RegisterBenchmark("deflate/15 MB at level 6/zlib", Zlib, DeflateWithZlib, Plain);
  benchmark::RegisterBenchmark("inflate/15 MB/library", Library, "zfInflateStream", Packed, kSomeOref);
  benchmark::RegisterBenchmark("inflate/15 MB/zlib", Zlib, InflateWithZlib, Packed);
}

}  // namespace bench
