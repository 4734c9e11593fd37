#include <benchmark/benchmark.h>

#include "bench/data_set.h"
#include "bench/dcmtk_peer.h"
#include "bench/idle_host.h"
#include "bench/library_under_test.h"
#include "bench/recording.h"

// Decomposing, three ways in one run: the library against callbacks that do nothing, its callbacks alone,
// DCMTK. Counters: ns an element or bytes a second, so that the three can be laid side by side.

namespace bench {
namespace {

void PerElement(benchmark::State& state, const DataSet& data_set) {
  state.counters["per_element"] =
      benchmark::Counter(static_cast<double>(data_set.elements),
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(data_set.bytes.size()));
}

void Decompose(benchmark::State& state, DataSetSource source, const char* syntax) {
  const DataSet& data_set = source();
  LibraryUnderTest library(IdleHost());
  for (auto _ : state) {
    ServeStream(data_set.bytes);
    library.DecomposeStream(syntax);
  }
  PerElement(state, data_set);
}

void Replay(benchmark::State& state, DataSetSource source, const char* syntax, Recording::Caller caller) {
  const DataSet& data_set = source();
  Recording recording;
  LibraryUnderTest library(recording.RecordOver(IdleHost()));  // stays loaded: the recorded texts are its own
  ServeStream(data_set.bytes);
  library.DecomposeStream(syntax);
  for (auto _ : state) {
    ServeStream(data_set.bytes);
    recording.Replay(*IdleHost(), caller);
  }
  PerElement(state, data_set);
  state.counters["callbacks"] = static_cast<double>(recording.Count());
}

void Dcmtk(benchmark::State& state, DataSetSource source, const char* syntax) {
  const DataSet& data_set = source();
  for (auto _ : state) benchmark::DoNotOptimize(ParseWithDcmtk(data_set.bytes, syntax));
  PerElement(state, data_set);
}

void RegisterSet(const std::string& name, DataSetSource source, const char* syntax) {
  benchmark::RegisterBenchmark(("decompose/" + name + "/library").c_str(), Decompose, source, syntax);
  benchmark::RegisterBenchmark(("decompose/" + name + "/replay").c_str(), Replay, source, syntax,
                               Recording::Caller::kSharedObject);
  benchmark::RegisterBenchmark(("decompose/" + name + "/replay in the program").c_str(), Replay, source,
                               syntax, Recording::Caller::kProgram);
  benchmark::RegisterBenchmark(("decompose/" + name + "/dcmtk").c_str(), Dcmtk, source, syntax);
}

}  // namespace

void RegisterDecomposeBenchmarks() {
  RegisterSet("200k elements explicit", ElementsExplicit, kExplicitLittleEndian);
  RegisterSet("200k elements implicit", ElementsImplicit, kImplicitLittleEndian);
  RegisterSet("256 MB native pixels", NativePixels, kExplicitLittleEndian);
  RegisterSet("2000 fragments of 64 KB", Fragments, kJpegBaseline);
}

}  // namespace bench
