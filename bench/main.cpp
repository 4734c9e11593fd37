#include <benchmark/benchmark.h>

#include "bench/registration.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  bench::RegisterDecomposeBenchmarks();
  bench::RegisterQueryBenchmarks();
  bench::RegisterComposeBenchmarks();
  bench::RegisterDeflateBenchmarks();
  bench::RegisterImportBenchmarks();
  benchmark::AddCustomContext("stand-in host", "does not overwrite the texts that it has handed out");
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
