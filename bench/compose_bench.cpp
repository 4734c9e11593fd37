#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "bench/answers.h"
#include "bench/data_set.h"
#include "bench/dcmtk_peer.h"
#include "bench/library_under_test.h"
#include "bench/recording.h"
#include "bench/registration.h"
#include "bench/stored_data_set.h"
#include "emulator/store/data_sets.h"
#include "emulator/store/memory_store.h"

// Composing, three ways in one run: the library against callbacks that only give the answers, its callbacks alone, and
// DCMTK. Then from the stand-in host's globals in memory, beside DCMTK writing the same data set from its tree.

namespace bench {
namespace {

constexpr const char* kId = "1.2.3";

void PerElement(benchmark::State& state, const DataSet& data_set) {
  state.counters["per_element"] =
      benchmark::Counter(static_cast<double>(data_set.elements),
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(data_set.bytes.size()));
}

/// A data set in the stand-in host's globals, and an output that holds all of it.
class InMemory {
 public:
  InMemory(const DataSet& data_set, const char* syntax)
      : library_{emulator::Host::Table()},
        output_{std::make_shared<MemoryOutput>(data_set.bytes.size() * 2)} {
    Import(library_, store_, kId, data_set.bytes, syntax);
    transaction_ = store_.Begin(emulator::Access::kRead);
    host_ = std::make_unique<emulator::Host>(transaction_->Nodes());
    host_->ScribbleHandedOutBytes(false);
    const auto facts = emulator::FindDataSet(*transaction_->Nodes(), kId);
    if (!facts->pixels.empty()) pixels_ = transaction_->OpenPixels(facts->pixels);
    arguments_ = ComposeArguments(kId, syntax, host_->Add(output_), pixels_ ? host_->Add(pixels_) : 0);
  }

  /// With this callback table, which goes to the host in the end.
  void Compose(LibraryUnderTest& library) {
    output_->Clear();
    if (pixels_) pixels_->MoveTo(1);
    library.Call("zfComposeStream", arguments_);
  }
  LibraryUnderTest& Library() { return library_; }
  const std::string& Arguments() const { return arguments_; }

 private:
  LibraryUnderTest library_;
  emulator::MemoryStore store_;
  std::unique_ptr<emulator::StoreTransaction> transaction_;
  std::unique_ptr<emulator::Host> host_;
  std::shared_ptr<MemoryOutput> output_;
  std::shared_ptr<emulator::StreamObject> pixels_;
  std::string arguments_;
};

/// What the host answers while the data set is composed, and the arguments of that call.
struct Script {
  Script(const DataSet& data_set, const char* syntax) {
    InMemory in_memory(data_set, syntax);
    LibraryUnderTest library(answers.KeepFrom(emulator::Host::Table()));
    in_memory.Compose(library);
    arguments = in_memory.Arguments();
  }
  Answers answers;
  std::string arguments;
};

void Compose(benchmark::State& state, DataSetSource source, const char* syntax) {
  Script script(source(), syntax);
  LibraryUnderTest library(script.answers.AnswerAgain());
  for (auto _ : state) {
    script.answers.Rewind();
    library.Call("zfComposeStream", script.arguments);
  }
  PerElement(state, source());
}

void Replay(benchmark::State& state, DataSetSource source, const char* syntax, Recording::Caller caller) {
  Script script(source(), syntax);
  const vessa::HostServices* const host = script.answers.AnswerAgain();
  Recording recording;
  LibraryUnderTest library(recording.RecordOver(host));  // stays loaded: the recorded texts are its own
  library.Call("zfComposeStream", script.arguments);
  for (auto _ : state) {
    script.answers.Rewind();
    recording.Replay(*host, caller);
  }
  PerElement(state, source());
  state.counters["callbacks"] = static_cast<double>(recording.Count());
}

void ComposeFromMemory(benchmark::State& state, DataSetSource source, const char* syntax) {
  InMemory in_memory(source(), syntax);
  for (auto _ : state) in_memory.Compose(in_memory.Library());
  PerElement(state, source());
}

void WriteWithDcmtk(benchmark::State& state, DataSetSource source, const char* syntax,
                    DcmtkTree::Lengths lengths) {
  const DcmtkTree tree(source().bytes, syntax);
  std::string buffer(source().bytes.size() * 2, '\0');
  for (auto _ : state) benchmark::DoNotOptimize(tree.Write(syntax, lengths, buffer));
  PerElement(state, source());
}

void RegisterSet(const std::string& name, DataSetSource source, const char* syntax) {
  benchmark::RegisterBenchmark(("compose/" + name + "/library").c_str(), Compose, source, syntax);
  benchmark::RegisterBenchmark(("compose/" + name + "/replay").c_str(), Replay, source, syntax,
                               Recording::Caller::kSharedObject);
  benchmark::RegisterBenchmark(("compose/" + name + "/replay in the program").c_str(), Replay, source, syntax,
                               Recording::Caller::kProgram);
}

void RegisterFromMemory(const std::string& name, DataSetSource source, const char* syntax) {
  const std::string work = "compose from globals in memory/" + name;
  benchmark::RegisterBenchmark((work + "/library").c_str(), ComposeFromMemory, source, syntax);
  benchmark::RegisterBenchmark((work + "/dcmtk").c_str(), WriteWithDcmtk, source, syntax,
                               DcmtkTree::Lengths::kUndefined);
  benchmark::RegisterBenchmark((work + "/dcmtk, defined lengths").c_str(), WriteWithDcmtk, source, syntax,
                               DcmtkTree::Lengths::kDefined);
}

}  // namespace

void RegisterComposeBenchmarks() {
  RegisterSet("200k elements explicit", ElementsExplicit, kExplicitLittleEndian);
  RegisterSet("256 MB native pixels", NativePixels, kExplicitLittleEndian);
  RegisterFromMemory("200k elements explicit", ElementsExplicit, kExplicitLittleEndian);
}

}  // namespace bench
