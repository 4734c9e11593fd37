#pragma once

#include <functional>
#include <string>
#include <vector>

#include "emulator/host.h"
#include "emulator/library.h"

namespace emulator {

/// One call-out over objects and globals that it makes on the host given to it. Every call of it is the same, and
/// succeeds where nothing fails, but for the Failures. What call-outs without a result list answer is told as if they had
/// one.
struct Scenario {
  std::string name;
  std::function<ListResult(Host&, const Library&)> call;
  bool tells_why = true;  ///< a failure has a message
};

/// Data sets of every shape that the decomposer knows.
std::vector<Scenario> Decompositions();
/// Queries of streams and files and walks over items, with and without an answer.
std::vector<Scenario> Queries();
/// Data sets of every shape that the composer knows.
std::vector<Scenario> Compositions();
/// Deflate and inflate; -1 is told as status 1.
std::vector<Scenario> Packings();
/// What never calls the host: dictionary, references, byte order, numbers.
std::vector<Scenario> Lookups();
/// What fails by itself: damaged data, texts of every length, a host that fails on the way.
std::vector<Scenario> Failures();

}  // namespace emulator
