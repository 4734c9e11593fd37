#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

#include "bench/data_set.h"
#include "bench/library_under_test.h"
#include "bench/registration.h"
#include "bench/stored_data_set.h"

// Importing into the store on disk, the library's part and the sync to disk included. By the clock on the wall: much of
// it is waiting. The store grows by a data set each time.

namespace bench {
namespace {

/// A folder that goes with the benchmark that needs it.
class ScratchFolder {
 public:
  ScratchFolder() : path_{std::filesystem::temp_directory_path() / "vessa_import_bench"} { Remove(); }
  ~ScratchFolder() { Remove(); }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  std::string Path() const { return path_.string(); }

 private:
  void Remove() const { std::filesystem::remove_all(path_); }

  std::filesystem::path path_;
};

void ImportSet(benchmark::State& state, DataSetSource source, const char* syntax) {
  const DataSet& data_set = source();
  const ScratchFolder folder;
  LibraryUnderTest library(emulator::Host::Table());
  const auto store = emulator::OpenDataStore(folder.Path());
  int imports = 0;
  std::int64_t elements = 0;
  for (auto _ : state)
    elements += Import(library, *store, "import." + std::to_string(++imports), data_set.bytes, syntax);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(data_set.bytes.size()));
  state.counters["elements_per_second"] =
      benchmark::Counter(static_cast<double>(elements), benchmark::Counter::kIsRate);
}

void RegisterSet(const std::string& name, DataSetSource source) {
  benchmark::RegisterBenchmark(("import/" + name + "/library").c_str(), ImportSet, source,
                               kExplicitLittleEndian)
      ->UseRealTime()
      ->Iterations(3);
}

}  // namespace

void RegisterImportBenchmarks() {
  RegisterSet("200k elements explicit", ElementsExplicit);
  RegisterSet("256 MB native pixels", NativePixels);
}

}  // namespace bench
