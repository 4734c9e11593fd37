#pragma once

namespace bench {

// Each file of benchmarks registers its own.
void RegisterDecomposeBenchmarks();
void RegisterQueryBenchmarks();
void RegisterComposeBenchmarks();
void RegisterDeflateBenchmarks();
void RegisterImportBenchmarks();

}  // namespace bench
