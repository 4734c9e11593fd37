#include <benchmark/benchmark.h>

#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/data_set.h"
#include "bench/dcmtk_peer.h"
#include "bench/idle_host.h"
#include "bench/library_under_test.h"
#include "bench/recording.h"
#include "tests/support/scratch_file.h"

// One attribute out of a file in the page cache, the whole call included: open, read, answer, close. Beside it DCMTK
// reading the file no further than it must. Counters: the host's callbacks and the bytes read from the file.

namespace bench {
namespace {

constexpr std::int64_t kSomeOref = 1;

/// One attribute, as each side names it.
struct Question {
  const char* reference;
  std::vector<DcmtkStep> path;
};

std::string PropertyList(LibraryUnderTest& library, const char* reference) {
  library.Call("zfParsePropertyReference", emulator::ListBuilder().String(reference).Bytes());
  return emulator::AsBytes(library.Answer().at(0).value);
}

/// The bytes that this process has read through system calls so far.
std::uint64_t BytesRead() {
  std::ifstream io("/proc/self/io");
  std::string key;
  std::uint64_t bytes = 0;
  io >> key >> bytes;
  return key == "rchar:" ? bytes : 0;
}

/// What the kernel counts for looking at its own count, so that it can be taken off.
std::uint64_t BytesReadByLooking() {
  const std::uint64_t before = BytesRead();
  return BytesRead() - before;
}

void ExpectAnAnswer(const LibraryUnderTest& library, const char* reference) {
  if (library.Answer().size() != 2) throw std::runtime_error(std::string("no answer to ") + reference);
}

void AskFile(benchmark::State& state, DataSetSource source, const Question& question) {
  const ScratchFile file(WithFileHeader(source().bytes, kExplicitLittleEndian));
  Recording recording;
  LibraryUnderTest library(recording.RecordOver(IdleHost()));
  const std::string arguments = emulator::ListBuilder()
                                    .Integer(1)
                                    .String(file.Name())
                                    .String(kExplicitLittleEndian)
                                    .String(PropertyList(library, question.reference))
                                    .Bytes();
  const std::uint64_t looking = BytesReadByLooking();
  const std::uint64_t before = BytesRead();
  library.Call("zfQueryFileOrDataSet", arguments);
  state.counters["bytes_read"] = static_cast<double>(BytesRead() - before - looking);
  state.counters["callbacks"] = static_cast<double>(recording.Count());
  ExpectAnAnswer(library, question.reference);

  LibraryUnderTest measured(IdleHost());
  for (auto _ : state) measured.Call("zfQueryFileOrDataSet", arguments);
}

void AskDcmtk(benchmark::State& state, DataSetSource source, const Question& question) {
  const ScratchFile file(WithFileHeader(source().bytes, kExplicitLittleEndian));
  const std::uint64_t looking = BytesReadByLooking();
  const std::uint64_t before = BytesRead();
  benchmark::DoNotOptimize(ValueReadWithDcmtk(file.Name(), question.path));
  state.counters["bytes_read"] = static_cast<double>(BytesRead() - before - looking);
  for (auto _ : state) benchmark::DoNotOptimize(ValueReadWithDcmtk(file.Name(), question.path));
}

std::string StreamArguments(LibraryUnderTest& library, const Question& question) {
  return emulator::ListBuilder()
      .Integer(kSomeOref)
      .String(kExplicitLittleEndian)
      .String(PropertyList(library, question.reference))
      .Bytes();
}

void AskStream(benchmark::State& state, DataSetSource source, const Question& question) {
  LibraryUnderTest library(IdleHost());
  const std::string arguments = StreamArguments(library, question);
  const std::string& bytes = source().bytes;  // made now, and not while the clock runs
  for (auto _ : state) {
    ServeStream(bytes);
    library.Call("zfQueryStream", arguments);
  }
  state.counters["bytes_read"] = static_cast<double>(BytesServed());
  ExpectAnAnswer(library, question.reference);
}

void ReplayStream(benchmark::State& state, DataSetSource source, const Question& question,
                  Recording::Caller caller) {
  Recording recording;
  LibraryUnderTest library(recording.RecordOver(IdleHost()));
  const std::string arguments = StreamArguments(library, question);
  ServeStream(source().bytes);
  library.Call("zfQueryStream", arguments);
  for (auto _ : state) {
    ServeStream(source().bytes);
    recording.Replay(*IdleHost(), caller);
  }
  state.counters["callbacks"] = static_cast<double>(recording.Count());
}

void Parse(benchmark::State& state, const char* reference) {
  LibraryUnderTest library(IdleHost());
  const std::string arguments = emulator::ListBuilder().String(reference).Bytes();
  for (auto _ : state) library.Call("zfParsePropertyReference", arguments);
}

void RegisterFile(const std::string& name, DataSetSource source, const Question& question) {
  benchmark::RegisterBenchmark(("query file/" + name + "/library").c_str(), AskFile, source, question);
  benchmark::RegisterBenchmark(("query file/" + name + "/dcmtk").c_str(), AskDcmtk, source, question);
}

void RegisterStream(const std::string& name, DataSetSource source, const Question& question) {
  benchmark::RegisterBenchmark(("query stream/" + name + "/library").c_str(), AskStream, source, question);
  benchmark::RegisterBenchmark(("query stream/" + name + "/replay").c_str(), ReplayStream, source, question,
                               Recording::Caller::kSharedObject);
  benchmark::RegisterBenchmark(("query stream/" + name + "/replay in the program").c_str(), ReplayStream,
                               source, question, Recording::Caller::kProgram);
}

}  // namespace

void RegisterQueryBenchmarks() {
  const Question name{"PatientName", {{0x0010, 0x0010}}};
  const Question nested{"BeamSequence[3].(0040,0275)[1].PatientName",
                        {{0x300A, 0x00B0, 2}, {0x0040, 0x0275, 0}, {0x0010, 0x0010}}};
  const Question padding{"DataSetTrailingPadding", {{0xFFFC, 0xFFFC}}};
  RegisterFile("PatientName in 200k elements", ElementsExplicit, name);
  RegisterFile("PatientName in an image", Image, name);
  RegisterFile("third item at the end of 200k elements", ElementsExplicit, nested);
  RegisterFile("behind 256 MB of pixels", NativePixels, padding);
  RegisterStream("behind 256 MB of pixels", NativePixels, padding);
  benchmark::RegisterBenchmark("parse reference/one keyword/library", Parse, name.reference);
  benchmark::RegisterBenchmark("parse reference/three steps/library", Parse, nested.reference);
}

}  // namespace bench
