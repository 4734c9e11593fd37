#include <cstdlib>

#include "emulator/store/data_store.h"
#include "emulator/store/store_error.h"

namespace emulator {
namespace {

/// Of the environment; empty when it is not set.
std::string Variable(const char* name) {
  const char* const value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): one thread
  return value == nullptr ? "" : value;
}

}  // namespace

std::string DefaultStoreFolder() {
  if (const std::string data = Variable("XDG_DATA_HOME"); !data.empty()) return data + "/vessa";
  if (const std::string home = Variable("HOME"); !home.empty()) return home + "/.local/share/vessa";
  throw StoreError("neither XDG_DATA_HOME nor HOME is set, so nothing says where the store is");
}

}  // namespace emulator
