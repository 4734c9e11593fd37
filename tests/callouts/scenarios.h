#pragma once

#include <functional>
#include <string>
#include <vector>

#include "emulator/host.h"
#include "emulator/library.h"

namespace emulator {

/// One call-out over objects and globals that it makes on the host given to it. Every call of it is the same, and
/// succeeds where nothing fails.
struct Scenario {
  std::string name;
  std::function<ListResult(Host&, const Library&)> call;
};

/// Data sets of every shape that the decomposer knows.
std::vector<Scenario> Decompositions();
/// Queries of streams and files and walks over items, with and without an answer.
std::vector<Scenario> Queries();
/// Data sets of every shape that the composer knows.
std::vector<Scenario> Compositions();
/// Deflate and inflate; -1 is told as status 1, without a message.
std::vector<Scenario> Packings();
/// What never calls the host: dictionary, references, byte order, numbers.
std::vector<Scenario> Lookups();

}  // namespace emulator
