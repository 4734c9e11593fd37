#include <benchmark/benchmark.h>

#include "bench/registration.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  bench::RegisterDecomposeBenchmarks();
  bench::RegisterQueryBenchmarks();
  bench::RegisterComposeBenchmarks();
  bench::RegisterDeflateBenchmarks();
  bench::RegisterImportBenchmarks();
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
